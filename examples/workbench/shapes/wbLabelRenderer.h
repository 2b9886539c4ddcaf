#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws a wbLabel's text in its colour, with a point at the origin that
// snapping and picking can find also where the text has no stroke.
class wbLabelRenderer : public iGeometryRenderer {
    I_CLASS(wbLabelRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbLabelRenderer)
public:
    wbLabelRenderer() = default;
    wbLabelRenderer(wbLabelRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbLabelRenderer() override = default;
};
