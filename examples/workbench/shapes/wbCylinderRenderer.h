#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws a wbCylinder as a lit mantle of quads and two polygon caps.
class wbCylinderRenderer : public iGeometryRenderer {
    I_CLASS(wbCylinderRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbCylinderRenderer)
public:
    wbCylinderRenderer() = default;
    wbCylinderRenderer(wbCylinderRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbCylinderRenderer() override = default;
};
