#include <iModelStage/geometry/iGeometricEntity.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <algorithm>

I_REGISTER_PERSISTENT_CLASS(iGeometricEntity)

namespace {

// Start values of a growing box.
float const kFar = 9.0e9f;

// A vertex on file: three doubles.
int const kVertexBytes = 24;

} // namespace

iGeometricEntity::iGeometricEntity() : _color(1.0f, 1.0f, 1.0f, 1.0f) {}

iGeometricEntity::iGeometricEntity(iGeometryRendererType type, std::vector<osg::Vec3f> const& vertices)
    : _type(type), _vertices(vertices), _color(1.0f, 1.0f, 1.0f, 1.0f)
{
}

iGeometricEntity::iGeometricEntity(iGeometricEntity const& other, osg::CopyOp const& copyop)
    : iRoot(), osg::Object(other, copyop), _color(0.0f, 0.0f, 0.0f, 0.0f)
{
}

void iGeometricEntity::setMatrix(osg::Matrixd const& matrix)
{
    _matrix = matrix;
    _inverseMatrix = osg::Matrixd::inverse(matrix);
}

osg::Vec3f iGeometricEntity::toModel(osg::Vec3f const& p, osg::Matrixd const& m) const
{
    osg::Vec3f const local = p * _matrix;
    return local * m;
}

osg::Vec3f iGeometricEntity::vertexAt(std::size_t index) const
{
    return index < _vertices.size() ? _vertices[index] : osg::Vec3f();
}

void iGeometricEntity::setVertexAt(std::size_t index, osg::Vec3f const& p)
{
    if (_vertices.size() <= index)
        _vertices.resize(index + 1);
    _vertices[index] = p;
}

bool iGeometricEntity::boundsOfTwo(osg::Vec3f const& a, osg::Vec3f const& b, osg::Vec3f& min, osg::Vec3f& max,
                                   osg::Matrixd const& m) const
{
    osg::Vec3f const pa = toModel(a, m);
    osg::Vec3f const pb = toModel(b, m);
    min = max = pa;
    growBounds(min, max, pb, pb);
    return true;
}

void iGeometricEntity::startBounds(osg::Vec3f& min, osg::Vec3f& max)
{
    min = osg::Vec3f(kFar, kFar, kFar);
    max = osg::Vec3f(-kFar, -kFar, -kFar);
}

void iGeometricEntity::growBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Vec3f const& low, osg::Vec3f const& high)
{
    for (int i = 0; i < 3; ++i) {
        min[i] = std::min(min[i], low[i]);
        max[i] = std::max(max[i], high[i]);
    }
}

osg::Vec3f iGeometricEntity::getNormal()
{
    osg::Vec3f sum;
    std::size_t const count = _vertices.size();
    for (std::size_t i = 0; i < count; ++i) {
        osg::Vec3f const& c = _vertices[i];
        osg::Vec3f const& n = _vertices[(i + 1) % count];
        sum.x() += (c.y() - n.y()) * (c.z() + n.z());
        sum.y() += (c.z() - n.z()) * (c.x() + n.x());
        sum.z() += (c.x() - n.x()) * (c.y() + n.y());
    }
    float const length = sum.length();
    if (length > 0.0f)
        sum /= length;
    return osg::Matrixd::transform3x3(sum, _matrix);
}

bool iGeometricEntity::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    if (_vertices.empty()) {
        min = max = osg::Vec3f();
        return false;
    }
    startBounds(min, max);
    for (osg::Vec3f const& vertex : _vertices) {
        osg::Vec3f const p = toModel(vertex, m);
        growBounds(min, max, p, p);
    }
    return true;
}

void iGeometricEntity::applyTransform(osg::Matrixd const& m)
{
    for (osg::Vec3f& vertex : _vertices)
        vertex = vertex * m;
}

std::vector<osg::Vec3f> iGeometricEntity::getGeometry(osg::Matrixd const& m)
{
    std::vector<osg::Vec3f> out;
    out.reserve(_vertices.size());
    for (osg::Vec3f const& vertex : _vertices)
        out.push_back(toModel(vertex, m));
    return out;
}

void iGeometricEntity::read(iInStream& stream, int)
{
    _type = static_cast<iGeometryRendererType>(stream.readInt());
    int const count = stream.readCount(kVertexBytes);
    std::vector<osg::Vec3f> vertices(static_cast<std::size_t>(count));
    for (osg::Vec3f& vertex : vertices) {
        double xyz[3];
        stream.readDoubles(xyz, 3);
        vertex.set(static_cast<float>(xyz[0]), static_cast<float>(xyz[1]), static_cast<float>(xyz[2]));
    }
    _vertices.swap(vertices);
    double rgba[4];
    stream.readDoubles(rgba, 4);
    _color.set(static_cast<float>(rgba[0]), static_cast<float>(rgba[1]), static_cast<float>(rgba[2]),
               static_cast<float>(rgba[3]));
    stream.readDoubles(_matrix.ptr(), 16);
    stream.readDoubles(_inverseMatrix.ptr(), 16);
    _visible = stream.readBool();
}

void iGeometricEntity::write(iOutStream& stream)
{
    stream.writeInt(static_cast<int>(_type));
    stream.writeInt(static_cast<int>(_vertices.size()));
    for (osg::Vec3f const& vertex : _vertices)
        for (int i = 0; i < 3; ++i)
            stream.writeDouble(static_cast<double>(vertex[i]));
    for (int i = 0; i < 4; ++i)
        stream.writeDouble(static_cast<double>(_color[i]));
    stream.writeDoubles(_matrix.ptr(), 16);
    stream.writeDoubles(_inverseMatrix.ptr(), 16);
    stream.writeBool(_visible);
}
