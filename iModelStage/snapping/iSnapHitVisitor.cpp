#include <iModelStage/snapping/iSnapHitVisitor.h>

#include <iModelStage/snapping/iSnapChildIndex.h>

#include <osg/observer_ptr>

#include <map>
#include <memory>

namespace {

// Counts the recomputations of a group's bound. OSG recomputes a bound
// only after something below it was added, removed, moved or rebuilt, so
// an unchanged count proves the index of the group still holds.
class BoundWatcher : public osg::Node::ComputeBoundingSphereCallback {
public:
    osg::BoundingSphere computeBound(osg::Node const& node) const override
    {
        ++count;
        return node.computeBound();
    }
    mutable unsigned long count = 0;

protected:
    ~BoundWatcher() override = default;
};

struct IndexEntry {
    osg::observer_ptr<osg::Group> group;
    osg::ref_ptr<BoundWatcher> watcher;
    unsigned long stamp = 0;
    iSnapChildIndex index;
};

std::map<osg::Group const*, std::unique_ptr<IndexEntry>>& indexes()
{
    static std::map<osg::Group const*, std::unique_ptr<IndexEntry>> map;
    return map;
}

// Forgets the indexes of groups that died, so the map stays as large as
// the set of live wide groups.
void dropDeadIndexes()
{
    auto& map = indexes();
    for (auto it = map.begin(); it != map.end();) {
        if (it->second->group.valid())
            ++it;
        else
            it = map.erase(it);
    }
}

// The index of group, fresh; null when the group's bound is already
// computed by someone else's callback, since its changes cannot be seen.
IndexEntry* freshIndex(osg::Group& group)
{
    auto& map = indexes();
    if (map.find(&group) == map.end())
        dropDeadIndexes();
    std::unique_ptr<IndexEntry>& entry = map[&group];
    if (!entry || entry->group.get() != &group) {
        entry.reset(new IndexEntry);
        entry->group = &group;
    }
    if (!entry->watcher.valid()) {
        auto* current = dynamic_cast<BoundWatcher*>(group.getComputeBoundingSphereCallback());
        if (!current && group.getComputeBoundingSphereCallback())
            return nullptr;
        if (!current) {
            current = new BoundWatcher;
            group.setComputeBoundingSphereCallback(current);
            group.dirtyBound();
        }
        entry->watcher = current;
        entry->stamp = current->count - 1;
    }
    group.getBound();
    if (entry->stamp != entry->watcher->count || entry->index.getChildCount() != group.getNumChildren()) {
        entry->index.build(group);
        entry->stamp = entry->watcher->count;
    }
    return entry.get();
}

} // namespace

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
    IndexEntry* entry = freshIndex(group);
    if (!entry)
        return false;
    std::vector<unsigned int> children;
    entry->index.query(intersector->getPolytope(), children);
    for (unsigned int child : children)
        if (child < group.getNumChildren())
            group.getChild(child)->accept(*this);
    return true;
}

void iSnapHitVisitor::clearIndexes()
{
    indexes().clear();
}
