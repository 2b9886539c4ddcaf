#include <iModelStage/geometry/iLineEntity.h>

I_REGISTER_CLASS(iLineEntity)

iLineEntity::iLineEntity(osg::Vec3f const& p1, osg::Vec3f const& p2) : iGeometricEntity(LINE_ENTITY, {p1, p2}) {}

bool iLineEntity::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    return boundsOfTwo(getP1(), getP2(), min, max, m);
}
