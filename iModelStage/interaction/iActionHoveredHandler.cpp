#include <iModelStage/interaction/iActionHoveredHandler.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/viewing/iViewer.h>

#include <QAction>

namespace {

osg::Node* parentOf(QAction* action)
{
    return reinterpret_cast<osg::Node*>(static_cast<quintptr>(action->property("_parent").toLongLong()));
}

bool wasUnselected(QAction* action)
{
    QVariant const selected = action->property("_selected");
    return selected.isValid() && selected.toLongLong() == 0;
}

} // namespace

void iActionHoveredHandler::actionHovered(QAction* action)
{
    iGeometricsLayer* layer = _owner->getGeometricsLayer();
    if (!layer || !action)
        return;
    bool const added = layer->sigObjectSelectionAdded.block(true);
    bool const removed = layer->sigObjectSelectionRemoved.block(true);
    bool const changed = layer->sigObjectsSelectionChanged.block(true);
    for (QAction* entry : _owner->getMenuActions())
        if (wasUnselected(entry))
            layer->removeObjectSelection(parentOf(entry));
    if (wasUnselected(action)) {
        layer->addObjectSelection(parentOf(action));
        // The GL surface lives in its own window: draw it here and now.
        iViewer* viewer = _owner->getViewer();
        if (viewer && viewer->isVisible()) {
            viewer->makeGLCurrent();
            viewer->paintGL();
            viewer->swapGLBuffer();
        }
    }
    layer->sigObjectsSelectionChanged.block(changed);
    layer->sigObjectSelectionRemoved.block(removed);
    layer->sigObjectSelectionAdded.block(added);
}
