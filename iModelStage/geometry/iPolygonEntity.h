#ifndef IMODELSTAGE_GEOMETRY_IPOLYGONENTITY_H
#define IMODELSTAGE_GEOMETRY_IPOLYGONENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A polygon outline; its vertices are kept as given.
class IMODELSTAGE_EXPORT iPolygonEntity : public iGeometricEntity {
    I_VERTEX_LIST_ENTITY(iPolygonEntity, POLYGON_ENTITY)
};

#endif
