#ifndef IMODELSTAGE_FRAME_ICLASS_H
#define IMODELSTAGE_FRAME_ICLASS_H

#include <iModelStage/frame/iExport.h>

#include <cstddef>
#include <typeinfo>
#include <vector>

class iProperty;
class __register_property__;

// The record of one frame class: its name, its parent's record and its
// registered properties. Records are built on first use and live to the
// end of the process.
class IMODELSTAGE_EXPORT iClass {
public:
    typedef void* (*Allocator)();
    typedef void* (*Cast)(void*);
    typedef void const* (*ConstCast)(void const*);

    iClass(char const* name, iClass const* parent, std::size_t size, Allocator allocator, Cast cast,
           ConstCast constCast, std::type_info const& type, std::type_info const& sameType,
           std::type_info const& pointerType, std::type_info const& constPointerType, std::type_info const& void1,
           std::type_info const& void2, std::type_info const& void3, std::type_info const& void4);
    ~iClass();
    iClass(iClass const&) = delete;
    iClass& operator=(iClass const&) = delete;

    char const* getName() const { return m_name; }
    iClass const* getParent() const { return m_parent; }
    std::size_t getSize() const { return m_size; }
    std::type_info const& getType() const { return m_type; }
    Cast getCast() const { return m_cast; }
    ConstCast getConstCast() const { return m_constCast; }

    // The property of that name, looking through the parents when asked.
    // A missing property throws UnknownPropertyError.
    iProperty const& getProperty(char const* name, bool searchParents = true) const;
    // The same, or null when there is none.
    iProperty const* findProperty(char const* name, bool searchParents = true) const;
    // This class's own properties, in registration order.
    std::vector<iProperty const*> const& getProperties() const { return m_properties; }

    bool isSame(iClass const& other) const { return this == &other; }
    // True when this class is a strict ancestor of other.
    bool isBase(iClass const& other) const;
    // True when the two are the same class or one derives from the other.
    bool isRelative(iClass const& other) const;

    // The record of a frame class by its C++ type, or null.
    static iClass const* forType(std::type_info const& type);

private:
    friend class __register_property__;
    void addProperty(iProperty const* property) const { m_properties.push_back(property); }

    char const* m_name;
    iClass const* m_parent;
    std::size_t m_size;
    Cast m_cast;
    ConstCast m_constCast;
    std::type_info const& m_type;
    mutable std::vector<iProperty const*> m_properties;
};

#endif
