#include <iModelStage/snapping/iSnapHitVisitor.h>

#include <iModelStage/snapping/iSnapChildIndex.h>

iSnapHitVisitor::iSnapHitVisitor(osgUtil::PolytopeIntersector* intersector) : osgUtil::IntersectionVisitor(intersector)
{
}

void iSnapHitVisitor::apply(osg::Group& group)
{
    if (!enter(group))
        return;
    if (group.getNumChildren() < wideGroup || !traverseIndexed(group))
        traverse(group);
    leave();
}

bool iSnapHitVisitor::traverseIndexed(osg::Group& group)
{
    auto* intersector = dynamic_cast<osgUtil::PolytopeIntersector*>(_intersectorStack.back().get());
    if (!intersector)
        return false;
    iSnapChildIndex const* index = iSnapChildIndex::of(group);
    if (!index)
        return false;
    std::vector<unsigned int> children;
    index->query(intersector->getPolytope(), children);
    for (unsigned int child : children)
        if (child < group.getNumChildren())
            group.getChild(child)->accept(*this);
    return true;
}

void iSnapHitVisitor::clearIndexes()
{
    iSnapChildIndex::dropAll();
}
