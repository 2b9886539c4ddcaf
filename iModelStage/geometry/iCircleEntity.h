#ifndef IMODELSTAGE_GEOMETRY_ICIRCLEENTITY_H
#define IMODELSTAGE_GEOMETRY_ICIRCLEENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

// A circle in the local XY plane. Vertex 0 holds the centre, but the drawn
// circle stands at the origin of the matrix: setPos moves both.
class IMODELSTAGE_EXPORT iCircleEntity : public iGeometricEntity {
    I_CLASS(iCircleEntity, iGeometricEntity, 1)
    I_OSG_OBJECT(iCircleEntity)
public:
    explicit iCircleEntity(osg::Vec3f const& centre = osg::Vec3f(), double radius = 1.0, int segments = 8);
    iCircleEntity(iCircleEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricEntity(other, copyop), _segments(other._segments), _radius(other._radius)
    {
    }

    osg::Vec3f getPos() const { return vertexAt(0); }
    // Vertex 0 and the translation row of the matrix; the inverse stays.
    void setPos(osg::Vec3f const& pos);
    double getRadius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }
    int getSegments() const { return _segments; }
    void setSegments(int segments) { _segments = segments; }

    bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m) override;
    // The outline of segments segments around the matrix origin, closed.
    std::vector<osg::Vec3f> getGeometry(osg::Matrixd const& m) override;

    // The radius only: the segments are not stored.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iCircleEntity() override = default;

private:
    int _segments = 8;
    double _radius = 1.0;
};

#endif
