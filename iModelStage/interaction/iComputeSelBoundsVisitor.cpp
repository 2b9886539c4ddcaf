#include <iModelStage/interaction/iComputeSelBoundsVisitor.h>

#include <iModelStage/viewing/iViewer.h>

iComputeSelBoundsVisitor::iComputeSelBoundsVisitor(iViewer* viewer)
    : osg::ComputeBoundsVisitor(osg::NodeVisitor::TRAVERSE_ALL_CHILDREN), _viewer(viewer)
{
}

void iComputeSelBoundsVisitor::apply(osg::Node& node)
{
    iViewer* viewer = _viewer.get();
    if (viewer && !viewer->isRendererMaskNodeEnabled(&node))
        return;
    traverse(node);
}
