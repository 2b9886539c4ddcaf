#ifndef IMODELSTAGE_MODEL_IPARENTLINKS_H
#define IMODELSTAGE_MODEL_IPARENTLINKS_H

#include <iModelStage/frame/iExport.h>

#include <cstddef>
#include <vector>

// Decides which parent links between freshly read objects may be made.
// A file can claim any links at all; the tree built from them must still
// be one that every walk of the library finishes on. A link is refused when
// it would close a cycle, nest objects deeper than maxDepth, or let the
// number of paths through the tree (each path is a visit when objects are
// announced) grow past the budget. Objects are decided in topological
// order; a cycle is broken at its first object in file order.
class IMODELSTAGE_EXPORT iParentLinks {
public:
    static constexpr int maxDepth = 256;

    // parents[i] lists, in file order, the index of each parent of object i
    // among the objects read, or -1 for a parent outside them.
    explicit iParentLinks(std::vector<std::vector<int>> const& parents);

    // Whether link k of object i is kept; links to parents outside the
    // objects read are always kept.
    bool keep(std::size_t object, std::size_t link) const { return m_keep[object][link]; }

private:
    std::vector<std::vector<bool>> m_keep;
};

#endif
