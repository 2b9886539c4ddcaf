#include <iModelStage/model/iParentLinks.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <utility>

namespace {

enum class Link { Pending, Kept, Refused };

} // namespace

iParentLinks::iParentLinks(std::vector<std::vector<int>> const& parents)
{
    std::size_t const count = parents.size();
    std::vector<std::vector<Link>> state(count);
    std::vector<std::vector<std::pair<std::size_t, std::size_t>>> children(count);
    std::vector<std::size_t> waiting(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        state[i].assign(parents[i].size(), Link::Kept);
        for (std::size_t k = 0; k < parents[i].size(); ++k) {
            int const p = parents[i][k];
            if (p < 0 || static_cast<std::size_t>(p) >= count)
                continue;
            state[i][k] = Link::Pending;
            children[static_cast<std::size_t>(p)].emplace_back(i, k);
            ++waiting[i];
        }
    }

    // Every path from a top object is one visit when the tree is announced;
    // a sane document has about one path per object.
    std::uint64_t const budget = 4 * static_cast<std::uint64_t>(count) + 4096;
    std::uint64_t total = 0;
    std::vector<int> depth(count, 0);
    std::vector<std::uint64_t> paths(count, 0);
    std::vector<bool> done(count, false);
    std::deque<std::size_t> ready;
    for (std::size_t i = 0; i < count; ++i)
        if (waiting[i] == 0)
            ready.push_back(i);

    std::size_t nextUnfinished = 0;
    for (std::size_t finished = 0; finished < count; ++finished) {
        if (ready.empty()) {
            // Only cycles are left: break the first one in file order by
            // refusing its object's links to unfinished parents.
            while (done[nextUnfinished])
                ++nextUnfinished;
            std::size_t o = nextUnfinished;
            for (Link& link : state[o])
                if (link == Link::Pending)
                    link = Link::Refused;
            waiting[o] = 0;
            ready.push_back(o);
        }
        std::size_t const o = ready.front();
        ready.pop_front();
        done[o] = true;
        // An object without a kept parent link is a top object: one path.
        // The paths of the others were counted as their links were kept.
        if (paths[o] == 0) {
            paths[o] = 1;
            total += 1;
        }
        for (auto const& child : children[o]) {
            std::size_t const c = child.first;
            Link& link = state[c][child.second];
            if (link != Link::Pending)
                continue;
            bool const fits = depth[o] + 1 <= maxDepth && total + paths[o] <= budget;
            link = fits ? Link::Kept : Link::Refused;
            if (fits) {
                depth[c] = std::max(depth[c], depth[o] + 1);
                paths[c] += paths[o];
                total += paths[o];
            }
            if (--waiting[c] == 0)
                ready.push_back(c);
        }
    }

    m_keep.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        m_keep[i].resize(state[i].size());
        for (std::size_t k = 0; k < state[i].size(); ++k)
            m_keep[i][k] = state[i][k] == Link::Kept;
    }
}
