#ifndef IMODELSTAGE_GEOMETRY_IPOINTENTITY_H
#define IMODELSTAGE_GEOMETRY_IPOINTENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A single point, vertex 0.
class IMODELSTAGE_EXPORT iPointEntity : public iGeometricEntity {
    I_CLASS(iPointEntity, iGeometricEntity, 1)
    I_OSG_OBJECT(iPointEntity)
public:
    explicit iPointEntity(osg::Vec3f const& pos = osg::Vec3f());
    iPointEntity(iPointEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricEntity(other, copyop)
    {
    }

    osg::Vec3f getPos() const { return vertexAt(0); }
    void setPos(osg::Vec3f const& pos) { setVertexAt(0, pos); }

protected:
    ~iPointEntity() override = default;
};

#endif
