#include <iModelStage/model/iLoopLock.h>

#include <iModelStage/model/iLayersManager.h>

iLoopLock::iLoopLock()
{
    if (iLayersManager* manager = iLayersManager::getInstance())
        _previous = manager->lockLoop(true);
}

iLoopLock::~iLoopLock()
{
    if (iLayersManager* manager = iLayersManager::getInstance())
        manager->lockLoop(_previous);
}
