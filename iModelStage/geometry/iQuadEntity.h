#ifndef IMODELSTAGE_GEOMETRY_IQUADENTITY_H
#define IMODELSTAGE_GEOMETRY_IQUADENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A quad list; its vertices are kept as given.
class IMODELSTAGE_EXPORT iQuadEntity : public iGeometricEntity {
    I_VERTEX_LIST_ENTITY(iQuadEntity, QUAD_ENTITY)
};

#endif
