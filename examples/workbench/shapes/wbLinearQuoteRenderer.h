#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws an iLinearQuote in its own frame: the dimension line at offset
// across the measured segment, an extension line at each end that starts
// extlineoffset away from the measured point and runs a little past the
// dimension line, an arrowhead at each end, and the measured length as
// text above the line (turned over with fliptext).
class wbLinearQuoteRenderer : public iGeometryRenderer {
    I_CLASS(wbLinearQuoteRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbLinearQuoteRenderer)
public:
    wbLinearQuoteRenderer() = default;
    wbLinearQuoteRenderer(wbLinearQuoteRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbLinearQuoteRenderer() override = default;
};
