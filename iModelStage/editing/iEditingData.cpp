#include <iModelStage/editing/iEditingData.h>

#include <iModelStage/editing/iBaseHandle.h>
#include <iModelStage/editing/iGeometryHandler.h>
#include <iModelStage/geometry/iGeometricGroup.h>

I_REGISTER_CLASS(iEditingData)

iEditingData::iEditingData() = default;

iEditingData::iEditingData(iGeometryHandler* handler, iGeometricGroup* object) : _handler(handler), _object(object) {}

iEditingData::~iEditingData() = default;

void iEditingData::addHandle(iBaseHandle* handle)
{
    if (!handle)
        return;
    handle->sigMatrixChanged.connect(this, &iEditingData::slotHandleMoved);
    handle->sigDestroyed.connect(this, &iEditingData::slotHandleRemoved);
    _handles.push_back(handle);
}

// The position of the handle in the list, or -1. Looked up by address
// alone: the removal signal also comes from a handle's destructor, when
// nothing of it may be touched any more.
int iEditingData::findHandle(iRoot* source) const
{
    if (!source)
        return -1;
    for (size_t i = 0; i < _handles.size(); ++i)
        if (static_cast<iRoot*>(static_cast<iBaseHandle*>(_handles[i].get())) == source)
            return static_cast<int>(i);
    return -1;
}

void iEditingData::slotHandleMoved(iTransformGroup* source)
{
    auto* handle = dynamic_cast<iBaseHandle*>(source);
    if (!_handler || !_object || !handle)
        return;
    osg::Vec3f const world = handle->getWorldMatrix().getTrans();
    osg::Vec3f const local = world * _object->getInverseWorldMatrix();
    _handler->setHandle(_object.get(), handle->getIndex(), local);
    _object->updateGeometry(false);
}

void iEditingData::slotHandleRemoved(iRoot* source)
{
    if (!_handler || !_object)
        return;
    // A handle already gone from the list has had its vertex deleted.
    int const entry = findHandle(source);
    if (entry < 0)
        return;
    int const index = static_cast<iBaseHandle*>(_handles[entry].get())->getIndex();
    osg::ref_ptr<osg::Node> const keep = _handles[entry];
    _handles.erase(_handles.begin() + entry);
    _handler->deleteHandle(_object.get(), index);
    for (size_t i = 0; i < _handles.size(); ++i)
        static_cast<iBaseHandle*>(_handles[i].get())->setIndex(static_cast<int>(i));
    _object->updateGeometry(false);
}
