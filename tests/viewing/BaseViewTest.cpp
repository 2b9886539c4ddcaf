#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/viewing/iBaseView.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class RecordingView : public iBaseView {
public:
    void slotObjectAdded(osg::Node* node) override { log.push_back("added:" + node->getName()); }
    void slotObjectSelectionAdded(osg::Node* node) override { log.push_back("selected:" + node->getName()); }
    void slotAllObjectsRemoved() override { log.push_back("allRemoved"); }
    void slotNodeFlagChanged(osg::Node*, unsigned int bit, bool value) override
    {
        log.push_back("flag:" + std::to_string(bit) + ":" + std::to_string(value));
    }
    void processFilters(bool select) override { log.push_back(std::string("filter:") + (select ? "1" : "0")); }

    std::vector<std::string> log;
};

osg::ref_ptr<iNodeGroup> named(std::string const& name)
{
    osg::ref_ptr<iNodeGroup> node = new iNodeGroup;
    node->set_name(name);
    return node;
}

} // namespace

TEST(BaseView, HearsItsModelThroughTheVirtualSlotsAndOnlyIt)
{
    osg::ref_ptr<iNodeLayer> first = new iNodeLayer;
    osg::ref_ptr<iNodeLayer> second = new iNodeLayer;
    RecordingView view;
    view.setViewModel(first.get());
    ASSERT_EQ(view.getViewModel(), first.get());

    osg::ref_ptr<iNodeGroup> a = named("a");
    first->addObject(a.get(), true);
    first->addObjectSelection(a.get());
    // Through the model on a connected object: heard once from the object
    // and once from the model.
    first->setNodeFlag(a.get(), 4, false);
    EXPECT_EQ(view.log, (std::vector<std::string>{"added:a", "selected:a", "flag:4:0", "flag:4:0"}));

    view.log.clear();
    view.setViewModel(second.get());
    first->addObject(named("b").get(), true);
    second->addObject(named("c").get(), true);
    second->removeAllObjects();
    EXPECT_EQ(view.log, (std::vector<std::string>{"added:c", "allRemoved"}));
}

TEST(BaseView, RefusedModelsLeaveThePresentOne)
{
    osg::ref_ptr<iNodeLayer> layer = new iNodeLayer;
    RecordingView view;
    EXPECT_FALSE(view.canSetModel(nullptr));
    view.setViewModel(layer.get());
    view.setViewModel(nullptr);
    EXPECT_EQ(view.getViewModel(), layer.get());

    view.setModelFilter({"iGeometricsLayer"});
    EXPECT_FALSE(view.canSetModel(layer.get()));
    osg::ref_ptr<iNodeLayer> other = new iNodeLayer;
    view.setViewModel(other.get());
    EXPECT_EQ(view.getViewModel(), layer.get());
    view.setModelFilter({"iNodeLayer"});
    view.setViewModel(other.get());
    EXPECT_EQ(view.getViewModel(), other.get());
}

TEST(BaseView, LetsGoOfAModelThatIsDestroyed)
{
    RecordingView view;
    {
        osg::ref_ptr<iNodeLayer> layer = new iNodeLayer;
        view.setViewModel(layer.get());
    }
    EXPECT_EQ(view.getViewModel(), nullptr);
    osg::ref_ptr<iNodeLayer> next = new iNodeLayer;
    view.setViewModel(next.get());
    next->addObject(named("d").get(), true);
    EXPECT_EQ(view.log, std::vector<std::string>{"added:d"});
}

TEST(BaseView, EveryFilterChangeRunsTheFilters)
{
    RecordingView view;
    view.setFilterByClasses({"iNodeGroup"});
    view.setFilterByClasses({"iNodeGroup"});
    view.setSelectObjectsWhenFiltering(true);
    view.setFilterByProperties({"name"});
    view.setFilterByName("door");
    EXPECT_EQ(view.log, (std::vector<std::string>{"filter:0", "filter:0", "filter:1", "filter:1"}));
    EXPECT_EQ(view.getClassFilter(), std::set<std::string>{"iNodeGroup"});
    EXPECT_EQ(view.getPropertyFilter(), std::set<std::string>{"name"});
    EXPECT_EQ(view.getNameFilter(), "door");
}
