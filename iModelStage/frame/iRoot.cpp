#include <iModelStage/frame/iRoot.h>

#include <iModelStage/frame/iIdCounts.h>
#include <iModelStage/frame/iSpinLock.h>

#include <map>
#include <mutex>
#include <cstdint>
#include <utility>

namespace {

constexpr long kMaxUniqueId = 0x7fffffffL;

// Ids held by live objects, with the number of holders (a copy shares the id
// of its source until it is re-keyed). Only ids the generator could hand
// out need tracking: others can never collide with a generated one.
class IdRegistry {
public:
    long takeFresh()
    {
        std::lock_guard<iSpinLock> lock(m_lock);
        long id = freshLocked();
        m_live.add(id);
        return id;
    }

    long fresh()
    {
        std::lock_guard<iSpinLock> lock(m_lock);
        return freshLocked();
    }

    void replace(long oldId, long newId)
    {
        std::lock_guard<iSpinLock> lock(m_lock);
        if (tracked(newId))
            m_live.add(newId);
        if (tracked(oldId))
            m_live.remove(oldId);
    }

    void hold(long id) { replace(0, id); }
    void release(long id) { replace(id, 0); }

private:
    static bool tracked(long id) { return id >= 1 && id <= kMaxUniqueId; }

    long freshLocked()
    {
        for (long tries = 0; tries < kMaxUniqueId; ++tries) {
            long candidate = m_next;
            m_next = m_next >= kMaxUniqueId ? 1 : m_next + 1;
            if (m_live.count(candidate) == 0)
                return candidate;
        }
        return 0;
    }

    // Taken for every object created, read or destroyed.
    iSpinLock m_lock;
    iIdCounts m_live;
    long m_next = 1;
};

IdRegistry& ids()
{
    static IdRegistry* registry = new IdRegistry;
    return *registry;
}

struct PropertyInfo {
    std::string label, category, hint, extra1, extra2;
};

struct Descriptions {
    std::mutex mutex;
    std::map<std::string, std::string> aliases;
    std::map<std::pair<std::string, std::string>, PropertyInfo> properties;
};

Descriptions& descriptions()
{
    static Descriptions* table = new Descriptions;
    return *table;
}

// Set by newClassToRead for the first object that the factory constructs.
thread_local bool unkeyedNext = false;

long initialId()
{
    if (unkeyedNext) {
        unkeyedNext = false;
        return 0;
    }
    return ids().takeFresh();
}

std::string text(char const* s)
{
    return s ? std::string(s) : std::string();
}

} // namespace

iRoot::iRoot() : _uniqueId(initialId()) {}

iRoot* iRoot::newClassToRead(char const* className)
{
    struct Unkeyed {
        Unkeyed() { unkeyedNext = true; }
        ~Unkeyed() { unkeyedNext = false; }
    } scope;
    return newClass(className);
}

iRoot::iRoot(iRoot const& other)
    : iSlot(), iNullClass(), _uniqueId(other._uniqueId), _name(other._name)
{
    ids().hold(_uniqueId);
}

iRoot& iRoot::operator=(iRoot const& other)
{
    if (this != &other) {
        setUniqueId(other._uniqueId);
        set_name(other._name);
    }
    return *this;
}

iRoot::~iRoot()
{
    sigDestroyed(this);
    ids().release(_uniqueId);
}

iClass const* iRoot::getClassStaticPtr()
{
    static iClass const record("iRoot", nullptr, sizeof(iRoot), nullptr, nullptr, nullptr, typeid(iRoot),
                               typeid(iRoot), typeid(iRoot*), typeid(iRoot const*), typeid(void), typeid(void),
                               typeid(void), typeid(void));
    return &record;
}

void iRoot::setUniqueId(long id)
{
    if (id == _uniqueId)
        return;
    ids().replace(_uniqueId, id);
    _uniqueId = id;
}

long iRoot::generateUniqueId(int)
{
    return ids().fresh();
}

void iRoot::set_name(std::string name)
{
    if (name == _name)
        return;
    _name = name;
    if (!sigNameChanged.blocked())
        nameChanged(_name);
    sigNameChanged(this, std::move(name));
}

std::string iRoot::getClassAlias() const
{
    std::string alias;
    getClassAlias(getClassName(), alias);
    return alias;
}

void iRoot::setClassAlias(char const* className, std::string const& alias)
{
    Descriptions& d = descriptions();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.aliases[text(className)] = alias;
}

bool iRoot::getClassAlias(char const* className, std::string& alias)
{
    Descriptions& d = descriptions();
    std::lock_guard<std::mutex> lock(d.mutex);
    auto it = d.aliases.find(text(className));
    if (it == d.aliases.end()) {
        alias = text(className);
        return false;
    }
    alias = it->second;
    return true;
}

void iRoot::setPropertyInfo(char const* className, char const* property, std::string const& label,
                            std::string const& category, std::string const& hint, std::string const& extra1,
                            std::string const& extra2)
{
    Descriptions& d = descriptions();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.properties[{text(className), text(property)}] = PropertyInfo{label, category, hint, extra1, extra2};
}

bool iRoot::getPropertyInfo(char const* className, char const* property, std::string& label,
                            std::string& category, std::string& hint)
{
    std::string extra1, extra2;
    return getPropertyInfo(className, property, label, category, hint, extra1, extra2);
}

bool iRoot::getPropertyInfo(char const* className, char const* property, std::string& label,
                            std::string& category, std::string& hint, std::string& extra1, std::string& extra2)
{
    Descriptions& d = descriptions();
    std::lock_guard<std::mutex> lock(d.mutex);
    auto it = d.properties.find({text(className), text(property)});
    if (it == d.properties.end())
        return false;
    label = it->second.label;
    category = it->second.category;
    hint = it->second.hint;
    extra1 = it->second.extra1;
    extra2 = it->second.extra2;
    return true;
}
