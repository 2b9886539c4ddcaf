#include <iModelStage/model/iModelSearchOptimizer.h>

#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iObjectWalk.h>

I_REGISTER_CLASS(iModelSearchOptimizer)

iModelSearchOptimizer::iModelSearchOptimizer(iBaseModel* owner) : _owner(owner)
{
    if (!owner)
        return;
    owner->sigObjectAdded.connect(this, &iModelSearchOptimizer::slotObjectAdded);
    owner->sigObjectRemoved.connect(this, &iModelSearchOptimizer::slotObjectRemoved);
    owner->sigAllObjectsRemoved.connect(this, &iModelSearchOptimizer::slotAllObjectsRemoved);
}

iNodeGroup* iModelSearchOptimizer::findObjectByUniqueId(long id)
{
    if (!_owner)
        return nullptr;
    if (_dirty) {
        _dirty = false;
        _index.clear();
        iNodeGroup* found = nullptr;
        for (iObjectWalk walk(_owner->getObjectsRoot()); osg::Node* node = walk.next();) {
            iNodeGroup* object = dynamic_cast<iNodeGroup*>(node);
            if (!object)
                continue;
            _index[object->getUniqueId()] = object;
            if (object->getUniqueId() == id)
                found = object;
        }
        if (found)
            return found;
    }
    auto it = _index.find(id);
    return it == _index.end() ? nullptr : it->second;
}

void iModelSearchOptimizer::slotObjectAdded(osg::Node*)
{
    _dirty = true;
}

void iModelSearchOptimizer::slotObjectRemoved(osg::Node*)
{
    _dirty = true;
}

void iModelSearchOptimizer::slotAllObjectsRemoved()
{
    _dirty = true;
    _index.clear();
}
