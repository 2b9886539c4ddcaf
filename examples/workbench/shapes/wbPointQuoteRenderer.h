#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Marks the point of an iPointQuote with a dot of a few pixels; the quote
// paints its flag itself.
class wbPointQuoteRenderer : public iGeometryRenderer {
    I_CLASS(wbPointQuoteRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbPointQuoteRenderer)
public:
    wbPointQuoteRenderer() = default;
    wbPointQuoteRenderer(wbPointQuoteRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbPointQuoteRenderer() override = default;
};
