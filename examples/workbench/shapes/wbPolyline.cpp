#include "shapes/wbPolyline.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(wbPolyline)
I_REGISTER_PROPERTY(wbPolyline, bool, closed, "Geometry")

wbPolyline::wbPolyline() : _vertices(new osg::Vec3Array)
{
    sigclosedChanged.connect(this, &wbPolyline::slotclosedChanged);
}

wbPolyline::wbPolyline(wbPolyline const& other, osg::CopyOp const& copyop)
    : iGeometricGroup(other, copyop), _vertices(new osg::Vec3Array(*other._vertices))
{
    _closed = other._closed;
    sigclosedChanged.connect(this, &wbPolyline::slotclosedChanged);
}

wbPolyline::~wbPolyline() = default;

void wbPolyline::setVertices(osg::Vec3Array const& vertices)
{
    _vertices->assign(vertices.begin(), vertices.end());
    updateGeometry(false);
}

void wbPolyline::addVertex(osg::Vec3f const& vertex)
{
    _vertices->push_back(vertex);
    updateGeometry(false);
}

void wbPolyline::setVertex(int index, osg::Vec3f const& vertex)
{
    if (!validIndex(index))
        return;
    (*_vertices)[index] = vertex;
    updateGeometry(false);
}

void wbPolyline::removeVertex(int index)
{
    if (!validIndex(index))
        return;
    _vertices->erase(_vertices->begin() + index);
    updateGeometry(false);
}

void wbPolyline::slotclosedChanged(iRoot*, bool)
{
    updateGeometry(false);
}

void wbPolyline::read(iInStream& stream, int)
{
    // Three doubles a vertex: a count larger than the stream fails here.
    int const count = stream.readCount(3 * 8);
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    vertices->reserve(count);
    for (int i = 0; i < count; ++i) {
        double xyz[3];
        stream.readDoubles(xyz, 3);
        vertices->push_back(osg::Vec3f(float(xyz[0]), float(xyz[1]), float(xyz[2])));
    }
    set_closed(stream.readBool());
    setVertices(*vertices);
}

void wbPolyline::write(iOutStream& stream)
{
    stream.writeInt(getNumVertices());
    for (osg::Vec3f const& v : *_vertices) {
        double const xyz[3] = {v.x(), v.y(), v.z()};
        stream.writeDoubles(xyz, 3);
    }
    stream.writeBool(_closed);
}
