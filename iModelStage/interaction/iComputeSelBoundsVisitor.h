#ifndef IMODELSTAGE_INTERACTION_ICOMPUTESELBOUNDSVISITOR_H
#define IMODELSTAGE_INTERACTION_ICOMPUTESELBOUNDSVISITOR_H

#include <iModelStage/frame/iExport.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/observer_ptr>

class iViewer;

// The bounds of what a viewer shows of a subgraph: a renderer the viewer's
// masks hide adds nothing.
class IMODELSTAGE_EXPORT iComputeSelBoundsVisitor : public osg::ComputeBoundsVisitor {
public:
    explicit iComputeSelBoundsVisitor(iViewer* viewer);

    using osg::ComputeBoundsVisitor::apply;
    void apply(osg::Node& node) override;

private:
    osg::observer_ptr<iViewer> _viewer;
};

#endif
