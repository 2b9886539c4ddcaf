#ifndef IMODELSTAGE_EDITING_IPOINTHANDLERENDERER_H
#define IMODELSTAGE_EDITING_IPOINTHANDLERENDERER_H

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws a point handle as a square of 6 pixels with a dark outline, facing
// the screen at a fixed size. All handles share one glyph, built at the
// first use; it takes the colour of the handle rebuilt last.
class IMODELSTAGE_EXPORT iPointHandleRenderer : public iGeometryRenderer {
    I_CLASS(iPointHandleRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iPointHandleRenderer)
public:
    iPointHandleRenderer();
    iPointHandleRenderer(iPointHandleRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iPointHandleRenderer() override;
};

#endif
