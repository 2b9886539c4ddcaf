#include <iModelStage/snapping/iBaseSnap.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/snapping/iSnapHitVisitor.h>
#include <iModelStage/viewing/iViewer.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <cmath>
#include <cstring>
#include <unordered_set>

I_REGISTER_CLASS(iBaseSnap)

namespace {

char const* const kRendererNodes = "__#iGeometricRendererNodes#__";
float const kHitTolerance = 15.0f;

float& precision()
{
    static float value = 100000000.0f;
    return value;
}

iBaseSnap::iOrthoSnapBevahior& orthoBehaviour()
{
    static iBaseSnap::iOrthoSnapBevahior value = iBaseSnap::iOrthoSnapFree;
    return value;
}

std::set<osg::ref_ptr<osg::Node>>& exclusions()
{
    static std::set<osg::ref_ptr<osg::Node>> nodes;
    return nodes;
}

bool isExcluded(osg::Node* node)
{
    auto const& nodes = exclusions();
    return !nodes.empty() && nodes.count(osg::ref_ptr<osg::Node>(node)) > 0;
}

// The parent of start that lies on the hit's path, or null.
osg::Group* parentOnPath(osg::Node* start, osg::NodePath const& path)
{
    for (unsigned int i = 0; i < start->getNumParents(); ++i) {
        osg::Group* parent = start->getParent(i);
        for (osg::Node* onPath : path)
            if (onPath == parent)
                return parent;
    }
    return nullptr;
}

// Climbs from start to the document object of layer whose renderer
// container holds it: at start along the hit's path, above it by first
// parents. rendererChild gets the node just below the container.
osg::Group* findOwner(iGeometricsLayer* layer, osg::Node* start, osg::NodePath const& path,
                      osg::Node** rendererChild)
{
    osg::Node* node = start;
    osg::Group* parent = parentOnPath(start, path);
    while (parent) {
        if (parent->getName() == kRendererNodes && parent->getNumParents() > 0 &&
            layer->isRelative(parent->getParent(0))) {
            *rendererChild = node;
            return parent->getParent(0);
        }
        node = parent;
        parent = node->getNumParents() > 0 ? node->getParent(0) : nullptr;
    }
    return nullptr;
}

// The class that the snap filter judges an owner by: that of the nearest
// document object above it, or its own directly under the object root.
std::string filterClassName(iGeometricsLayer* layer, osg::Group* owner)
{
    osg::Group* root = layer->getObjectsRoot();
    for (osg::Node* above = owner->getNumParents() > 0 ? owner->getParent(0) : nullptr; above && above != root;
         above = above->getNumParents() > 0 ? above->getParent(0) : nullptr) {
        if (auto* object = dynamic_cast<iNodeGroup*>(above))
            return object->getClassName();
    }
    if (auto* object = dynamic_cast<iRoot*>(owner))
        return object->getClassName();
    return owner->className();
}

bool ownerAdmits(iGeometricsLayer* layer, iViewer* viewer, osg::Node* node, osg::Group* owner,
                 osg::Node* rendererChild)
{
    if (!viewer->isRendererMaskNodeEnabled(node))
        return false;
    if (rendererChild && !viewer->isRendererMaskNodeEnabled(rendererChild))
        return false;
    if (iGeometricsLayer::getSnapFilterActive() &&
        iGeometricsLayer::getSnapFilter().count(filterClassName(layer, owner)) == 0)
        return false;
    return iNodeGroup::isNodeFlagSet(owner, 0) && iNodeGroup::isNodeFlagSet(owner, 4) && !isExcluded(owner);
}

// The pick box: a thin box along the line of sight through the cursor,
// tolerance wide in world units.
iOOBBox pickBox(iViewer* viewer, osg::Camera* camera, float x, float y, float tolerance)
{
    osg::Matrixd const window = camera->getViewport()->computeWindowMatrix();
    osg::Matrixd const projectionWindow = camera->getProjectionMatrix() * window;
    osg::Matrixd const m = camera->getViewMatrix() * projectionWindow;
    osg::Matrixd const inverse = osg::Matrixd::inverse(m);
    double const worldTolerance =
        (osg::Vec3d(tolerance, 0.0, 0.0) * inverse - osg::Vec3d(0.0, 0.0, 0.0) * inverse).length();
    osg::Vec3d eye = osg::Vec3d(x, y, 0.0) * osg::Matrixd::inverse(projectionWindow);
    eye.z() = 0.0;
    osg::Matrixd const frame = viewer->getCurrentView().getProjectionType() == iView::iProjectionOrtho
                                   ? osg::Matrixd::inverse(camera->getViewMatrix())
                                   : inverse;
    iOOBBox box;
    iOOBBSet(box, osg::Vec3f(eye * frame), osg::Vec3f(osg::Matrixd::transform3x3(osg::Vec3d(1, 0, 0), frame)),
             osg::Vec3f(osg::Matrixd::transform3x3(osg::Vec3d(0, 1, 0), frame)),
             osg::Vec3f(osg::Matrixd::transform3x3(osg::Vec3d(0, 0, 1), frame)), worldTolerance, worldTolerance,
             1000000.0);
    return box;
}

void appendGeode(osg::Geode* geode, iOOBBox const& box, osg::RefMatrix const* matrix, std::list<iSnapGeometry>& out)
{
    if (!iNodeGroup::isNodeFlagSet(geode, 4))
        return;
    for (unsigned int i = 0; i < geode->getNumDrawables(); ++i) {
        osg::Geometry* geometry = geode->getDrawable(i)->asGeometry();
        if (!geometry)
            continue;
        iSnapGeometry hit;
        hit.box = box;
        hit.matrix = matrix ? osg::Matrixd(*matrix) : osg::Matrixd::identity();
        hit.geometry = geometry;
        out.push_back(hit);
    }
}

} // namespace

bool iBaseSnap::snap(iViewer*, osg::Vec3f&, osg::Vec2f const&)
{
    return false;
}

bool iBaseSnap::collectGeometry(std::list<iSnapGeometry> const&)
{
    return false;
}

float iBaseSnap::getPrecision()
{
    return precision();
}

void iBaseSnap::setPrecision(float value)
{
    if (std::isfinite(value) && value > 0.0f)
        precision() = value;
}

iBaseSnap::iOrthoSnapBevahior iBaseSnap::getOrthoSnapBevahior()
{
    return orthoBehaviour();
}

void iBaseSnap::setOrthoSnapBevahior(iOrthoSnapBevahior behaviour)
{
    orthoBehaviour() = behaviour;
}

void iBaseSnap::addExclusionList(std::vector<osg::ref_ptr<osg::Node>> const& nodes)
{
    for (osg::ref_ptr<osg::Node> const& node : nodes)
        if (node.valid())
            exclusions().insert(node);
}

void iBaseSnap::removeExclusionList(std::vector<osg::ref_ptr<osg::Node>> const& nodes)
{
    for (osg::ref_ptr<osg::Node> const& node : nodes)
        exclusions().erase(node);
}

void iBaseSnap::clearExclusionList()
{
    exclusions().clear();
}

std::set<osg::ref_ptr<osg::Node>> const& iBaseSnap::getExclusionList()
{
    return exclusions();
}

iBaseSnap* iBaseSnap::snapMulti(std::vector<iBaseSnap*> const& snaps, iGeometricsLayer* layer, iViewer* viewer,
                                osg::Vec3f& point, osg::Vec2f const& cursor)
{
    std::list<iSnapGeometry> geometries;
    bool any = false, geometry = false;
    for (iBaseSnap* snap : snaps) {
        if (!snap || !snap->getActive())
            continue;
        any = true;
        geometry = geometry || snap->getNeedGeometry();
    }
    if (!any)
        return nullptr;
    if (geometry)
        hitGeometries(layer, viewer, cursor.x(), cursor.y(), kHitTolerance, geometries);
    iBaseSnap* result = nullptr;
    for (iBaseSnap* snap : snaps) {
        if (!snap || !snap->getActive())
            continue;
        snap->setGeometricsLayer(layer);
        if (snap->collectGeometry(geometries) && snap->snap(viewer, point, cursor))
            result = snap;
    }
    return result;
}

void iBaseSnap::hitGeometries(iGeometricsLayer* layer, iViewer* viewer, float x, float y, float tolerance,
                              std::list<iSnapGeometry>& out)
{
    osg::Camera* camera = viewer ? viewer->getCamera() : nullptr;
    if (!layer || !camera || !camera->getViewport())
        return;
    iOOBBox const box = pickBox(viewer, camera, x, y, tolerance);
    osg::ref_ptr<osgUtil::PolytopeIntersector> intersector = new osgUtil::PolytopeIntersector(
        osgUtil::Intersector::WINDOW, x - tolerance, y - tolerance, x + tolerance, y + tolerance);
    iSnapHitVisitor visitor(intersector.get());
    camera->accept(visitor);
    if (!intersector->containsIntersections())
        return;
    std::unordered_set<osg::Node*> visited;
    for (auto const& hit : intersector->getIntersections()) {
        for (osg::Node* node : hit.nodePath) {
            if (!visited.insert(node).second || isExcluded(node))
                continue;
            osg::Node* rendererChild = nullptr;
            osg::Group* owner = findOwner(layer, node, hit.nodePath, &rendererChild);
            if (!owner || !ownerAdmits(layer, viewer, node, owner, rendererChild))
                continue;
            if (osg::Geode* geode = node->asGeode())
                appendGeode(geode, box, hit.matrix.get(), out);
        }
    }
}
