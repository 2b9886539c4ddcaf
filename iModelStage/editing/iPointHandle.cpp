#include <iModelStage/editing/iPointHandle.h>

I_REGISTER_CLASS(iPointHandle)

iPointHandle::iPointHandle() = default;

iPointHandle::iPointHandle(iPointHandle const& other, osg::CopyOp const& copyop) : iBaseHandle(other, copyop) {}

iPointHandle::~iPointHandle() = default;
