#pragma once

#include <iModelStage/geometry/iGeometricGroup.h>

#include <osg/Array>

// A chain of straight segments through its vertices, in the object's
// local frame; closed joins the last vertex back to the first.
class wbPolyline : public iGeometricGroup {
    I_CLASS(wbPolyline, iGeometricGroup, 1)
    I_OSG_NODE(wbPolyline)
    I_PROPERTY(bool, closed)
public:
    wbPolyline();
    wbPolyline(wbPolyline const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    osg::Vec3Array* getVertices() override { return _vertices.get(); }
    // Each change asks for a rebuild.
    void setVertices(osg::Vec3Array const& vertices) override;
    void addVertex(osg::Vec3f const& vertex);
    // Out-of-range indices are ignored.
    void setVertex(int index, osg::Vec3f const& vertex);
    void removeVertex(int index);
    int getNumVertices() const { return static_cast<int>(_vertices->size()); }

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~wbPolyline() override;

private:
    bool validIndex(int index) const { return index >= 0 && index < getNumVertices(); }
    void slotclosedChanged(iRoot* source, bool value);

    osg::ref_ptr<osg::Vec3Array> _vertices;
};
