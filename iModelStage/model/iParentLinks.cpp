#include <iModelStage/model/iParentLinks.h>

#include <osg/Group>

#include <algorithm>
#include <cstdint>
#include <unordered_set>

namespace {

// Far beyond any budget, and still far from overflowing when added to one.
std::uint64_t const pathCap = std::uint64_t(1) << 62;

void addParent(iParentLinks::Anchor& child, iParentLinks::Anchor const& parent)
{
    if (parent.paths == 0)
        return;
    child.paths = std::min(pathCap, child.paths + parent.paths);
    child.depth = std::max(child.depth, parent.depth + 1);
}

} // namespace

iParentLinks::iParentLinks(std::vector<std::size_t> const& first, std::vector<int> const& parents,
                           std::vector<Anchor> const& anchors, Budget& budget)
{
    std::size_t const count = first.empty() ? 0 : first.size() - 1;
    std::size_t const links = parents.size();
    enum : char { Pending, Kept, Refused };
    std::vector<char> state(links, Kept);

    // The links leaving each parent, as (child, link) in one flat array.
    std::vector<std::size_t> childFirst(count + 1, 0);
    std::vector<std::size_t> waiting(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = first[i]; k < first[i + 1]; ++k) {
            int const p = parents[k];
            state[k] = Pending;
            if (p < 0 || static_cast<std::size_t>(p) >= count)
                continue;
            ++childFirst[static_cast<std::size_t>(p) + 1];
            ++waiting[i];
        }
    }
    for (std::size_t i = 0; i < count; ++i)
        childFirst[i + 1] += childFirst[i];
    std::vector<std::size_t> childLinks(childFirst[count]);
    std::vector<std::size_t> fill(childFirst.begin(), childFirst.end() - (count > 0 ? 1 : 0));
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = first[i]; k < first[i + 1]; ++k)
            if (parents[k] >= 0 && static_cast<std::size_t>(parents[k]) < count)
                childLinks[fill[static_cast<std::size_t>(parents[k])]++] = k;
    std::vector<std::size_t> owner(links);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = first[i]; k < first[i + 1]; ++k)
            owner[k] = i;

    // Every path from the layer's root is one visit when the tree is walked.
    budget.objects += count;
    std::uint64_t const limit = budget.limit();
    std::uint64_t total = budget.paths;
    std::vector<int> depth(count, 0);
    std::vector<std::uint64_t> paths(count, 0);
    std::vector<char> done(count, 0);
    std::vector<std::size_t> ready;
    ready.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        if (waiting[i] == 0)
            ready.push_back(i);

    std::size_t next = 0;
    std::size_t nextUnfinished = 0;
    for (std::size_t finished = 0; finished < count; ++finished) {
        if (next == ready.size()) {
            // Only cycles are left: break the first one in file order by
            // refusing its object's links to unfinished parents.
            while (done[nextUnfinished])
                ++nextUnfinished;
            std::size_t const o = nextUnfinished;
            for (std::size_t k = first[o]; k < first[o + 1]; ++k)
                if (state[k] == Pending && parents[k] >= 0 && static_cast<std::size_t>(parents[k]) < count)
                    state[k] = Refused;
            waiting[o] = 0;
            ready.push_back(o);
        }
        std::size_t const o = ready[next++];
        done[o] = 1;
        // Objects already in the layer are finished parents.
        for (std::size_t k = first[o]; k < first[o + 1]; ++k) {
            if (state[k] != Pending)
                continue;
            Anchor const& parent = anchors[k];
            bool const fits = parent.paths > 0 && parent.depth + 1 <= maxDepth && total + parent.paths <= limit;
            state[k] = fits ? Kept : Refused;
            if (fits) {
                depth[o] = std::max(depth[o], parent.depth + 1);
                paths[o] += parent.paths;
                total += parent.paths;
            }
        }
        // An object without a kept parent link is a top object: one path.
        // The paths of the others were counted as their links were kept.
        if (paths[o] == 0) {
            paths[o] = 1;
            total += 1;
        }
        for (std::size_t c = childFirst[o]; c < childFirst[o + 1]; ++c) {
            std::size_t const k = childLinks[c];
            if (state[k] != Pending)
                continue;
            std::size_t const child = owner[k];
            bool const fits = depth[o] + 1 <= maxDepth && total + paths[o] <= limit;
            state[k] = fits ? Kept : Refused;
            if (fits) {
                depth[child] = std::max(depth[child], depth[o] + 1);
                paths[child] += paths[o];
                total += paths[o];
            }
            if (--waiting[child] == 0)
                ready.push_back(child);
        }
    }

    budget.paths = total;
    m_keep.resize(links);
    for (std::size_t k = 0; k < links; ++k)
        m_keep[k] = state[k] == Kept;
}

iParentLinks::Anchor iParentLinks::measure(osg::Node const* node, osg::Node const* root, Anchors& known)
{
    Anchor const atRoot{1, -1};
    if (node == root)
        return atRoot;
    if (auto found = known.find(node); found != known.end())
        return found->second;
    // Post-order over the parents, without recursion: a host may have
    // nested deeply. A parent still being measured is a cycle that some
    // host made; it adds nothing.
    struct Frame {
        osg::Node const* node;
        unsigned int next;
        Anchor sum;
    };
    std::vector<Frame> stack{{node, 0, Anchor{}}};
    std::unordered_set<osg::Node const*> open{node};
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next < top.node->getNumParents()) {
            osg::Node const* parent = top.node->getParent(top.next++);
            if (parent == root) {
                addParent(top.sum, atRoot);
            } else if (auto found = known.find(parent); found != known.end()) {
                addParent(top.sum, found->second);
            } else if (open.insert(parent).second) {
                stack.push_back({parent, 0, Anchor{}});
            }
            continue;
        }
        Frame const finished = top;
        stack.pop_back();
        open.erase(finished.node);
        known[finished.node] = finished.sum;
        if (!stack.empty())
            addParent(stack.back().sum, finished.sum);
    }
    return known[node];
}
