#include <iModelStage/frame/iMapList.h>

#include <iModelStage/frame/iSimpleMapListPtr.h>
#include <iModelStage/frame/iTranslate.h>

#include <mutex>

namespace {

// Registered maps are never removed, so pointers to them stay valid.
struct Registry {
    std::mutex mutex;
    std::map<std::string, std::map<std::string, int>> maps;
};

Registry& registry()
{
    static Registry* instance = new Registry;
    return *instance;
}

} // namespace

iMapList::iMapList(int current, std::string const& registeredName)
{
    if (std::map<std::string, int> const* registered = findRegisteredMap(registeredName)) {
        items = *registered;
        this->current = current;
    }
}

iMapList::iMapList(char const** names, int* codes, int count, int current, std::string const& registeredName)
    : current(current)
{
    for (int i = 0; names && codes && i < count; ++i)
        items[iTranslate(names[i])] = codes[i];
    if (!registeredName.empty())
        registerMapList(items, registeredName);
}

iMapList::iMapList(std::map<std::string, int> const& items, int current, std::string const& registeredName)
    : items(items), current(current)
{
    if (!registeredName.empty())
        registerMapList(items, registeredName);
}

bool iMapList::registerMapList(std::map<std::string, int> const& items, std::string const& name)
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return r.maps.emplace(name, items).second;
}

std::map<std::string, int> const* iMapList::findRegisteredMap(std::string const& name)
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto it = r.maps.find(name);
    return it == r.maps.end() ? nullptr : &it->second;
}

bool iMapList::findkey(int code) const
{
    return iSimpleMapListPtr(&items, current).findkey(code);
}

std::string iMapList::getStrAt(int code) const
{
    return iSimpleMapListPtr(&items, current).getStrAt(code);
}
