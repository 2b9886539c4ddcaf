#include "shapes/wbShapeDropCallback.h"

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/viewing/iDragDropInterface.h>
#include <iModelStage/viewing/iViewer.h>

#include <QCursor>
#include <QPoint>
#include <QWindow>

#include <algorithm>
#include <string>

I_REGISTER_CLASS(wbShapeDropCallback)

namespace {

char const* const ShapeClasses[] = {"wbBox", "wbPolyline", "wbCylinder", "wbLabel"};

bool isShape(osg::Node* node)
{
    auto* group = dynamic_cast<iGeometricGroup*>(node);
    if (!group)
        return false;
    for (char const* name : ShapeClasses)
        if (std::string(group->getClassName()) == name)
            return true;
    return false;
}

iGeometricsLayer* documentOf(iViewer* viewer)
{
    if (auto* layer = dynamic_cast<iGeometricsLayer*>(viewer->getViewModel()))
        return layer;
    return dynamic_cast<iGeometricsLayer*>(iLayersManager::getLayer("iGeometricsLayer"));
}

} // namespace

void wbShapeDropCallback::registerFor(char const* viewerClass)
{
    for (char const* shape : ShapeClasses)
        iDragDropInterface::registerCallback(shape, viewerClass, "wbShapeDropCallback");
}

bool wbShapeDropCallback::canDrop(iRoot* target, NodeList const& nodes)
{
    auto* viewer = dynamic_cast<iViewer*>(target);
    return viewer && documentOf(viewer) && !nodes.empty() &&
           std::all_of(nodes.begin(), nodes.end(), [](osg::ref_ptr<osg::Node> const& n) { return isShape(n.get()); });
}

bool wbShapeDropCallback::dropPoint(iViewer* viewer, osg::Vec3f& world)
{
    QWindow* surface = viewer->getGLWindow();
    iInputPlane* plane = viewer->getIPlane();
    if (!surface || !plane)
        return false;
    QPoint const at = surface->mapFromGlobal(QCursor::pos());
    // The viewer counts pixels from the bottom.
    return viewer->computeIPlaneIntersection(plane->getCoordinateSystem(), float(at.x()),
                                             float(surface->height() - 1 - at.y()), world);
}

bool wbShapeDropCallback::drop(iRoot* target, NodeList const& nodes)
{
    if (!canDrop(target, nodes))
        return false;
    auto* viewer = dynamic_cast<iViewer*>(target);
    osg::Vec3f world;
    if (!dropPoint(viewer, world))
        return false;
    iGeometricsLayer* layer = documentOf(viewer);
    osg::Matrixd const plane = viewer->getIPlane()->getWorldMatrix();
    layer->clearObjectSelection();
    for (osg::ref_ptr<osg::Node> const& node : nodes) {
        osg::ref_ptr<iGeometricGroup> copy =
            static_cast<iGeometricGroup*>(node->clone(osg::CopyOp::SHALLOW_COPY));
        // A copy starts with its source's id, which the prototype may give
        // to the next drop as well.
        copy->setUniqueId(iRoot::generateUniqueId(0));
        // Turned as the input plane, standing on the drop point.
        osg::Matrixd placed = plane;
        placed.setTrans(world);
        copy->setMatrix(placed);
        layer->addObject(copy.get(), true);
        layer->addObjectSelection(copy.get());
    }
    return true;
}
