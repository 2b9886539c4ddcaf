#include <iModelStage/viewing/iDragDropInterface.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/viewing/iDropCallback.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

char const* const iDragDropInterface::mimeType = "iapplication/dragdrop.data";

namespace {

typedef std::map<std::pair<std::string, std::string>, std::string> CallbackTable;

CallbackTable& table()
{
    static CallbackTable rows;
    return rows;
}

std::string text(char const* s)
{
    return s ? std::string(s) : std::string();
}

// A callback made for the one call, or null.
std::unique_ptr<iDropCallback> makeCallback(char const* source, char const* target)
{
    auto const row = table().find(std::make_pair(text(source), text(target)));
    if (row == table().end())
        return nullptr;
    std::unique_ptr<iRoot> made(iRoot::newClass(row->second.c_str()));
    auto* callback = dynamic_cast<iDropCallback*>(made.get());
    if (!callback)
        return nullptr;
    made.release();
    return std::unique_ptr<iDropCallback>(callback);
}

} // namespace

bool iDragDropInterface::registerCallback(char const* source, char const* target, char const* callbackClass)
{
    return table().emplace(std::make_pair(text(source), text(target)), text(callbackClass)).second;
}

bool iDragDropInterface::canDrop(iRoot* targetObject, char const* source, char const* target, NodeList const& nodes)
{
    std::unique_ptr<iDropCallback> callback = makeCallback(source, target);
    return callback && callback->canDrop(targetObject, nodes);
}

bool iDragDropInterface::drop(iRoot* targetObject, char const* source, char const* target, NodeList const& nodes)
{
    std::unique_ptr<iDropCallback> callback = makeCallback(source, target);
    if (!callback)
        return false;
    if (iLayersManager* document = iLayersManager::getInstance())
        document->storeForUndo(iTranslate("Rilascia oggetto"));
    return callback->drop(targetObject, nodes);
}
