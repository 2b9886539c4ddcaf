#ifndef IMODELSTAGE_FRAME_IPROPERTY_H
#define IMODELSTAGE_FRAME_IPROPERTY_H

#include <iModelStage/frame/MemberBase.h>
#include <iModelStage/frame/iPropertyHandler.h>
#include <iModelStage/frame/sigslot.h>

#include <atomic>
#include <typeinfo>

class iRoot;

// The record of one registered property: name, type, group, handler and the
// signals that every set of the property emits, whatever the object.
//
// Records are reached as const references from the class record; their
// signals and force-set flag are run-time state and may change through them.
class IMODELSTAGE_EXPORT iProperty : public MemberBase {
public:
    iProperty(iClass const* owner, char const* name, char const* typeName, char const* group,
              std::type_info const& type, __property_base__* handler);

    // The one pointer for a property name text, so that property look-ups
    // can compare pointers; it stays valid for the life of the process.
    static char const* internName(char const* name);

    char const* getTypeName() const { return m_typeName; }
    char const* getGroup() const { return m_group; }
    std::type_info const& getType() const { return m_type; }
    __property_base__* getHandler() const { return m_handler; }

    // When true, a set runs its whole sequence even with an unchanged value.
    bool getForceSet() const { return m_forceSet; }
    void setForceSet(bool on) const { m_forceSet = on; }

    // Typed access through the handler. A T other than the property's own
    // type throws TypeMismatchError with the property's name; an object
    // whose class does not have the property throws it with "object".
    template <class T>
    T get(iRoot const* object) const
    {
        return handler<T>().get(object);
    }

    template <class T>
    void set(iRoot* object, T const& value) const
    {
        handler<T>().set(object, value);
    }

    // Steps 7 and 8 of every property set.
    void notifyChanged(iRoot* object) const
    {
        sigPropertyChanged(object, this);
        sigObjectChanged(object);
    }

    mutable sigslot::signal2<iRoot*, iProperty const*> sigPropertyChanged;
    mutable sigslot::signal1<iRoot*> sigObjectChanged;
    mutable sigslot::signal0<> sigChanged;

private:
    template <class T>
    __property_handler__<T> const& handler() const
    {
        auto const* typed = dynamic_cast<__property_handler__<T> const*>(m_handler);
        if (!typed)
            throw TypeMismatchError(getName());
        return *typed;
    }

    char const* m_typeName;
    char const* m_group;
    std::type_info const& m_type;
    __property_base__* m_handler;
    mutable std::atomic<bool> m_forceSet{false};
};

#endif
