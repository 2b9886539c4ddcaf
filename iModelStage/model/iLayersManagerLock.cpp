#include <iModelStage/model/iLayersManagerLock.h>

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>

iLayersManagerLock::iLayersManagerLock() : _previous(iLayersManager::isCurrentLayerLocked())
{
    iLayersManager::lockCurrentLayer(true);
    if (iNodeLayer* current = iLayersManager::getCurrentLayer())
        _layerName = current->getModelId();
}

iLayersManagerLock::~iLayersManagerLock()
{
    iLayersManager::lockCurrentLayer(_previous);
    if (!_previous && !_layerName.empty())
        iLayersManager::setCurrentLayer(_layerName);
}
