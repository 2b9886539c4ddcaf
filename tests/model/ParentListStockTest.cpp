#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iParentListStock.h>

#include <gtest/gtest.h>

#include <osg/Group>

#include <thread>

namespace {

// The node's own list: the non-const getParents returns a copy.
osg::Node::ParentList const& listOf(osg::Node const* node)
{
    return node->getParents();
}

} // namespace

TEST(ParentListStockTest, ObjectsPassTheirParentListsOnAndThreadsKeepTheirOwn)
{
    // A thread of its own, so that the stock starts empty.
    std::thread([] {
        osg::ref_ptr<osg::Group> parent = new osg::Group;
        osg::Group::ParentList::const_pointer kept = nullptr;
        {
            osg::ref_ptr<iNodeGroup> first = new iNodeGroup;
            EXPECT_EQ(listOf(first.get()).capacity(), 0u);
            parent->addChild(first.get());
            kept = listOf(first.get()).data();
            parent->removeChildren(0, 1);
        }
        // The next object takes the list, empty, and uses it without a new
        // allocation.
        osg::ref_ptr<iNodeGroup> second = new iNodeGroup;
        EXPECT_EQ(second->getNumParents(), 0u);
        EXPECT_GE(listOf(second.get()).capacity(), 1u);
        parent->addChild(second.get());
        EXPECT_EQ(listOf(second.get()).data(), kept);
        EXPECT_EQ(second->getParent(0), parent.get());
        // A list of another shape is left alone.
        osg::Node::ParentList empty;
        iParentListStock::give(empty);
        osg::ref_ptr<iNodeGroup> third = new iNodeGroup;
        EXPECT_EQ(listOf(third.get()).capacity(), 0u);
    }).join();
    // Objects of this thread never saw that stock.
    osg::ref_ptr<iNodeGroup> here = new iNodeGroup;
    EXPECT_EQ(here->getNumParents(), 0u);
}
