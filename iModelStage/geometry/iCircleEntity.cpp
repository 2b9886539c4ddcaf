#include <iModelStage/geometry/iCircleEntity.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iGeometricBuilder.h>

#include <osg/Array>

I_REGISTER_PERSISTENT_CLASS(iCircleEntity)

iCircleEntity::iCircleEntity(osg::Vec3f const& centre, double radius, int segments)
    : iGeometricEntity(CIRCLE_ENTITY, {centre}), _segments(segments), _radius(radius)
{
}

void iCircleEntity::setPos(osg::Vec3f const& pos)
{
    setVertexAt(0, pos);
    _matrix(3, 0) = pos.x();
    _matrix(3, 1) = pos.y();
    _matrix(3, 2) = pos.z();
}

bool iCircleEntity::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    float const r = static_cast<float>(_radius);
    osg::Vec3f const centre = getPos();
    return boundsOfTwo(centre + osg::Vec3f(-r, -r, 0.0f), centre + osg::Vec3f(r, r, 0.0f), min, max, m);
}

std::vector<osg::Vec3f> iCircleEntity::getGeometry(osg::Matrixd const& m)
{
    osg::ref_ptr<osg::Vec2Array> arc = new osg::Vec2Array;
    iGeometricBuilder::makeArc(arc.get(), _radius, _radius, 0.0, 6.283185307179586, _segments);
    std::vector<osg::Vec3f> out;
    out.reserve(arc->size());
    float const r = static_cast<float>(_radius);
    for (osg::Vec2f const& p : *arc)
        out.push_back(toModel(osg::Vec3f(p.x() - r, p.y() - r, 0.0f), m));
    return out;
}

void iCircleEntity::read(iInStream& stream, int)
{
    _radius = stream.readDouble();
}

void iCircleEntity::write(iOutStream& stream)
{
    stream.writeDouble(_radius);
}
