#ifndef IMODELSTAGE_GEOMETRY_ILINEENTITY_H
#define IMODELSTAGE_GEOMETRY_ILINEENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A segment from vertex 0 to vertex 1.
class IMODELSTAGE_EXPORT iLineEntity : public iGeometricEntity {
    I_CLASS(iLineEntity, iGeometricEntity, 1)
    I_OSG_OBJECT(iLineEntity)
public:
    explicit iLineEntity(osg::Vec3f const& p1 = osg::Vec3f(), osg::Vec3f const& p2 = osg::Vec3f());
    iLineEntity(iLineEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricEntity(other, copyop)
    {
    }

    osg::Vec3f getP1() const { return vertexAt(0); }
    void setP1(osg::Vec3f const& p) { setVertexAt(0, p); }
    osg::Vec3f getP2() const { return vertexAt(1); }
    void setP2(osg::Vec3f const& p) { setVertexAt(1, p); }

    bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m) override;

protected:
    ~iLineEntity() override = default;
};

#endif
