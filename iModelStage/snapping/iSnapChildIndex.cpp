#include <iModelStage/snapping/iSnapChildIndex.h>

#include <algorithm>

namespace {

unsigned int const kLeafSize = 8;

} // namespace

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
        osg::BoundingBox box;
        box.expandBy(sphere);
        _items.push_back(Item{i, box, osg::Vec3f(sphere.center())});
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
