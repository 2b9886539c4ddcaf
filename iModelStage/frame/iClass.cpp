#include <iModelStage/frame/iClass.h>

#include <iModelStage/frame/UnknownPropertyError.h>
#include <iModelStage/frame/iProperty.h>

#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <typeindex>

namespace {

// Records are built by function-local statics, possibly from several
// threads, so the type index is guarded. It is never destroyed: records
// of other libraries may unregister after this one's statics are gone.
struct TypeIndex {
    std::mutex mutex;
    std::map<std::type_index, iClass const*> records;
};

TypeIndex& typeIndex()
{
    static TypeIndex* index = new TypeIndex;
    return *index;
}

} // namespace

iClass::iClass(char const* name, iClass const* parent, std::size_t size, Allocator, Cast cast, ConstCast constCast,
               std::type_info const& type, std::type_info const&, std::type_info const&, std::type_info const&,
               std::type_info const&, std::type_info const&, std::type_info const&, std::type_info const&)
    : m_name(name)
    , m_parent(parent)
    , m_size(size)
    , m_cast(cast)
    , m_constCast(constCast)
    , m_type(type)
{
    TypeIndex& index = typeIndex();
    std::lock_guard<std::mutex> lock(index.mutex);
    index.records[std::type_index(type)] = this;
}

iClass::~iClass()
{
    TypeIndex& index = typeIndex();
    std::lock_guard<std::mutex> lock(index.mutex);
    auto it = index.records.find(std::type_index(m_type));
    if (it != index.records.end() && it->second == this)
        index.records.erase(it);
}

iProperty const* iClass::findProperty(char const* name, bool searchParents) const
{
    if (!name)
        return nullptr;
    // Setters pass interned names, found by their pointer alone; any other
    // text is compared in a second pass.
    for (iClass const* cls = this; cls; cls = searchParents ? cls->m_parent : nullptr)
        for (iProperty const* property : cls->m_properties)
            if (property->getName() == name)
                return property;
    for (iClass const* cls = this; cls; cls = searchParents ? cls->m_parent : nullptr)
        for (iProperty const* property : cls->m_properties)
            if (std::strcmp(property->getName(), name) == 0)
                return property;
    return nullptr;
}

iProperty const& iClass::getProperty(char const* name, bool searchParents) const
{
    iProperty const* property = findProperty(name, searchParents);
    if (!property)
        throw UnknownPropertyError(std::string(m_name) + " has no property " + (name ? name : "(null)"));
    return *property;
}

bool iClass::isBase(iClass const& other) const
{
    for (iClass const* cls = other.m_parent; cls; cls = cls->m_parent)
        if (cls == this)
            return true;
    return false;
}

bool iClass::isRelative(iClass const& other) const
{
    return isSame(other) || isBase(other) || other.isBase(*this);
}

iClass const* iClass::forType(std::type_info const& type)
{
    TypeIndex& index = typeIndex();
    std::lock_guard<std::mutex> lock(index.mutex);
    auto it = index.records.find(std::type_index(type));
    return it == index.records.end() ? nullptr : it->second;
}
