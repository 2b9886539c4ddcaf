#include <iModelStage/frame/iUnitConverterManager.h>

#include <iModelStage/frame/iUnitConverterItem.h>

#include <memory>
#include <mutex>
#include <set>

I_REGISTER_CLASS(iUnitConverterManager)

namespace {

struct Converters {
    std::mutex mutex;
    std::set<std::string> names;
};

Converters& converters()
{
    static Converters* instance = new Converters;
    return *instance;
}

// A fresh converter of a registered class, or null.
std::unique_ptr<iUnitConverterItem> makeConverter(char const* className)
{
    if (!className)
        return nullptr;
    {
        Converters& c = converters();
        std::lock_guard<std::mutex> lock(c.mutex);
        if (c.names.find(className) == c.names.end())
            return nullptr;
    }
    std::unique_ptr<iRoot> object(iRoot::newClass(className));
    if (!dynamic_cast<iUnitConverterItem*>(object.get()))
        return nullptr;
    return std::unique_ptr<iUnitConverterItem>(static_cast<iUnitConverterItem*>(object.release()));
}

} // namespace

bool iUnitConverterManager::registerConverterItem(char const* className)
{
    if (!className)
        return false;
    Converters& c = converters();
    std::lock_guard<std::mutex> lock(c.mutex);
    return c.names.insert(className).second;
}

bool iUnitConverterManager::convertTo(char const* className, void* value)
{
    std::unique_ptr<iUnitConverterItem> converter = makeConverter(className);
    return converter && converter->convertTo(value);
}

bool iUnitConverterManager::convertFrom(char const* className, void* value)
{
    std::unique_ptr<iUnitConverterItem> converter = makeConverter(className);
    return converter && converter->convertFrom(value);
}

std::string iUnitConverterManager::getSymbol(char const* className)
{
    std::unique_ptr<iUnitConverterItem> converter = makeConverter(className);
    return converter ? converter->getSymbol() : std::string();
}
