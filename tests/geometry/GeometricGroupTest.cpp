#include "geometry/GeometryTestSupport.h"
#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iComputeGeomBoundsVisitor.h>
#include <iModelStage/geometry/iGeometricGroupCallback.h>

#include <osg/StateSet>

namespace {

GEOMETRY_TEST_GROUP(iPlainGroup)
GEOMETRY_TEST_GROUP(iOneRendererGroup)
GEOMETRY_TEST_GROUP(iPriorityGroup)
GEOMETRY_TEST_GROUP(iMaskGroup)
GEOMETRY_TEST_GROUP(iBoundsGroup)
GEOMETRY_TEST_RENDERER(iFirstRenderer)
GEOMETRY_TEST_RENDERER(iSecondRenderer)
GEOMETRY_TEST_RENDERER(iThirdRenderer)

// A drawable that counts the requests for new display lists.
class CountingGeometry : public osg::Geometry {
public:
    void dirtyGLObjects() override
    {
        ++dirtied;
        osg::Geometry::dirtyGLObjects();
    }
    int dirtied = 0;
};

struct Registrations {
    Registrations()
    {
        auto add = [](char const* group, char const* renderer) {
            EXPECT_TRUE(iGeometryRendererManager::registerGeometricRenderer(group, renderer, 1));
        };
        add("iOneRendererGroup", "iFirstRenderer");
        add("iPriorityGroup", "iFirstRenderer");
        add("iPriorityGroup", "iSecondRenderer");
        add("iPriorityGroup", "iThirdRenderer");
        add("iMaskGroup", "iFirstRenderer");
        add("iMaskGroup", "iSecondRenderer");
        add("iBoundsGroup", "iFirstRenderer");
        add("iBoundsGroup", "iSecondRenderer");
    }
};

void registerOnce()
{
    static Registrations const once;
}

template <class T, class Group>
T* cached(Group* group, std::size_t index)
{
    auto& renderers = group->getCachedRenderer();
    return index < renderers.size() ? dynamic_cast<T*>(renderers[index].get()) : nullptr;
}

class GeometricGroupTest : public testing::Test {
protected:
    void SetUp() override { registerOnce(); }
};

} // namespace

I_REGISTER_CLASS(iPlainGroup)
I_REGISTER_CLASS(iOneRendererGroup)
I_REGISTER_CLASS(iPriorityGroup)
I_REGISTER_CLASS(iMaskGroup)
I_REGISTER_CLASS(iBoundsGroup)
I_REGISTER_CLASS(iFirstRenderer)
I_REGISTER_CLASS(iSecondRenderer)
I_REGISTER_CLASS(iThirdRenderer)

TEST_F(GeometricGroupTest, ClassRowPropertiesAndFreshState)
{
    std::string parent;
    ASSERT_TRUE(iRoot::getParentClassName("iGeometricGroup", parent));
    EXPECT_EQ(parent, "iTransformGroup");
    EXPECT_EQ(iGeometricGroup::getClassStatic().getProperty("clr", true).getGroup(), std::string("Rendering"));
    EXPECT_EQ(iGeometricGroup::getClassStatic().getProperty("material", true).getTypeName(),
              std::string("iMaterialGroupObserver"));
    EXPECT_EQ(iGeometricGroup::getClassStatic().getProperty("visible", true).getGroup(), std::string("State"));
    EXPECT_EQ(iGeometryRenderer::getClassStatic().getProperty("visible", true).getGroup(), std::string("State"));

    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    EXPECT_EQ(group->getClassVersion(), 3);
    EXPECT_EQ(group->getColor(), osg::Vec4f(1, 1, 0, 1));
    EXPECT_EQ(group->get_clr(), osg::Vec4f(1, 1, 0, 1));
    ASSERT_EQ(group->getSharedColorArray()->size(), 1u);
    EXPECT_EQ((*group->getSharedColorArray())[0], osg::Vec4f(1, 1, 0, 1));
    EXPECT_TRUE(group->get_usecolor());
    EXPECT_FALSE(group->get_usematerial());
    EXPECT_FALSE(group->get_material().valid());
    EXPECT_TRUE(group->get_visible());
    EXPECT_TRUE(group->get_selectable());
    EXPECT_EQ(group->getUpdateCallback(), nullptr);
    EXPECT_EQ(group->getStateSet()->getTextureMode(0, GL_TEXTURE_2D),
              osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(group->getVertices(), nullptr);
}

TEST_F(GeometricGroupTest, ClassWithoutRendererBuildsOnlyItself)
{
    osg::ref_ptr<iPlainGroup> group = new iPlainGroup;
    group->forceGeometryUpdate();
    group->forceGeometryUpdate();
    EXPECT_EQ(group->ownRebuilds, 2);
    EXPECT_EQ(group->getNumChildren(), 0u);
    EXPECT_TRUE(group->getCachedRenderer().empty());
}

TEST_F(GeometricGroupTest, ContainerIsChildZeroAndRenderersAreKept)
{
    osg::ref_ptr<iOneRendererGroup> group = new iOneRendererGroup;
    group->addChild(new osg::Group);
    int changes = 0;
    Recorder events;
    events.listen(group->sigGeometryGroupChanged, "changed", [&] { return std::to_string(++changes); });

    group->updateGeometry(false); // in no layer: rebuilt at once
    EXPECT_EQ(events.take(), Log{"changed:1"});
    EXPECT_EQ(group->ownRebuilds, 1);
    osg::Group* container = containerOf(group.get());
    ASSERT_TRUE(container);
    EXPECT_EQ(group->getNumChildren(), 2u);
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(container, 1));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(container, 2));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(container, 5));
    osg::ref_ptr<iFirstRenderer> renderer = rendererAt<iFirstRenderer>(container, 0);
    ASSERT_TRUE(renderer);
    EXPECT_EQ(renderer->rebuilds, 1);
    EXPECT_EQ(renderer->getNumChildren(), 1u);
    EXPECT_EQ(renderer->getGeometryGroup(), group.get());

    // Renderers live across updates; only their children are new.
    group->updateGeometry(true);
    EXPECT_EQ(rendererAt<iFirstRenderer>(containerOf(group.get()), 0), renderer.get());
    EXPECT_EQ(renderer->rebuilds, 2);
    EXPECT_EQ(renderer->getNumChildren(), 1u);

    // A group queued by a layer only signals.
    group->setAsyncUpdate(false);
    group->updateGeometry(false);
    EXPECT_EQ(renderer->rebuilds, 2);
    EXPECT_EQ(group->ownRebuilds, 2);
    group->updateGeometry(true);
    EXPECT_EQ(renderer->rebuilds, 3);
    EXPECT_EQ(events.take(), (Log{"changed:2", "changed:3", "changed:4"}));

    // An invalidated renderer brings new instances in the same container.
    group->invalidateRenderer();
    group->forceGeometryUpdate();
    EXPECT_EQ(containerOf(group.get()), container);
    EXPECT_NE(rendererAt<iFirstRenderer>(container, 0), renderer.get());
    EXPECT_EQ(container->getNumChildren(), 1u);
    EXPECT_EQ(countContainers(group.get()), 1);
}

TEST_F(GeometricGroupTest, CloneStartsWithoutRenderersAndGetsOneContainer)
{
    osg::ref_ptr<iOneRendererGroup> group = new iOneRendererGroup;
    group->setColor(osg::Vec4f(0, 1, 0, 1));
    group->set_usecolor(false);
    group->set_selectable(false);
    group->forceGeometryUpdate();

    osg::ref_ptr<iOneRendererGroup> copy =
        static_cast<iOneRendererGroup*>(group->clone(osg::CopyOp(osg::CopyOp::CopyFlags(0x7fffffff))));
    EXPECT_TRUE(copy->getCachedRenderer().empty());
    EXPECT_EQ(countContainers(copy.get()), 1); // the deep copy of the old one, an ordinary child now
    EXPECT_EQ(copy->getColor(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ((*copy->getSharedColorArray())[0], osg::Vec4f(0, 1, 0, 1));
    EXPECT_NE(copy->getSharedColorArray(), group->getSharedColorArray());
    EXPECT_FALSE(copy->get_usecolor());
    EXPECT_FALSE(copy->get_selectable());
    EXPECT_FALSE(copy->isFlagSet(1));

    copy->forceGeometryUpdate();
    EXPECT_EQ(countContainers(copy.get()), 1);
    osg::Group* container = containerOf(copy.get());
    ASSERT_TRUE(container);
    EXPECT_NE(container, containerOf(group.get()));
    ASSERT_EQ(copy->getCachedRenderer().size(), 1u);
    EXPECT_EQ(container->getChild(0), copy->getCachedRenderer()[0].get());
    EXPECT_EQ(rendererAt<iFirstRenderer>(container, 0)->getGeometryGroup(), copy.get());
}

TEST_F(GeometricGroupTest, PriorityPlacesRenderersInTheContainer)
{
    // The cache holds the newest registration first: third, second, first.
    osg::ref_ptr<iPriorityGroup> group = new iPriorityGroup;
    group->forceGeometryUpdate();
    osg::Group* container = containerOf(group.get());
    ASSERT_TRUE(container);
    auto* third = cached<iThirdRenderer>(group.get(), 0);
    auto* second = cached<iSecondRenderer>(group.get(), 1);
    auto* first = cached<iFirstRenderer>(group.get(), 2);
    ASSERT_TRUE(third && second && first);
    EXPECT_EQ(rendererAt<iThirdRenderer>(container, 0), third);
    EXPECT_EQ(rendererAt<iFirstRenderer>(container, 2), first);

    // Priority 0 comes first, though it is made last.
    first->setPriority(0);
    group->forceGeometryUpdate();
    EXPECT_EQ(rendererAt<iFirstRenderer>(container, 0), first);
    EXPECT_EQ(rendererAt<iThirdRenderer>(container, 1), third);
    EXPECT_EQ(rendererAt<iSecondRenderer>(container, 2), second);

    // A high priority lands before the last child, not after it.
    first->setPriority(9);
    group->forceGeometryUpdate();
    EXPECT_EQ(rendererAt<iThirdRenderer>(container, 0), third);
    EXPECT_EQ(rendererAt<iFirstRenderer>(container, 1), first);
    EXPECT_EQ(rendererAt<iSecondRenderer>(container, 2), second);

    // Into an empty container everything appends.
    first->setPriority(-1);
    third->setPriority(5);
    group->forceGeometryUpdate();
    EXPECT_EQ(rendererAt<iThirdRenderer>(container, 0), third);
    EXPECT_EQ(rendererAt<iFirstRenderer>(container, 2), first);
    EXPECT_EQ(container->getNumChildren(), 3u);
}

TEST_F(GeometricGroupTest, MasksDecideWhatIsBuilt)
{
    osg::ref_ptr<iMaskGroup> group = new iMaskGroup;
    group->forceGeometryUpdate();
    auto* second = cached<iSecondRenderer>(group.get(), 0);
    auto* first = cached<iFirstRenderer>(group.get(), 1);
    ASSERT_TRUE(first && second);
    Recorder events;
    events.listen(first->sigRendererUpdating, "first");
    events.listen(second->sigRendererUpdating, "second");
    group->set_name("g");

    // A mask no viewer shows is not built; bit 1 always counts as seen.
    first->setRenderMask(4);
    second->setRenderMask(2);
    group->forceGeometryUpdate();
    EXPECT_EQ(events.take(), (Log{"second:g", "first:g"}));
    EXPECT_EQ(first->getNumChildren(), 0u);
    EXPECT_EQ(second->getNumChildren(), 1u);
    EXPECT_EQ(first->getNodeMask(), 4u);

    // A node mask of 0 is skipped and keeps nothing from before.
    second->setRenderMask(0);
    group->forceGeometryUpdate();
    EXPECT_EQ(second->getNumChildren(), 0u);
    int const rebuilt = second->rebuilds;
    group->forceGeometryUpdate();
    EXPECT_EQ(second->rebuilds, rebuilt);

    // Without a geometrics layer the class filter does not touch the masks.
    second->setRenderMask(1);
    iGeometryRenderer::setClassFilter({"iMaskGroup"});
    group->forceGeometryUpdate();
    iGeometryRenderer::setClassFilter({});
    EXPECT_EQ(second->getNodeMask(), 1u);
    EXPECT_EQ(second->getNumChildren(), 1u);
}

TEST_F(GeometricGroupTest, VisibleAndSelectableFollowTheFlagsWithoutLoops)
{
    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    group->set_name("g");
    group->setNodeMask(6);
    Recorder events;
    events.listen(group->sigvisibleChanged, "visible");
    events.listen(group->sigselectableChanged, "selectable");
    events.listen(group->sigFlagChanged, "flag");

    group->set_visible(false);
    EXPECT_FALSE(group->isFlagSet(0));
    EXPECT_EQ(group->getNodeMask(), 0u);
    EXPECT_EQ(events.take(), (Log{"flag:g:0:0", "visible:0"}));

    group->setFlag(0, true);
    EXPECT_TRUE(group->get_visible());
    EXPECT_EQ(group->getNodeMask(), 6u);
    // The property writes its flag once more, which stops there.
    EXPECT_EQ(events.take(), (Log{"flag:g:0:1", "flag:g:0:1", "visible:1"}));

    group->setFlag(1, false);
    EXPECT_FALSE(group->get_selectable());
    group->set_selectable(true);
    EXPECT_TRUE(group->isFlagSet(1));
    EXPECT_EQ(events.take(), (Log{"flag:g:1:0", "flag:g:1:0", "selectable:0", "flag:g:1:1", "selectable:1"}));

    // A whole flag set moves both properties.
    std::bitset<32> flags = group->getFlags();
    flags.reset(0).reset(1);
    group->setFlags(flags);
    EXPECT_FALSE(group->get_visible());
    EXPECT_FALSE(group->get_selectable());
    group->setFlags(flags.set(0).set(1));
    events.take();

    // With the flags locked the property changes alone.
    group->setFlag(5, false);
    events.take();
    group->set_visible(false);
    EXPECT_TRUE(group->isFlagSet(0));
    EXPECT_EQ(events.take(), Log{"visible:0"});
    group->setFlag(5, true);
    EXPECT_TRUE(group->get_visible());

    // Even a property that always sets goes round once only.
    iProperty const& visible = iGeometricGroup::getClassStatic().getProperty("visible", true);
    visible.setForceSet(true);
    events.take();
    group->set_visible(true);
    visible.setForceSet(false);
    EXPECT_EQ(events.take(), (Log{"flag:g:0:1", "visible:1"}));
}

TEST_F(GeometricGroupTest, ColourChangesMarkDrawablesWithoutRebuild)
{
    osg::ref_ptr<iOneRendererGroup> group = new iOneRendererGroup;
    osg::ref_ptr<CountingGeometry> own = new CountingGeometry;
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(own.get());
    group->addChild(geode.get());
    group->forceGeometryUpdate();
    auto* renderer = cached<iFirstRenderer>(group.get(), 0);
    ASSERT_TRUE(renderer);
    osg::ref_ptr<CountingGeometry> drawn = new CountingGeometry;
    renderer->getChild(0)->asGeode()->addDrawable(drawn.get());
    osg::Geometry* quad = renderer->getChild(0)->asGeode()->getDrawable(0)->asGeometry();
    EXPECT_EQ(quad->getColorArray(), group->getSharedColorArray());

    group->setColor(osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(group->get_clr(), osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ((*group->getSharedColorArray())[0], osg::Vec4f(1, 0, 0, 1));
    EXPECT_GE(own->dirtied, 1);
    EXPECT_GE(drawn->dirtied, 1);

    // The same colour again: no property change, still dirty.
    int const before = own->dirtied;
    group->setColor(osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(own->dirtied, before + 1);
    group->set_clr(osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(own->dirtied, before + 1);

    group->set_clr(osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(group->getColor(), osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ((*group->getSharedColorArray())[0], osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(own->dirtied, before + 2);
    EXPECT_EQ(renderer->rebuilds, 1);
    EXPECT_EQ(group->getSharedColorArray()->size(), 1u);
}

TEST_F(GeometricGroupTest, BoundsCountTheFirstRendererOnly)
{
    osg::ref_ptr<iBoundsGroup> group = new iBoundsGroup;
    EXPECT_FALSE(iComputeGeomBoundsVisitor(nullptr, true).getBoundingBox().valid());
    EXPECT_FALSE(iComputeGeomBoundsVisitor(group.get(), false).getBoundingBox().valid());
    EXPECT_EQ(group->getNumChildren(), 0u);

    int changes = 0;
    Recorder events;
    events.listen(group->sigGeometryGroupChanged, "changed", [&] { return std::to_string(++changes); });
    osg::BoundingBox box = iComputeGeomBoundsVisitor(group.get(), true).getBoundingBox();
    EXPECT_EQ(events.take(), Log{"changed:1"});
    ASSERT_TRUE(box.valid());
    EXPECT_EQ(box.xMax(), 1.0f);

    // The first renderer in the container decides; the second lies elsewhere.
    auto* second = cached<iSecondRenderer>(group.get(), 0);
    auto* first = cached<iFirstRenderer>(group.get(), 1);
    ASSERT_TRUE(first && second);
    second->corner[2] = 3.0f;
    second->height = 2.0f;
    first->corner[2] = 100.0f;
    group->forceGeometryUpdate();
    box = iComputeGeomBoundsVisitor(group.get(), false).getBoundingBox();
    EXPECT_EQ(box.xMax(), 3.0f);
    EXPECT_EQ(box.zMin(), 2.0f);

    // An emptied first renderer is rebuilt only when forced.
    second->removeChildren(0, second->getNumChildren());
    EXPECT_FALSE(iComputeGeomBoundsVisitor(group.get(), false).getBoundingBox().valid());
    box = iComputeGeomBoundsVisitor(group.get(), true).getBoundingBox();
    EXPECT_EQ(box.xMax(), 3.0f);
    EXPECT_EQ(events.take(), Log{"changed:2"});
}

namespace {

// Finalizes its group again from inside, to show the block.
class iRefinalizingCallback : public iGeometricGroupCallback {
public:
    void finalizeImplementation(iGeometricsLayer* layer, iGeometricGroup* group) override
    {
        seenLayer = layer;
        group->finalize("inner");
    }
    iGeometricsLayer* seenLayer = reinterpret_cast<iGeometricsLayer*>(1);
};

} // namespace

TEST_F(GeometricGroupTest, CallbackBlocksCascadesOnlyWhenAsked)
{
    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    group->set_name("g");
    Recorder events;
    events.listen(group->sigGeometryGroupFinalized, "finalized");
    iRefinalizingCallback callback;

    callback.finalize(nullptr, group.get(), true);
    EXPECT_EQ(callback.seenLayer, nullptr);
    EXPECT_TRUE(events.take().empty());
    EXPECT_FALSE(group->sigGeometryGroupFinalized.blocked());

    callback.finalize(nullptr, group.get(), false);
    EXPECT_EQ(events.take(), Log{"finalized:g:inner"});

    // A blocked signal stays blocked afterwards.
    group->sigGeometryGroupFinalized.block(true);
    callback.finalize(nullptr, group.get(), false);
    EXPECT_EQ(events.take(), Log{"finalized:g:inner"});
    EXPECT_TRUE(group->sigGeometryGroupFinalized.blocked());
    group->finalize("outer");
    EXPECT_TRUE(events.take().empty());
}
