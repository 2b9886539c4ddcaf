#ifndef IMODELSTAGE_GEOMETRY_ITRIANGLEENTITY_H
#define IMODELSTAGE_GEOMETRY_ITRIANGLEENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A triangle list; its vertices are kept as given.
class IMODELSTAGE_EXPORT iTriangleEntity : public iGeometricEntity {
    I_VERTEX_LIST_ENTITY(iTriangleEntity, TRIANGLE_ENTITY)
};

#endif
