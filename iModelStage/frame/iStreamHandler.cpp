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

using HandlerPair = std::pair<iStreamHandler::ReadHandler, iStreamHandler::WriteHandler>;

HandlerPair findHandlers(char const* typeName)
{
    if (!typeName)
        return {nullptr, nullptr};
    Handlers& h = handlers();
    std::lock_guard<std::mutex> lock(h.mutex);
    auto it = h.byType.find(typeName);
    return it == h.byType.end() ? HandlerPair{nullptr, nullptr} : it->second;
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
    return findHandlers(typeName).first;
}

iStreamHandler::WriteHandler iStreamHandler::getWriteHandler(char const* typeName)
{
    return findHandlers(typeName).second;
}
