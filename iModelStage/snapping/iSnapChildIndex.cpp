#include <iModelStage/snapping/iSnapChildIndex.h>

#include <osg/observer_ptr>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

namespace {

unsigned int const kLeafSize = 8;

// Bounds are computed in single precision level by level, so a child's
// geometry may stand out of its bound by a few units in the last place:
// the boxes are widened by that much, relative to their size and place.
float const kRelativeSlack = 1e-5f;

osg::BoundingBox boxAround(osg::BoundingSphere const& sphere)
{
    osg::Vec3f const center(sphere.center());
    float const distance = std::max({std::fabs(center.x()), std::fabs(center.y()), std::fabs(center.z())});
    float const half = float(sphere.radius()) * (1.0f + kRelativeSlack) + distance * kRelativeSlack;
    osg::Vec3f const extent(half, half, half);
    return osg::BoundingBox(center - extent, center + extent);
}

// Counts the recomputations of a group's bound. OSG recomputes a bound
// only after something below it was added, removed, moved or rebuilt, so
// an unchanged count proves the index of the group still holds.
class BoundWatcher : public osg::Node::ComputeBoundingSphereCallback {
public:
    osg::BoundingSphere computeBound(osg::Node const& node) const override
    {
        ++count;
        return node.computeBound();
    }
    mutable unsigned long count = 0;

protected:
    ~BoundWatcher() override = default;
};

struct IndexEntry {
    osg::observer_ptr<osg::Group> group;
    osg::ref_ptr<BoundWatcher> watcher;
    unsigned long stamp = 0;
    iSnapChildIndex index;
};

std::map<osg::Group const*, std::unique_ptr<IndexEntry>>& indexes()
{
    static std::map<osg::Group const*, std::unique_ptr<IndexEntry>> map;
    return map;
}

// Forgets the indexes of groups that died, so the map stays as large as
// the set of live wide groups.
void dropDeadIndexes()
{
    auto& map = indexes();
    for (auto it = map.begin(); it != map.end();) {
        if (it->second->group.valid())
            ++it;
        else
            it = map.erase(it);
    }
}

} // namespace

iSnapChildIndex const* iSnapChildIndex::of(osg::Group& group)
{
    auto& map = indexes();
    if (map.find(&group) == map.end())
        dropDeadIndexes();
    std::unique_ptr<IndexEntry>& entry = map[&group];
    if (!entry || entry->group.get() != &group) {
        entry.reset(new IndexEntry);
        entry->group = &group;
    }
    if (!entry->watcher.valid()) {
        auto* current = dynamic_cast<BoundWatcher*>(group.getComputeBoundingSphereCallback());
        if (!current && group.getComputeBoundingSphereCallback())
            return nullptr;
        if (!current) {
            current = new BoundWatcher;
            group.setComputeBoundingSphereCallback(current);
            group.dirtyBound();
        }
        entry->watcher = current;
        entry->stamp = current->count - 1;
    }
    group.getBound();
    if (entry->stamp != entry->watcher->count || entry->index.getChildCount() != group.getNumChildren()) {
        entry->index.build(group);
        entry->stamp = entry->watcher->count;
    }
    return &entry->index;
}

void iSnapChildIndex::dropAll()
{
    indexes().clear();
}

void iSnapChildIndex::build(osg::Group const& group)
{
    _items.clear();
    _nodes.clear();
    _always.clear();
    _childCount = group.getNumChildren();
    for (unsigned int i = 0; i < _childCount; ++i) {
        osg::Node const* child = group.getChild(i);
        osg::BoundingSphere const& sphere = child->getBound();
        if (!child->isCullingActive() || !sphere.valid()) {
            _always.push_back(i);
            continue;
        }
        _items.push_back(Item{i, boxAround(sphere), osg::Vec3f(sphere.center())});
    }
    if (_items.empty())
        return;
    _nodes.reserve(2 * _items.size() / kLeafSize + 2);
    buildRange(0, static_cast<unsigned int>(_items.size()));
}

// Splits at the median of the longest side of the centres' box; returns
// the index of the node made for the range.
unsigned int iSnapChildIndex::buildRange(unsigned int first, unsigned int count)
{
    unsigned int const index = static_cast<unsigned int>(_nodes.size());
    _nodes.push_back(Node{osg::BoundingBox(), first, count, 0});
    osg::BoundingBox box, centers;
    for (unsigned int i = first; i < first + count; ++i) {
        box.expandBy(_items[i].box);
        centers.expandBy(_items[i].center);
    }
    _nodes[index].box = box;
    if (count <= kLeafSize)
        return index;
    osg::Vec3f const extent = centers._max - centers._min;
    int axis = extent.x() >= extent.y() ? 0 : 1;
    if (extent.z() > extent[axis])
        axis = 2;
    auto begin = _items.begin() + first;
    auto middle = begin + count / 2;
    std::nth_element(begin, middle, begin + count,
                     [axis](Item const& a, Item const& b) { return a.center[axis] < b.center[axis]; });
    unsigned int const half = count / 2;
    unsigned int const left = buildRange(first, half);
    unsigned int const right = buildRange(first + half, count - half);
    _nodes[index].first = left;
    _nodes[index].count = 0;
    _nodes[index].right = right;
    return index;
}

void iSnapChildIndex::query(osg::Polytope& polytope, std::vector<unsigned int>& out) const
{
    out = _always;
    if (_nodes.empty()) {
        std::sort(out.begin(), out.end());
        return;
    }
    std::vector<unsigned int> stack{0};
    while (!stack.empty()) {
        unsigned int const index = stack.back();
        stack.pop_back();
        Node const& node = _nodes[index];
        if (!polytope.contains(node.box))
            continue;
        if (node.count > 0) {
            for (unsigned int i = node.first; i < node.first + node.count; ++i)
                out.push_back(_items[i].child);
            continue;
        }
        stack.push_back(node.right);
        stack.push_back(node.first);
    }
    std::sort(out.begin(), out.end());
}
