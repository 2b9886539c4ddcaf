#include <iModelStage/snapping/iBaseSnap.h>

I_REGISTER_CLASS(iBaseSnap)

bool iBaseSnap::snap(iViewer*, osg::Vec3f&, osg::Vec2f const&)
{
    return false;
}

bool iBaseSnap::collectGeometry(std::list<iSnapGeometry> const&)
{
    return false;
}
