#ifndef IMODELSTAGE_SNAPPING_ISNAPCHILDINDEX_H
#define IMODELSTAGE_SNAPPING_ISNAPCHILDINDEX_H

#include <iModelStage/frame/iExport.h>

#include <osg/BoundingBox>
#include <osg/Group>
#include <osg/Polytope>

#include <vector>

// A bounding volume tree over the children of one group, in the group's
// own coordinates, so that a pick finds the children whose bounds meet a
// polytope without testing every child. Children without culling or
// without a valid bound are always returned.
class IMODELSTAGE_EXPORT iSnapChildIndex {
public:
    // Groups with at least this many children are worth an index.
    static constexpr unsigned int wideGroup = 256;

    void build(osg::Group const& group);
    // The indices of the children that may meet the polytope, ascending.
    void query(osg::Polytope& polytope, std::vector<unsigned int>& out) const;
    unsigned int getChildCount() const { return _childCount; }

    // The shared index of group, up to date with the group as it stands:
    // kept per group while the group lives and rebuilt once a bound below
    // it changed. Null when the group's bound is computed by someone
    // else's callback, since its changes cannot be seen then.
    static iSnapChildIndex const* of(osg::Group& group);
    // Drops every shared index; they are made again on demand.
    static void dropAll();

private:
    struct Item {
        unsigned int child;
        osg::BoundingBox box;
        osg::Vec3f center;
    };
    struct Node {
        osg::BoundingBox box;
        unsigned int first; // into _items for a leaf, else the left node
        unsigned int count; // items of a leaf; 0 for an inner node
        unsigned int right; // the right node of an inner node
    };

    unsigned int buildRange(unsigned int first, unsigned int count);

    std::vector<Item> _items;
    std::vector<Node> _nodes;
    std::vector<unsigned int> _always;
    unsigned int _childCount = 0;
};

#endif
