#include <iModelStage/interaction/iSelectWindowIA.h>

#include <iModelStage/frame/iPointerTable.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iComputeSelBoundsVisitor.h>
#include <iModelStage/interaction/iHitGeometries.h>
#include <iModelStage/model/iObjectWalk.h>
#include <iModelStage/snapping/iSnapChildIndex.h>
#include <iModelStage/viewing/iViewer.h>

#include <osg/Polytope>
#include <osg/UserDataContainer>

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <unordered_map>

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


// The points of a space that land inside a window rectangle once taken
// through toWindow, as two polytopes: the points in front of the eye, and
// those behind it, which the perspective division mirrors into the
// window. The rectangle is widened by a pixel against rounding.
class WindowRectCull {
public:
    WindowRectCull(osg::Matrixd const& toWindow, osg::Vec2f const& low, osg::Vec2f const& high)
    {
        auto column = [&toWindow](int c) {
            return osg::Vec4d(toWindow(0, c), toWindow(1, c), toWindow(2, c), toWindow(3, c));
        };
        osg::Vec4d const x = column(0), y = column(1), w = column(3);
        double const x0 = double(low.x()) - 1.0, x1 = double(high.x()) + 1.0;
        double const y0 = double(low.y()) - 1.0, y1 = double(high.y()) + 1.0;
        for (osg::Vec4d const& plane : {x - w * x0, w * x1 - x, y - w * y0, w * y1 - y}) {
            _front.add(osg::Plane(plane));
            _back.add(osg::Plane(-plane));
        }
        // Without a perspective the depth divisor is one constant.
        bool const flat = w.x() == 0.0 && w.y() == 0.0 && w.z() == 0.0;
        _useFront = !flat || w.w() > 0.0;
        _useBack = !flat || w.w() < 0.0;
    }

    void query(iSnapChildIndex const& index, std::vector<unsigned int>& out)
    {
        std::vector<unsigned int> found;
        if (_useFront) {
            index.query(_front, found);
            out.insert(out.end(), found.begin(), found.end());
        }
        if (_useBack) {
            index.query(_back, found);
            out.insert(out.end(), found.begin(), found.end());
        }
    }

private:
    osg::Polytope _front;
    osg::Polytope _back;
    bool _useFront = false;
    bool _useBack = false;
};

// The children of a wide group whose bounds may reach the window
// rectangle along any of the group's paths, ascending; false when the
// group has no index or no path, and all its children are to be walked.
bool childrenNearRect(osg::Group& group, osg::Matrixd const& toWindow, osg::Vec2f const& low,
                      osg::Vec2f const& high, std::vector<unsigned int>& out)
{
    iSnapChildIndex const* index = iSnapChildIndex::of(group);
    if (!index)
        return false;
    osg::MatrixList worlds = group.getWorldMatrices();
    if (worlds.empty())
        return false;
    std::sort(worlds.begin(), worlds.end());
    worlds.erase(std::unique(worlds.begin(), worlds.end()), worlds.end());
    for (osg::Matrixd const& world : worlds) {
        WindowRectCull cull(world * toWindow, low, high);
        cull.query(*index, out);
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return true;
}

// Held while the selection runs; a deque, so that growing it never copies
// the references, which would reach into every object listed so far.
using ObjectList = std::deque<osg::ref_ptr<osg::Node>>;

// How many objects are brought near in one go, and how deep below each.
constexpr std::size_t kBatch = 32;
constexpr int kTestDepth = 5;
constexpr int kWalkDepth = 2;
constexpr unsigned int kPrefetchFanOut = 4;

void prefetchLine(void const* address)
{
    if (address)
        __builtin_prefetch(address);
}

// Asks for the memory that walking or testing a batch of nodes reads: the
// first levels of each subtree (nodes, child lists, names, user data),
// level by level over the whole batch, so that the misses of a batch
// overlap rather than follow one another. On a large document waiting for
// memory is most of the cost of looking at an object. Nothing is changed.
void prefetchSubtrees(std::vector<osg::Node*> level, int depths)
{
    std::vector<osg::Node*> next;
    for (int depth = 0; depth < depths && !level.empty(); ++depth) {
        for (osg::Node* node : level) {
            prefetchLine(node);
            prefetchLine(reinterpret_cast<char const*>(node) + sizeof(osg::Node));
        }
        for (osg::Node* node : level) {
            prefetchLine(node->getName().data());
            prefetchLine(node->getUserDataContainer());
        }
        next.clear();
        for (osg::Node* node : level) {
            if (osg::UserDataContainer* data = node->getUserDataContainer())
                prefetchLine(data->getUserData());
            osg::Group* group = node->asGroup();
            unsigned int const count = group ? std::min(group->getNumChildren(), kPrefetchFanOut) : 0u;
            for (unsigned int i = 0; i < count; ++i)
                next.push_back(group->getChild(i));
        }
        level.swap(next);
    }
}

// The model's objects below start in the order of the model's object
// walk, leaving out the children of wide groups whose bounds lie away
// from the window rectangle: whatever those hold cannot lie inside it.
void collectObjectsNearRect(osg::Node* start, osg::Matrixd const& toWindow, osg::Vec2f const& low,
                            osg::Vec2f const& high, ObjectList& out)
{
    struct Frame {
        osg::Group* group;
        bool all;
        std::vector<unsigned int> children;
        std::size_t next;
    };
    std::vector<Frame> frames;
    auto prefetchChildren = [](Frame const& frame, std::size_t count) {
        std::vector<osg::Node*> batch;
        for (std::size_t i = frame.next; i < std::min(count, frame.next + kBatch); ++i) {
            std::size_t const child = frame.all ? i : frame.children[i];
            if (child < frame.group->getNumChildren())
                batch.push_back(frame.group->getChild(static_cast<unsigned int>(child)));
        }
        prefetchSubtrees(std::move(batch), kWalkDepth);
    };
    auto enter = [&](osg::Node* node) {
        osg::Group* group = node->asGroup();
        if (!group || iBaseModel::isRendererContainer(node))
            return;
        Frame frame{group, true, {}, 0};
        if (group->getNumChildren() >= iSnapChildIndex::wideGroup)
            frame.all = !childrenNearRect(*group, toWindow, low, high, frame.children);
        frames.push_back(std::move(frame));
    };
    iObjectWalk kinds(nullptr);
    if (start && !start->asGeode())
        enter(start);
    while (!frames.empty()) {
        Frame& frame = frames.back();
        std::size_t const count = frame.all ? frame.group->getNumChildren() : frame.children.size();
        if (frame.next >= count) {
            frames.pop_back();
            continue;
        }
        if (frame.next % kBatch == 0 && count >= iSnapChildIndex::wideGroup)
            prefetchChildren(frame, count);
        std::size_t const child = frame.all ? frame.next : frame.children[frame.next];
        ++frame.next;
        if (child >= frame.group->getNumChildren())
            continue;
        osg::Node* node = frame.group->getChild(static_cast<unsigned int>(child));
        if (!node || node->asGeode())
            continue;
        if (node != start && !iBaseModel::isRendererContainer(node) && kinds.isObject(node))
            out.push_back(node);
        enter(node);
    }
}

osg::Matrixd windowMatrixOf(iViewer* viewer)
{
    osg::Camera* camera = viewer->getCamera();
    return camera->getViewMatrix() * camera->getProjectionMatrix() * camera->getViewport()->computeWindowMatrix();
}


// Whether an object's bounds, seen along any of its paths, lie inside a
// window rectangle. One test serves a whole selection: the bounds visitor
// is reused, and the world matrices of a parent are found once for all
// its children.
class InsideTest {
public:
    InsideTest(iViewer* viewer, osg::Vec2f const& low, osg::Vec2f const& high)
        : _viewer(viewer), _bounds(viewer), _toWindow(windowMatrixOf(viewer)), _low(low), _high(high)
    {
    }

    osg::Matrixd const& getWindowMatrix() const { return _toWindow; }

    bool operator()(osg::Node* object)
    {
        _bounds.reset();
        object->accept(_bounds);
        osg::BoundingBox const box = _bounds.getBoundingBox();
        if (!box.valid())
            return false;
        for (osg::Matrixd const& world : worldsOf(object)) {
            // The object's own transform is already in its bounds.
            osg::Vec3d const a = osg::Vec3d(box._min) * world;
            osg::Vec3d const b = osg::Vec3d(box._max) * world;
            if (_viewer->isPointClipped(a) || _viewer->isPointClipped(b))
                continue;
            osg::Vec3d const wa = a * _toWindow;
            osg::Vec3d const wb = b * _toWindow;
            if (std::min(wa.x(), wb.x()) >= _low.x() && std::max(wa.x(), wb.x()) <= _high.x() &&
                std::min(wa.y(), wb.y()) >= _low.y() && std::max(wa.y(), wb.y()) <= _high.y())
                return true;
        }
        return false;
    }

private:
    // The local to world matrices of the object's parent along each of the
    // object's paths.
    osg::MatrixList const& worldsOf(osg::Node* object)
    {
        if (object->getNumParents() == 1) {
            osg::Group* parent = object->getParent(0);
            auto found = _parentWorlds.find(parent);
            if (found == _parentWorlds.end())
                found = _parentWorlds.emplace(parent, parent->getWorldMatrices()).first;
            return found->second;
        }
        _scratch.clear();
        for (osg::NodePath path : object->getParentalNodePaths()) {
            path.pop_back();
            _scratch.push_back(osg::computeLocalToWorld(path));
        }
        return _scratch;
    }

    iViewer* _viewer;
    iComputeSelBoundsVisitor _bounds;
    osg::Matrixd _toWindow;
    osg::Vec2f _low;
    osg::Vec2f _high;
    std::unordered_map<osg::Group*, osg::MatrixList> _parentWorlds;
    osg::MatrixList _scratch;
};

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
    osg::Group* root = layer->getRoot();
    if (!iObjectWalk(root).next())
        return false;
    if (!isCtrlHeld())
        layer->clearObjectSelection();
    InsideTest inside(viewer, low, high);
    ObjectList objects;
    collectObjectsNearRect(root, inside.getWindowMatrix(), low, high, objects);
    iPointerTable<char, 0, 4, 20> handled;
    handled.reserve(objects.size());
    bool selected = false;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (i % kBatch == 0) {
            std::vector<osg::Node*> batch;
            for (std::size_t k = i; k < std::min(objects.size(), i + kBatch); ++k)
                batch.push_back(objects[k].get());
            prefetchSubtrees(std::move(batch), kTestDepth);
        }
        osg::ref_ptr<osg::Node> const& object = objects[i];
        if (!inside(object.get()))
            continue;
        osg::Group* owner = documentObjectOf(object.get());
        if (!owner || !handled.insert(owner, 0).second || !viewer->isRendererMaskNodeEnabled(owner))
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
