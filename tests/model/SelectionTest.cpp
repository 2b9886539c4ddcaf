#include "model/ModelTestSupport.h"

namespace {

// Root objects A, B, C; C holds C1. The probes show what the model answers
// while a removal or a clear is being announced.
class SelectionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        c->addChild(c1);
        for (iNodeGroup* o : {a.get(), b.get(), c.get()})
            model->addObject(o, true);
        events.listen(model->sigObjectSelectionAdded, "added");
        events.listen(model->sigObjectSelectionRemoved, "removed", [this] { return watchedState(); });
        events.listen(model->sigObjectsSelectionCleared, "cleared", [this] {
            return "list=" + std::to_string(selection().size()) +
                   ":count=" + std::to_string(model->getSelectionCount()) + ":" + watchedState();
        });
        events.listen(model->sigObjectsSelectionChanged, "changed");
    }

    std::string watchedState() { return model->isObjectSelected(watched) ? "selected" : "gone"; }
    NodeList selection() { return selectionOf(model.get()); }

    osg::ref_ptr<iBaseModel> model = new iBaseModel;
    osg::ref_ptr<iNodeGroup> a = make("A"), b = make("B"), c = make("C"), c1 = make("C1");
    osg::Node* watched = nullptr;
    Recorder events;
};

} // namespace

TEST_F(SelectionTest, SignalsSeeTheMapAndListAtTheStatedMoments)
{
    model->addObjectSelection(a.get());
    model->addObjectSelection(a.get());
    model->addObjectSelection(b.get());
    model->addObjectSelection(c.get());
    EXPECT_EQ(events.take(), (Log{"added:A", "changed", "added:B", "changed", "added:C", "changed"}));
    EXPECT_EQ(selection(), (NodeList{a, b, c}));

    watched = a.get();
    model->removeObjectSelection(a.get());
    model->removeObjectSelection(a.get());
    EXPECT_EQ(events.take(), (Log{"removed:A:selected", "changed"}));
    EXPECT_FALSE(model->isObjectSelected(a.get()));

    watched = b.get();
    model->clearObjectSelection();
    EXPECT_EQ(events.take(), (Log{"cleared:list=0:count=2:selected", "changed"}));
    EXPECT_EQ(model->getSelectionCount(), 0);
    EXPECT_FALSE(model->isObjectSelected(b.get()));
}

TEST_F(SelectionTest, LockedSelectionRefusesEveryChange)
{
    model->addObjectSelection(a.get());
    events.take();
    EXPECT_FALSE(model->lockSelection(true));
    EXPECT_TRUE(model->getSelectionLocked());
    model->addObjectSelection(b.get());
    model->removeObjectSelection(a.get());
    model->clearObjectSelection();
    EXPECT_TRUE(events.take().empty());
    EXPECT_EQ(selection(), NodeList{a});
    EXPECT_TRUE(model->lockSelection(false));
    model->clearObjectSelection();
    EXPECT_EQ(model->getSelectionCount(), 0);
}

TEST_F(SelectionTest, SelectAllExtendsAndInvertSkipsTheCurrentRoot)
{
    model->invertObjectSelection();
    EXPECT_TRUE(events.take().empty());
    EXPECT_EQ(model->getSelectionCount(), 0);

    model->addObjectSelection(b.get());
    events.take();
    model->selectAll();
    EXPECT_EQ(events.take(), (Log{"added:A", "added:C", "added:C1", "changed"}));
    EXPECT_EQ(selection(), (NodeList{b, a, c, c1}));

    model->clearObjectSelection();
    model->addObjectSelection(a.get());
    model->setCurrentRootObject(c.get());
    events.take();
    watched = a.get();
    model->invertObjectSelection();
    EXPECT_EQ(events.take(), (Log{"cleared:list=0:count=1:selected", "changed", "added:B", "added:C1", "changed"}));
    EXPECT_EQ(selection(), (NodeList{b, c1}));
}

TEST_F(SelectionTest, SelectByNameMatchesCaseSensitiveSubstrings)
{
    a->set_name("Wall");
    b->set_name("wall");
    c->set_name("Window");
    c1->set_name("Wallpaper");
    model->addObjectSelection(c.get());

    model->selectByName("");
    model->selectByName("WALL");
    EXPECT_EQ(selection(), NodeList{c}) << "a miss keeps the old selection";

    model->selectByName("all");
    EXPECT_EQ(selection(), (NodeList{a, b, c1}));
    model->selectByName("Wall");
    EXPECT_EQ(selection(), (NodeList{a, c1}));
}

TEST_F(SelectionTest, RootsListAndDataFollowTheSelection)
{
    // C1 hangs under B too, as its second parent.
    b->addChild(c1);
    model->addObjectSelection(c1.get());
    model->addObjectSelection(a.get());
    model->addObjectSelection(b.get());
    NodeList roots;
    model->getSelectionRoots(roots, nullptr);
    EXPECT_EQ(roots, (NodeList{c1, a, b})) << "only the first parent counts";

    model->addObjectSelection(c.get());
    roots.clear();
    model->getSelectionRoots(roots, nullptr);
    EXPECT_EQ(roots, (NodeList{a, b, c}));

    int payload = 0, other = 0;
    model->clearObjectSelection();
    EXPECT_EQ(model->setSelectionData(a.get(), &payload), nullptr);
    model->addObjectSelection(a.get());
    EXPECT_EQ(model->getSelectionData(a.get()), nullptr) << "nothing was stored while unselected";
    model->setSelectionData(a.get(), &payload);
    EXPECT_EQ(model->setSelectionData(a.get(), &other), &payload);
    EXPECT_EQ(model->getSelectionData(a.get()), &other);
}

TEST_F(SelectionTest, ProxiesStandInForTheirObjects)
{
    model->addProxySelector(a.get(), b.get());
    EXPECT_TRUE(a->isFlagSet(8));
    EXPECT_EQ(model->getProxySelector(a.get()), b.get());

    events.take();
    watched = b.get();
    model->addObjectSelection(a.get());
    EXPECT_FALSE(model->isObjectSelected(a.get()));
    EXPECT_TRUE(model->isObjectSelected(b.get()));
    model->addObjectSelection(b.get());
    model->removeObjectSelection(a.get());
    EXPECT_EQ(events.take(), (Log{"added:B", "changed", "removed:B:selected", "changed"}));

    model->removeProxySelector(a.get());
    EXPECT_FALSE(a->isFlagSet(8));
    EXPECT_EQ(model->getProxySelector(a.get()), nullptr);

    model->addProxySelector(a.get(), b.get());
    model->addProxySelector(c.get(), b.get());
    model->clearProxySelectors();
    EXPECT_FALSE(a->isFlagSet(8) || c->isFlagSet(8));
    EXPECT_TRUE(model->getProxySelectors().empty());

    // Removing the proxied object drops its entry; removing a proxy does not.
    model->addProxySelector(a.get(), b.get());
    model->addProxySelector(c1.get(), c.get());
    model->removeObject(a.get(), false);
    model->removeObject(c.get(), false);
    EXPECT_FALSE(a->isFlagSet(8));
    EXPECT_TRUE(c1->isFlagSet(8));
    ASSERT_EQ(model->getProxySelectors().size(), 1u);
    EXPECT_EQ(model->getProxySelectors().begin()->second.first.get(), c1.get());
}
