#include <iModelStage/frame/iProperty.h>

#include <iModelStage/frame/iClass.h>

#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

// Property records and handlers live for the process. Class records are
// destroyed at exit, so the records are also held here, where nothing ever
// lets go of them.
struct PropertyRecords {
    std::mutex mutex;
    std::vector<iProperty*> all;
    std::unordered_set<std::string> names;
};

PropertyRecords& propertyRecords()
{
    static PropertyRecords* records = new PropertyRecords;
    return *records;
}

} // namespace

char const* iProperty::internName(char const* name)
{
    if (!name)
        return nullptr;
    PropertyRecords& records = propertyRecords();
    std::lock_guard<std::mutex> lock(records.mutex);
    return records.names.insert(name).first->c_str();
}

iProperty::iProperty(iClass const* owner, char const* name, char const* typeName, char const* group,
                     std::type_info const& type, __property_base__* handler)
    : MemberBase(owner, name), m_typeName(typeName), m_group(group), m_type(type), m_handler(handler)
{
}

__register_property__::__register_property__(__property_base__* handler, iClass const* owner, char const* typeName,
                                             char const* name, char const* group, std::type_info const& type)
{
    iProperty* property = new iProperty(owner, iProperty::internName(name), typeName, group, type, handler);
    {
        PropertyRecords& records = propertyRecords();
        std::lock_guard<std::mutex> lock(records.mutex);
        records.all.push_back(property);
    }
    owner->addProperty(property);
}
