#include "model/ModelTestSupport.h"

#include <osg/Geode>

namespace {

// The number after prefix in an automatic name.
int counterOf(std::string const& name, std::string const& prefix)
{
    EXPECT_EQ(name.rfind(prefix, 0), 0u) << name;
    return name.rfind(prefix, 0) == 0 ? std::stoi(name.substr(prefix.size())) : -1;
}

class BaseModelTest : public testing::Test {
protected:
    void SetUp() override
    {
        model->getRoot()->setName("root");
        events.listen(model->sigObjectAdded, "added");
        events.listen(model->sigObjectRemoved, "removed");
        events.listen(model->sigBeginRemovingAllObjects, "beginAll");
        events.listen(model->sigAllObjectsRemoved, "allRemoved");
        events.listen(model->sigBeginRemovingSelectedObjects, "beginSelected");
        events.listen(model->sigSelectedObjectsRemoved, "selectedRemoved");
        events.listen(model->sigModelChanged, "changed");
        events.listen(model->sigBeginParentChanging, "beginParent");
        events.listen(model->sigParentChanged, "parentChanged");
        events.listen(model->sigEndParentChanging, "endParent");
        events.listen(model->sigCurrentRootObjectChanged, "currentRoot");
        events.listen(model->sigObjectSelectionRemoved, "selRemoved");
        events.listen(model->sigObjectsSelectionCleared, "selCleared");
        events.listen(model->sigObjectsSelectionChanged, "selChanged");
        events.listen(model->sigNodeFlagChanged, "flag");
        events.listen(model->sigNodeFlagsChanged, "flags");
        events.listen(model->sigNodesFlagsChanged, "nodesFlags");
        events.listen(model->sigInstantiableClassesChanged, "classes");
    }

    osg::ref_ptr<iBaseModel> model = new iBaseModel;
    Recorder events;
};

} // namespace

TEST_F(BaseModelTest, RecursiveAddAnnouncesParentFirstAndSkipsDrawables)
{
    auto a = make("A");
    auto b = make<iTransformGroup>("B", a.get());
    auto c = make("C", make<osg::Group>("G", a.get()).get());
    make<osg::Geode>("geode", a.get());
    make("D", make<osg::Group>(iBaseModel::RendererContainerName, a.get()).get());
    model->addObject(a.get(), true);
    Log const expected{"added:A", "changed", "added:B", "changed", "added:G", "changed", "added:C", "changed"};
    EXPECT_EQ(events.take(), expected);
    EXPECT_EQ(model->getObjectsCount(), 4);
    EXPECT_EQ(b->getParent(0), a.get());
    NodeList objects;
    model->getObjectsList(model->getRoot(), objects, nullptr);
    EXPECT_EQ(objects, (NodeList{a, b, c})) << "plain groups and drawables are no objects";
}

TEST_F(BaseModelTest, RecursiveRemovalOrderAndDeletableGuard)
{
    auto p = make("P");
    for (char const* name : {"c1", "c2", "c3", "c4"})
        make(name, p.get());
    model->addObject(p.get(), true);
    model->setCurrentRootObject(p.get());
    events.take();
    model->removeObject(p.get(), true);
    Log const expected{"removed:c1", "changed", "removed:c3", "changed", "removed:c4",       "changed",
                       "removed:c2", "changed", "removed:P",  "currentRoot:P:root", "changed"};
    EXPECT_EQ(events.take(), expected);
    EXPECT_EQ(model->getObjectsCount(), 0);
    EXPECT_EQ(p->getNumParents() + p->getNumChildren(), 0u);

    // A child without flag 2 stays in its parent, which still goes.
    auto q = make("Q");
    make("a", q.get());
    make("keep", q.get())->setFlag(2, false);
    make("b", q.get());
    model->addObject(q.get(), true);
    events.take();
    model->removeObject(q.get(), true);
    EXPECT_EQ(events.take(), (Log{"removed:a", "changed", "removed:b", "changed", "removed:Q", "changed"}));
    ASSERT_EQ(q->getNumChildren(), 1u);
    EXPECT_EQ(q->getChild(0)->getName(), "keep");

    // Without flag 2 on the parent, its deletable children are not touched either.
    make("r", q.get());
    q->setFlag(2, false);
    model->addObject(q.get(), true);
    events.take();
    model->removeObject(q.get(), true);
    EXPECT_TRUE(events.take().empty());
    EXPECT_EQ(q->getNumChildren(), 2u);
}

TEST_F(BaseModelTest, RemovalsKeepSelectionListenersOutOfIt)
{
    model->removeSelectedObjects();
    EXPECT_TRUE(events.take().empty()) << "an empty selection emits nothing";

    auto a = make("A");
    make("A1", a.get());
    auto b = make("B");
    auto keep = make("K");
    keep->setFlag(2, false);
    auto lone = make("L");
    for (iNodeGroup* o : {a.get(), b.get(), keep.get(), lone.get()})
        model->addObject(o, true);
    model->selectAll();
    events.take();
    model->removeObject(lone.get(), false);
    EXPECT_EQ(events.take(), (Log{"removed:L", "changed"}));
    EXPECT_FALSE(model->isObjectSelected(lone.get()));
    model->removeSelectedObjects();
    Log const expected{"beginSelected", "removed:A1", "removed:A", "removed:B", "selectedRemoved", "changed"};
    EXPECT_EQ(events.take(), expected);
    EXPECT_EQ(model->getSelectionCount(), 0);
    EXPECT_EQ(keep->getParent(0), model->getRoot()) << "not deletable: it stays, unselected";
    model->addObjectSelection(keep.get());
    events.take();
    model->removeObjectSelection(keep.get());
    EXPECT_EQ(events.take(), (Log{"selRemoved:K", "selChanged"})) << "the blocks are lifted afterwards";
}

TEST_F(BaseModelTest, RemoveAllObjectsEmitsNoPerObjectSignal)
{
    auto a = make("A");
    make("A1", a.get());
    auto b = make("B");
    model->addObject(a.get(), true);
    model->addObject(b.get(), true);
    model->selectAll();
    model->addProxySelector(a.get(), b.get());
    model->setCurrentRootObject(a.get());
    events.take();
    model->removeAllObjects();
    // A outlives the call and is still connected, so dropping its proxy shows.
    EXPECT_EQ(events.take(), (Log{"beginAll", "currentRoot:A:root", "flag:A:8:0", "flags:A", "allRemoved", "changed"}));
    EXPECT_EQ(model->getObjectsCount() + model->getSelectionCount(), 0);
    EXPECT_EQ(model->getRoot()->getNumChildren(), 0u);
    EXPECT_TRUE(model->getProxySelectors().empty());
}

TEST_F(BaseModelTest, ChangeParentKeepsTheLocalMatrixAndRefusesBadGroups)
{
    auto p1 = make<iTransformGroup>("P1");
    auto p2 = make<iTransformGroup>("P2");
    auto t = make<iTransformGroup>("T", p1.get());
    p1->set_position(osg::Vec3f(10, 0, 0));
    p2->set_rotation(osg::Vec3f(0, 0, 1.0f));
    t->set_position(osg::Vec3f(1, 2, 3));
    t->set_rotation(osg::Vec3f(0.2f, 0, 0));
    model->addObject(p1.get(), true);
    model->addObject(p2.get(), true);
    osg::Matrixd const local = t->getMatrix();

    events.take();
    EXPECT_TRUE(model->changeParent(t.get(), p1.get(), p2.get()));
    EXPECT_EQ(events.take(), (Log{"beginParent:T:P1:P2", "parentChanged:T:P1:P2", "endParent:T:P1:P2", "changed"}));
    EXPECT_EQ(t->getParent(0), p2.get());
    EXPECT_EQ(p1->getNumChildren(), 0u);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(t->getMatrix().ptr()[i], local.ptr()[i], 1e-6);

    osg::ref_ptr<osg::Group> outside = new osg::Group;
    EXPECT_FALSE(model->changeParent(t.get(), nullptr, p1.get()));
    EXPECT_FALSE(model->changeParent(t.get(), p2.get(), p2.get()));
    EXPECT_FALSE(model->changeParent(t.get(), p2.get(), outside.get()));
    EXPECT_TRUE(events.take().empty());
    EXPECT_EQ(t->getParent(0), p2.get());
}

TEST_F(BaseModelTest, NamingOfAddedAndInstantiatedObjects)
{
    osg::ref_ptr<iNodeGroup> first = new iNodeGroup, second = new iNodeGroup, later = new iNodeGroup;
    auto kept = make("kept");
    for (iNodeGroup* o : {first.get(), second.get(), kept.get()})
        model->addObject(o, false);
    std::string prefix = first->getClassAlias() + "_";
    EXPECT_EQ(second->getName(), prefix + std::to_string(counterOf(first->get_name(), prefix) + 1));
    EXPECT_EQ(kept->get_name(), "kept");
    EXPECT_TRUE(model->setAutoNaming(false));
    model->addObject(later.get(), false);
    EXPECT_EQ(later->get_name(), "");

    model->setCurrentRootObject(kept.get());
    events.take();
    EXPECT_FALSE(model->registerInstantiableClass("iNoSuchClass"));
    EXPECT_EQ(model->newInstantiableObject("iTransformGroup"), nullptr) << "not registered yet";
    EXPECT_TRUE(model->registerInstantiableClass("iTransformGroup"));
    EXPECT_TRUE(model->registerInstantiableClass("iTransformGroup"));
    osg::ref_ptr<osg::Node> one = model->newInstantiableObject("iTransformGroup");
    osg::ref_ptr<osg::Node> two = model->newInstantiableObject("iTransformGroup");
    ASSERT_NE(dynamic_cast<iTransformGroup*>(one.get()), nullptr);
    prefix = dynamic_cast<iRoot*>(one.get())->getClassAlias() + " ";
    EXPECT_EQ(two->getName(), prefix + std::to_string(counterOf(one->getName(), prefix) + 1));
    EXPECT_EQ(one->getNumParents(), 0u);
    osg::ref_ptr<osg::Node> added = model->addNewInstantiableObject("iTransformGroup");
    EXPECT_EQ(added->getParent(0), model->getRoot()) << "under the root, not the current root";
    EXPECT_EQ(events.take(), (Log{"classes", "added:" + added->getName(), "changed"}));
}

TEST_F(BaseModelTest, CloneCopiesEachRootOnceWithPrefixedNames)
{
    auto p = make("P");
    auto c = make("C", p.get());
    make("G", c.get());
    auto fixed = make("Q");
    fixed->setFlag(9, false);
    model->addObject(p.get(), true);
    model->addObject(fixed.get(), true);

    NodeList out;
    EXPECT_TRUE(model->cloneObjects(NodeList{p, c, fixed}, out, false, false));
    ASSERT_EQ(out.size(), 1u);
    auto* copy = dynamic_cast<iNodeGroup*>(out[0].get());
    ASSERT_TRUE(copy && copy != p.get() && copy->getNumChildren() == 1);
    auto* copyC = dynamic_cast<iNodeGroup*>(copy->getChild(0));
    ASSERT_TRUE(copyC && copyC != c.get() && copyC->getNumChildren() == 1);
    EXPECT_EQ(copy->get_name(), "Copia di P");
    EXPECT_EQ(copyC->get_name(), "Copia di C");
    EXPECT_EQ(copyC->getChild(0)->getName(), "Copia di G");
    EXPECT_EQ(copy->getUniqueId(), p->getUniqueId());
    EXPECT_EQ(copyC->getUniqueId(), c->getUniqueId());
    EXPECT_EQ(model->getObjectsCount(), 4);

    NodeList added;
    EXPECT_TRUE(model->cloneObjects(NodeList{p}, added, true, true));
    ASSERT_EQ(added.size(), 1u);
    auto* fresh = dynamic_cast<iNodeGroup*>(added[0].get());
    EXPECT_NE(fresh->getUniqueId(), p->getUniqueId());
    EXPECT_NE(dynamic_cast<iNodeGroup*>(fresh->getChild(0))->getUniqueId(), c->getUniqueId());
    EXPECT_EQ(model->getObjectsCount(), 7);
    NodeList none;
    EXPECT_FALSE(model->cloneObjects(NodeList{fixed}, none, false, false));
}

TEST_F(BaseModelTest, UniqueIdIndexIsStaleUntilTheNextAddOrRemove)
{
    auto a = make("A");
    auto b = make("B", a.get());
    model->addObject(a.get(), true);
    EXPECT_EQ(model->findObjectByUniqueId(b->getUniqueId()), b.get());
    long const oldId = a->getUniqueId();
    long const newId = iRoot::generateUniqueId(0);
    a->setUniqueId(newId);
    EXPECT_EQ(model->findObjectByUniqueId(oldId), a.get());
    EXPECT_EQ(model->findObjectByUniqueId(newId), nullptr);

    auto c = make("C");
    model->addObject(c.get(), false);
    EXPECT_EQ(model->findObjectByUniqueId(newId), a.get());
    EXPECT_EQ(model->findObjectByUniqueId(oldId), nullptr);
    model->removeAllObjects();
    EXPECT_EQ(model->findObjectByUniqueId(newId), nullptr);
}

TEST_F(BaseModelTest, FlagSetThroughTheModelReachesListenersTwice)
{
    auto a = make("A");
    model->addObject(a.get(), false);
    events.take();
    model->setNodeFlag(a.get(), 1, false);
    model->setNodeFlag(a.get(), 1, false);
    EXPECT_EQ(events.take(), (Log{"flag:A:1:0", "flags:A", "flag:A:1:0", "nodesFlags", "flag:A:1:0", "flags:A"}));

    model->removeObject(a.get(), false);
    EXPECT_EQ(events.take(), (Log{"removed:A", "changed"}));
    model->setNodeFlag(a.get(), 4, false);
    EXPECT_EQ(events.take(), (Log{"flag:A:4:0", "nodesFlags"})) << "a removed object is disconnected";
}
