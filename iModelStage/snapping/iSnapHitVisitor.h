#ifndef IMODELSTAGE_SNAPPING_ISNAPHITVISITOR_H
#define IMODELSTAGE_SNAPPING_ISNAPHITVISITOR_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/snapping/iSnapChildIndex.h>

#include <osg/Group>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/PolytopeIntersector>

// The intersection visitor of the snap hit pass. It gives the same hits as
// a plain visitor, but a group with many children (a document's object
// root) is not walked child by child: a bounding volume tree of its
// children, kept per group and rebuilt when a bound below it changed,
// picks the children the polytope can reach. So the cost of a pick grows
// with what lies near the cursor, not with the size of the document.
class IMODELSTAGE_EXPORT iSnapHitVisitor : public osgUtil::IntersectionVisitor {
public:
    // Groups with at least this many children get an index.
    static constexpr unsigned int wideGroup = iSnapChildIndex::wideGroup;

    explicit iSnapHitVisitor(osgUtil::PolytopeIntersector* intersector);

    void apply(osg::Group& group) override;

    // Drops every index; they are made again on demand.
    static void clearIndexes();

private:
    bool traverseIndexed(osg::Group& group);
};

#endif
