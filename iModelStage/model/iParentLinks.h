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

    // The links of object i are parents[first[i]] up to parents[first[i + 1]]
    // in file order: each the index of a parent among the objects read, or
    // -1 for a parent outside them. first has one entry more than there are
    // objects.
    iParentLinks(std::vector<std::size_t> const& first, std::vector<int> const& parents);

    // Whether link k (an index into parents) is kept; links to parents
    // outside the objects read are always kept.
    bool keep(std::size_t link) const { return m_keep[link]; }

private:
    std::vector<bool> m_keep;
};

#endif
