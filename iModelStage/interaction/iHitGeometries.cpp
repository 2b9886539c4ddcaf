#include <iModelStage/interaction/iHitGeometries.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/snapping/iSnapHitVisitor.h>
#include <iModelStage/viewing/iViewer.h>

#include <algorithm>
#include <set>

namespace {

// Hides a node for the life of the guard, restoring its mask afterwards.
class MaskGuard {
public:
    explicit MaskGuard(osg::Node* node) : _node(node)
    {
        if (_node) {
            _mask = _node->getNodeMask();
            _node->setNodeMask(0);
        }
    }
    ~MaskGuard()
    {
        if (_node)
            _node->setNodeMask(_mask);
    }
    MaskGuard(MaskGuard const&) = delete;
    MaskGuard& operator=(MaskGuard const&) = delete;

private:
    osg::Node* _node;
    osg::Node::NodeMask _mask = 0;
};

osg::Group* parentOnPath(osg::Node* node, std::vector<osg::Node*> const& nodePath)
{
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
        osg::Group* parent = node->getParent(i);
        if (std::find(nodePath.begin(), nodePath.end(), parent) != nodePath.end())
            return parent;
    }
    return nullptr;
}

} // namespace

bool iPolytopeHits(iGeometricsLayer* layer, iViewer* viewer, double x0, double y0, double x1, double y1,
                   osgUtil::PolytopeIntersector::Intersections& out)
{
    out.clear();
    if (!viewer)
        return false;
    osg::ref_ptr<osgUtil::PolytopeIntersector> picker =
        new osgUtil::PolytopeIntersector(osgUtil::Intersector::WINDOW, x0, y0, x1, y1);
    {
        iGeometricsLayer* editingLayer = layer ? layer->getEditingLayer() : nullptr;
        MaskGuard editing(editingLayer ? editingLayer->getRoot() : nullptr);
        MaskGuard interactive(layer ? layer->getInteractiveLayer() : nullptr);
        // The same hits as a plain walk, found through the index of the
        // object root rather than by testing every object.
        iSnapHitVisitor visitor(picker.get());
        viewer->getCamera()->accept(visitor);
    }
    out = picker->getIntersections();
    return !out.empty();
}

bool iIsHitClipped(iViewer* viewer, osgUtil::PolytopeIntersector::Intersection const& hit)
{
    if (!viewer || !viewer->getClipBoxEnabled())
        return false;
    osg::Vec3d point = hit.localIntersectionPoint;
    if (hit.matrix.valid())
        point = point * (*hit.matrix);
    return viewer->isPointClipped(point);
}

osg::Group* findParentGeometricContainer(iNodeLayer* layer, osg::Node* start, std::vector<osg::Node*>& nodePath,
                                         osg::Node** rendererChild)
{
    if (!layer || !start)
        return nullptr;
    osg::Node* previous = start;
    osg::Group* current = parentOnPath(start, nodePath);
    while (current) {
        if (current->getName() == iBaseModel::RendererContainerName && current->getNumParents() > 0) {
            osg::Group* object = current->getParent(0);
            if (layer->isRelative(object)) {
                if (rendererChild)
                    *rendererChild = previous;
                return object;
            }
        }
        if (current->getNumParents() == 0)
            return nullptr;
        previous = current;
        current = current->getParent(0);
    }
    return nullptr;
}

bool findSelectablePairs(std::vector<osg::Node*>& nodePath, iNodeLayer* layer, iViewer* viewer, osg::Group** parent,
                         osg::Node** node)
{
    *parent = nullptr;
    *node = nullptr;
    if (!viewer || !layer || nodePath.empty())
        return false;
    osg::Node* last = nodePath.back();
    osg::Group* group = nodePath.size() >= 2 ? dynamic_cast<osg::Group*>(nodePath[nodePath.size() - 2]) : nullptr;
    // Only what the layer owns can be picked: the axis triad of the screen
    // camera is drawn by the same camera.
    if (!last || !group || !layer->isRelative(group) || !viewer->isRendererMaskNodeEnabled(group))
        return false;
    osg::Node* rendererChild = nullptr;
    osg::Group* container = findParentGeometricContainer(layer, group, nodePath, &rendererChild);
    if (rendererChild && !viewer->isRendererMaskNodeEnabled(rendererChild))
        return false;
    *parent = container ? container : group;
    *node = last;
    return true;
}

std::vector<std::pair<osg::Group*, osg::Node*>>
iSelectablePairs(osgUtil::PolytopeIntersector::Intersections const& hits, iNodeLayer* layer, iViewer* viewer)
{
    std::vector<std::pair<osg::Group*, osg::Node*>> pairs;
    for (auto const& hit : hits) {
        if (iIsHitClipped(viewer, hit))
            continue;
        std::vector<osg::Node*> path(hit.nodePath.begin(), hit.nodePath.end());
        osg::Group* parent = nullptr;
        osg::Node* node = nullptr;
        if (findSelectablePairs(path, layer, viewer, &parent, &node))
            pairs.emplace_back(parent, node);
    }
    return pairs;
}

bool iHitGeometries(iNodeLayer* layer, iViewer* viewer, int x, int y, std::vector<osg::ref_ptr<osg::Node>>& result)
{
    if (!layer)
        return false;
    result.clear();
    auto* geometrics = dynamic_cast<iGeometricsLayer*>(layer);
    osgUtil::PolytopeIntersector::Intersections hits;
    iPolytopeHits(geometrics, viewer, x - 5.0, y - 5.0, x + 5.0, y + 5.0, hits);
    std::set<osg::Group*> seen;
    for (auto const& pair : iSelectablePairs(hits, layer, viewer))
        if (seen.insert(pair.first).second)
            result.push_back(pair.first);
    return !result.empty();
}
