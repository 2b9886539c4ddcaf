#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws a wbPolyline as unlit segments in its colour; a polyline of fewer
// than two vertices draws nothing.
class wbPolylineRenderer : public iGeometryRenderer {
    I_CLASS(wbPolylineRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbPolylineRenderer)
public:
    wbPolylineRenderer() = default;
    wbPolylineRenderer(wbPolylineRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbPolylineRenderer() override = default;
};
