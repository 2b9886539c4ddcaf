#ifndef IMODELSTAGE_MODEL_IPARENTLINKS_H
#define IMODELSTAGE_MODEL_IPARENTLINKS_H

#include <iModelStage/frame/iExport.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace osg {
class Node;
}

// Decides which parent links between freshly read objects may be made.
// A file can claim any links at all; the tree built from them must still
// be one that every walk of the library finishes on. A link is refused when
// it would close a cycle, nest objects deeper than maxDepth, or let the
// number of paths through the layer (each path is a visit when objects are
// announced, listed or written) grow past the budget. Objects are decided
// in topological order; a cycle is broken at its first object in file
// order.
//
// The budget belongs to a whole load, not to one read: a file may name one
// layer in many entries, each hanging its objects below those of the entry
// before, and the paths must stay proportional to the objects however the
// file splits them.
class IMODELSTAGE_EXPORT iParentLinks {
public:
    static constexpr int maxDepth = 256;

    // What the reads of one load have spent in one layer.
    struct Budget {
        std::uint64_t objects = 0;
        std::uint64_t paths = 0;
        // A sane document has about one path per object.
        std::uint64_t limit() const { return 4 * objects + 4096; }
    };

    // An object already in the layer, seen as a parent: the number of paths
    // from the layer's root to it and its depth below the root (0 for an
    // object right under it). No paths: not reachable, no parent at all.
    struct Anchor {
        std::uint64_t paths = 0;
        int depth = 0;
    };
    typedef std::unordered_map<osg::Node const*, Anchor> Anchors;

    // The links of object i are parents[first[i]] up to parents[first[i + 1]]
    // in file order: each the index of a parent among the objects read, or
    // -1 for a parent outside them, which anchors[k] then describes. first
    // has one entry more than there are objects. The objects are added to
    // the budget, and every kept path is charged to it.
    iParentLinks(std::vector<std::size_t> const& first, std::vector<int> const& parents,
                 std::vector<Anchor> const& anchors, Budget& budget);

    // Whether link k (an index into parents) is kept.
    bool keep(std::size_t link) const { return m_keep[link]; }

    // Measures a node of a layer whose objects root is root, remembering
    // what it learns in known: objects of an earlier read are measured only
    // when a later one links to them. Counts stop growing past any budget.
    static Anchor measure(osg::Node const* node, osg::Node const* root, Anchors& known);

private:
    std::vector<bool> m_keep;
};

#endif
