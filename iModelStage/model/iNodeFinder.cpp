#include <iModelStage/model/iNodeFinder.h>

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>

iNodeFinder::iNodeFinder(iNodeGroup* object) : _object(object) {}

iNodeGroup* iNodeFinder::get() const
{
    // Not lock(): taking and dropping a reference would delete an object
    // that nobody has referenced yet.
    return _object.get();
}

iNodeGroup* iNodeFinder::findObjectByUniqueId(long id) const
{
    iLayersManager* manager = iLayersManager::getInstance();
    return manager ? manager->findObjectByUniqueId(id) : nullptr;
}
