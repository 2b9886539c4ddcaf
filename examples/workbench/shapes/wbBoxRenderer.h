#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws a wbBox as six lit faces in the box's colour.
class wbBoxRenderer : public iGeometryRenderer {
    I_CLASS(wbBoxRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbBoxRenderer)
public:
    wbBoxRenderer() = default;
    wbBoxRenderer(wbBoxRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbBoxRenderer() override = default;
};
