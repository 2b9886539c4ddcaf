#ifndef IMODELSTAGE_GEOMETRY_IPOLYLINEENTITY_H
#define IMODELSTAGE_GEOMETRY_IPOLYLINEENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// An open line through its vertices. It has no row in the class table: it
// is made by its constructor only, and a written one is not read back.
class IMODELSTAGE_EXPORT iPolyLineEntity : public iGeometricEntity {
    I_VERTEX_LIST_ENTITY(iPolyLineEntity, POLYLINE_ENTITY)
};

#endif
