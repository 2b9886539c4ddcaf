#pragma once

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws an iLeader: an arrowhead at the object's position, a leader line
// rising bleaderline across and hleaderline up to a knee, and a landing
// line of lenlandingline on which the text stands; flip mirrors it to the
// left. The text is the quote's, or the object's name when it has none.
class wbLeaderRenderer : public iGeometryRenderer {
    I_CLASS(wbLeaderRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbLeaderRenderer)
public:
    wbLeaderRenderer() = default;
    wbLeaderRenderer(wbLeaderRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometryRenderer(other, copyop) {}

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~wbLeaderRenderer() override = default;
};
