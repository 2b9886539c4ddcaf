#include <iModelStage/editing/iBaseHandle.h>

I_REGISTER_CLASS(iBaseHandle)

iBaseHandle::iBaseHandle()
{
    // A dragged handle must not snap to its fellows.
    setFlag(4, false);
    setFlag(9, false);
    set_clr(osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
}

iBaseHandle::iBaseHandle(iBaseHandle const& other, osg::CopyOp const& copyop)
    : iGeometricGroup(other, copyop), _index(other._index)
{
}

iBaseHandle::~iBaseHandle() = default;
