#include <iModelStage/model/iParentLinks.h>

#include <algorithm>
#include <cstdint>

iParentLinks::iParentLinks(std::vector<std::size_t> const& first, std::vector<int> const& parents)
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
            if (p < 0 || static_cast<std::size_t>(p) >= count)
                continue;
            state[k] = Pending;
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
            if (state[k] == Pending)
                childLinks[fill[static_cast<std::size_t>(parents[k])]++] = k;
    std::vector<std::size_t> owner(links);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = first[i]; k < first[i + 1]; ++k)
            owner[k] = i;

    // Every path from a top object is one visit when the tree is announced;
    // a sane document has about one path per object.
    std::uint64_t const budget = 4 * static_cast<std::uint64_t>(count) + 4096;
    std::uint64_t total = 0;
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
                if (state[k] == Pending)
                    state[k] = Refused;
            waiting[o] = 0;
            ready.push_back(o);
        }
        std::size_t const o = ready[next++];
        done[o] = 1;
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
            bool const fits = depth[o] + 1 <= maxDepth && total + paths[o] <= budget;
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

    m_keep.resize(links);
    for (std::size_t k = 0; k < links; ++k)
        m_keep[k] = state[k] == Kept;
}
