#include <iModelStage/frame/iStreamHandler.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace {

struct Handlers {
    std::mutex mutex;
    std::map<std::string, std::pair<iStreamHandler::ReadHandler, iStreamHandler::WriteHandler>> byType;
};

Handlers& handlers()
{
    static Handlers* table = new Handlers;
    return *table;
}

} // namespace

bool iStreamHandler::registerNewIOHandlers(char const* typeName, ReadHandler read, WriteHandler write)
{
    if (!typeName)
        return false;
    Handlers& h = handlers();
    std::lock_guard<std::mutex> lock(h.mutex);
    bool fresh = h.byType.find(typeName) == h.byType.end();
    h.byType[typeName] = {read, write};
    return fresh;
}

iStreamHandler::ReadHandler iStreamHandler::getReadHandler(char const* typeName)
{
    if (!typeName)
        return nullptr;
    Handlers& h = handlers();
    std::lock_guard<std::mutex> lock(h.mutex);
    auto it = h.byType.find(typeName);
    return it == h.byType.end() ? nullptr : it->second.first;
}

iStreamHandler::WriteHandler iStreamHandler::getWriteHandler(char const* typeName)
{
    if (!typeName)
        return nullptr;
    Handlers& h = handlers();
    std::lock_guard<std::mutex> lock(h.mutex);
    auto it = h.byType.find(typeName);
    return it == h.byType.end() ? nullptr : it->second.second;
}
