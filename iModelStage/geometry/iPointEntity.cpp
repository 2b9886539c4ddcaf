#include <iModelStage/geometry/iPointEntity.h>

I_REGISTER_CLASS(iPointEntity)

iPointEntity::iPointEntity(osg::Vec3f const& pos) : iGeometricEntity(POINT_ENTITY, {pos}) {}
