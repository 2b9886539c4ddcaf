#include <iModelStage/interaction/iSelectWindowIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iComputeSelBoundsVisitor.h>
#include <iModelStage/interaction/iHitGeometries.h>
#include <iModelStage/viewing/iViewer.h>

#include <algorithm>
#include <map>
#include <set>

I_REGISTER_CLASS(iSelectWindowIA)

namespace {

constexpr unsigned int kVisible = 0;
constexpr unsigned int kSelectable = 1;

osg::Group* rendererContainerOf(osg::Node* object)
{
    osg::Group* group = object ? object->asGroup() : nullptr;
    if (!group)
        return nullptr;
    for (unsigned int i = 0; i < group->getNumChildren(); ++i) {
        osg::Node* child = group->getChild(i);
        if (child->getName() == iBaseModel::RendererContainerName)
            return child->asGroup();
    }
    return nullptr;
}

bool hasEmptyChild(osg::Group* container)
{
    for (unsigned int i = 0; i < container->getNumChildren(); ++i)
        if (!container->getChild(i)->getBound().valid())
            return true;
    return false;
}

} // namespace

iSelectWindowIA::iSelectWindowIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate(
                "Cliccare col pulsante sinistro del mouse e trascinare per definire la finestra di selezione")),
            iIATypeVec3, osg::Vec3f());
}

iSelectWindowIA::~iSelectWindowIA() = default;

bool iSelectWindowIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    if (getCurrentStep() != 0 || _band.isShownIn(getViewer()))
        return true;
    _band.show(getViewer(), p.getWindowPos(), osg::Vec4f(0.763f, 1.0f, 0.249f, 0.3f));
    return true;
}

bool iSelectWindowIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    _band.span(getStartPos().getWindowPos(), p.getWindowPos());
    return true;
}

bool iSelectWindowIA::release(iIAPoint const& p)
{
    iStackedInteractor::release(p);
    osg::Vec3f const& from = getStartPos().getWindowPos();
    osg::Vec3f const& to = p.getWindowPos();
    osg::Vec2f const low(std::min(from.x(), to.x()), std::min(from.y(), to.y()));
    osg::Vec2f const high(std::max(from.x(), to.x()), std::max(from.y(), to.y()));
    if (to.x() < from.x())
        _selectionMode = iSelectIntersection;
    iGeometricsLayer* layer = getGeometricsLayer();
    if (layer) {
        bool const blocked = layer->sigObjectsSelectionChanged.block(true);
        bool const selected = _selectionMode == iSelectInside ? selectInsideRect(low, high)
                                                              : selectIntersectionRect(low, high);
        layer->sigObjectsSelectionChanged.block(blocked);
        if (selected)
            layer->sigObjectsSelectionChanged();
        else
            layer->clearObjectSelection();
    }
    _band.hide(getViewer());
    return true;
}

void iSelectWindowIA::cancel()
{
    _band.hide(getViewer());
    iStackedInteractor::cancel();
}

bool iSelectWindowIA::isInsideOnScreen(osg::Node* object, osg::Vec2f const& low, osg::Vec2f const& high)
{
    iViewer* viewer = getViewer();
    iComputeSelBoundsVisitor bounds(viewer);
    object->accept(bounds);
    osg::BoundingBox const box = bounds.getBoundingBox();
    if (!box.valid())
        return false;
    osg::Camera* camera = viewer->getCamera();
    osg::Matrixd const toWindow =
        camera->getViewMatrix() * camera->getProjectionMatrix() * camera->getViewport()->computeWindowMatrix();
    for (osg::NodePath path : object->getParentalNodePaths()) {
        // The object's own transform is already in its bounds.
        path.pop_back();
        osg::Matrixd const world = osg::computeLocalToWorld(path);
        osg::Vec3d const a = osg::Vec3d(box._min) * world;
        osg::Vec3d const b = osg::Vec3d(box._max) * world;
        if (viewer->isPointClipped(a) || viewer->isPointClipped(b))
            continue;
        osg::Vec3d const wa = a * toWindow;
        osg::Vec3d const wb = b * toWindow;
        if (std::min(wa.x(), wb.x()) >= low.x() && std::max(wa.x(), wb.x()) <= high.x() &&
            std::min(wa.y(), wb.y()) >= low.y() && std::max(wa.y(), wb.y()) <= high.y())
            return true;
    }
    return false;
}

osg::Group* iSelectWindowIA::documentObjectOf(osg::Node* object)
{
    if (rendererContainerOf(object))
        return object->asGroup();
    std::vector<osg::Node*> path;
    if (object->getNumParents() > 0)
        path.push_back(object->getParent(0));
    return findParentGeometricContainer(getGeometricsLayer(), object, path, nullptr);
}

bool iSelectWindowIA::selectInsideRect(osg::Vec2f const& low, osg::Vec2f const& high)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    if (!layer || !viewer)
        return false;
    NodeList objects;
    layer->getObjectsList(layer->getRoot(), objects, nullptr);
    if (objects.empty())
        return false;
    if (!isCtrlHeld())
        layer->clearObjectSelection();
    std::set<osg::Group*> handled;
    bool selected = false;
    for (osg::ref_ptr<osg::Node> const& object : objects) {
        if (!isInsideOnScreen(object.get(), low, high))
            continue;
        osg::Group* owner = documentObjectOf(object.get());
        if (!owner || !handled.insert(owner).second || !viewer->isRendererMaskNodeEnabled(owner))
            continue;
        osg::Group* container = rendererContainerOf(owner);
        if (container && hasEmptyChild(container))
            continue;
        if (!layer->isNodeFlagSet(owner, kSelectable) || !layer->isObjectFiltered(owner) ||
            !layer->isNodeFlagSet(owner, kVisible))
            continue;
        if (!layer->isObjectSelected(owner))
            layer->addObjectSelection(owner);
        selected = true;
    }
    return selected;
}

bool iSelectWindowIA::selectIntersectionRect(osg::Vec2f const& low, osg::Vec2f const& high)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    osgUtil::PolytopeIntersector::Intersections hits;
    if (!iPolytopeHits(layer, viewer, low.x(), low.y(), high.x(), high.y(), hits))
        return false;
    std::map<osg::Group*, osg::Node*> found;
    for (auto const& pair : iSelectablePairs(hits, layer, viewer)) {
        osg::Group* parent = pair.first;
        osg::Node* node = pair.second;
        if (found.count(parent))
            continue;
        bool const selectable = layer->isNodeFlagSet(parent, kSelectable);
        if (selectable && !layer->isObjectFiltered(parent))
            continue;
        if (layer->isRelative(node) && selectable)
            found[parent] = node;
    }
    if (found.empty())
        return false;
    if (!isCtrlHeld())
        layer->clearObjectSelection();
    for (auto const& entry : found) {
        if (!layer->isObjectSelected(entry.first))
            layer->addObjectSelection(entry.first);
        else if (isCtrlHeld())
            layer->removeObjectSelection(entry.first);
    }
    return true;
}
