#include "geometry/GeometryTestSupport.h"
#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iGeometricGroupCallback.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iMaterialGroup.h>

#include <osg/LightModel>

namespace {

GEOMETRY_TEST_GROUP(iLayerGroup)
GEOMETRY_TEST_GROUP(iRequeueGroup)
GEOMETRY_TEST_RENDERER(iLayerRenderer)

// Asks for another update of its group while it rebuilds it.
class iRequeueRenderer : public iQuadTestRenderer {
    I_CLASS(iRequeueRenderer, iQuadTestRenderer, 1)
    I_OSG_NODE(iRequeueRenderer)
public:
    iRequeueRenderer() = default;
    iRequeueRenderer(iRequeueRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iQuadTestRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        iQuadTestRenderer::rebuildGeometry(group);
        group->updateGeometry(false);
    }

protected:
    ~iRequeueRenderer() override = default;
};

void registerOnce()
{
    static bool const once = [] {
        EXPECT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iLayerGroup", "iLayerRenderer", 1));
        EXPECT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iRequeueGroup", "iRequeueRenderer", 1));
        return true;
    }();
    (void)once;
}

class GeometricsLayerTest : public testing::Test {
protected:
    void SetUp() override
    {
        registerOnce();
        layer = new iGeometricsLayer;
    }
    osg::ref_ptr<iLayerGroup> add(std::string const& name, osg::Group* parent = nullptr)
    {
        osg::ref_ptr<iLayerGroup> group = make<iLayerGroup>(name);
        layer->addChildObject(parent ? parent : layer->getObjectsRoot(), group.get(), true);
        return group;
    }
    osg::ref_ptr<iGeometricsLayer> layer;
};

} // namespace

I_REGISTER_CLASS(iLayerGroup)
I_REGISTER_CLASS(iRequeueGroup)
I_REGISTER_CLASS(iLayerRenderer)
I_REGISTER_CLASS(iRequeueRenderer)

TEST_F(GeometricsLayerTest, SubtreeOrderAndLooks)
{
    osg::Group* root = layer->getRoot();
    ASSERT_EQ(root->getNumChildren(), 3u);
    EXPECT_EQ(root->getChild(0), layer->getIPlanes());
    EXPECT_EQ(root->getChild(1), layer->getObjectsRoot());
    EXPECT_EQ(root->getChild(2), layer->getInteractiveLayer());
    EXPECT_EQ(root->getDataVariance(), osg::Object::DYNAMIC);

    osg::StateSet* objects = layer->getObjectsRoot()->getStateSet();
    ASSERT_NE(objects, nullptr);
    EXPECT_EQ(objects->getMode(GL_BLEND), osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(objects->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
    auto* light = dynamic_cast<osg::LightModel*>(objects->getAttribute(osg::StateAttribute::LIGHTMODEL));
    ASSERT_NE(light, nullptr);
    EXPECT_TRUE(light->getTwoSided());
    osg::StateSet* interactive = layer->getInteractiveLayer()->getStateSet();
    ASSERT_NE(interactive, nullptr);
    EXPECT_EQ(interactive->getMode(GL_BLEND), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);

    iGeometricsLayer* editing = layer->getEditingLayer();
    ASSERT_NE(editing, nullptr);
    EXPECT_EQ(layer->getEditingLayer(), editing);
    ASSERT_EQ(root->getNumChildren(), 4u);
    EXPECT_EQ(root->getChild(3), editing->getObjectsRoot());
    EXPECT_EQ(layer->getInteractiveLayer()->getChild(0), editing->getInteractiveLayer());

    // The editing layer runs in this layer's loop.
    osg::ref_ptr<iLayerGroup> group = make<iLayerGroup>("edited");
    editing->addObject(group.get(), true);
    EXPECT_EQ(group->ownRebuilds, 0);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);
}

TEST_F(GeometricsLayerTest, ChangesInOneFrameRebuildOnce)
{
    osg::ref_ptr<iLayerGroup> group = add("g");
    // Adding queues the group and makes its updates wait for the frame.
    EXPECT_FALSE(group->getAsyncUpdate());
    EXPECT_EQ(group->ownRebuilds, 0);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);

    group->updateGeometry(false);
    group->updateGeometry(false);
    EXPECT_EQ(group->ownRebuilds, 1);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 2);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 2);
    EXPECT_FALSE(group->getAsyncUpdate());

    // A forced update runs at once and still queues one for the frame.
    group->updateGeometry(true);
    EXPECT_EQ(group->ownRebuilds, 3);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 4);
}

TEST_F(GeometricsLayerTest, LockedPeriodDropsUpdatesForGood)
{
    osg::ref_ptr<iLayerGroup> group = add("g");
    layer->loop();
    EXPECT_FALSE(layer->lockUnLockGeometricUpdate(true));
    group->updateGeometry(false);
    EXPECT_TRUE(layer->lockUnLockGeometricUpdate(false));
    layer->loop();
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);

    // Afterwards the caller asks for all groups again.
    layer->forceGeometricUpdate();
    EXPECT_EQ(group->ownRebuilds, 1);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 2);
}

TEST_F(GeometricsLayerTest, RemovedGroupIsNotRebuiltAndUpdatesAtOnceAgain)
{
    osg::ref_ptr<iLayerGroup> group = add("g");
    layer->loop();
    group->updateGeometry(false);
    layer->removeObject(group.get(), true);
    EXPECT_TRUE(group->getAsyncUpdate());
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);
    // Out of the layer, nothing waits and nothing reaches the layer.
    group->updateGeometry(false);
    EXPECT_EQ(group->ownRebuilds, 2);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 2);

    // Emptying the layer drops what was queued.
    osg::ref_ptr<iLayerGroup> other = add("h");
    layer->removeAllObjects();
    layer->loop();
    EXPECT_EQ(other->ownRebuilds, 0);
}

TEST_F(GeometricsLayerTest, QueuedGroupThatDiesUnannouncedIsPassedOver)
{
    osg::ref_ptr<iLayerGroup> kept = add("kept");
    osg::observer_ptr<iLayerGroup> watch;
    {
        osg::ref_ptr<iLayerGroup> lost = add("lost");
        watch = lost;
        // Taken out of the tree behind the layer's back, then released.
        layer->getObjectsRoot()->removeChild(lost.get());
    }
    ASSERT_FALSE(watch.valid());
    layer->loop();
    EXPECT_EQ(kept->ownRebuilds, 1);
}

TEST_F(GeometricsLayerTest, GroupThatQueuesItselfWhileRebuildingIsNotRebuiltAgain)
{
    osg::ref_ptr<iRequeueGroup> group = make<iRequeueGroup>("self");
    layer->addObject(group.get(), true);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);
    layer->loop();
    EXPECT_EQ(group->ownRebuilds, 1);
}

TEST_F(GeometricsLayerTest, ForceQueuesNestedGroupsButNotRendererContents)
{
    osg::ref_ptr<iNodeGroup> folder = make<iNodeGroup>("folder");
    layer->addObject(folder.get(), true);
    osg::ref_ptr<iLayerGroup> outer = add("outer", folder.get());
    osg::ref_ptr<iLayerGroup> inner = add("inner", outer.get());
    layer->loop();
    ASSERT_EQ(outer->ownRebuilds, 1);
    ASSERT_EQ(inner->ownRebuilds, 1);
    // A group hidden inside a renderer container is drawing, not document.
    osg::ref_ptr<iLayerGroup> drawn = make<iLayerGroup>("drawn");
    containerOf(outer.get())->addChild(drawn.get());

    layer->forceGeometricUpdate();
    layer->loop();
    EXPECT_EQ(outer->ownRebuilds, 2);
    EXPECT_EQ(inner->ownRebuilds, 2);
    EXPECT_EQ(drawn->ownRebuilds, 0);
    // Every node of the layer, geometric or not, got the look callback.
    EXPECT_NE(folder->getUpdateCallback(), nullptr);
    EXPECT_NE(inner->getUpdateCallback(), nullptr);
}

TEST_F(GeometricsLayerTest, RendererClassFilterQueuesTheDocumentLayer)
{
    std::unique_ptr<iLayersManager> manager = std::make_unique<iLayersManager>();
    manager->freeLayerObjects();
    iNodeLayer* registered = iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer");
    auto* document = dynamic_cast<iGeometricsLayer*>(registered);
    ASSERT_NE(document, nullptr);
    osg::ref_ptr<iLayerGroup> group = make<iLayerGroup>("g");
    document->addObject(group.get(), true);
    manager->loop();
    ASSERT_EQ(group->ownRebuilds, 1);
    iQuadTestRenderer* renderer = rendererAt<iQuadTestRenderer>(containerOf(group.get()), 0);
    ASSERT_NE(renderer, nullptr);

    iGeometryRenderer::setClassFilter({"iLayerGroup"});
    EXPECT_EQ(group->ownRebuilds, 1);
    manager->loop();
    EXPECT_EQ(group->ownRebuilds, 2);
    EXPECT_EQ(renderer->getNodeMask(), 0u);
    EXPECT_EQ(renderer->getNumChildren(), 0u);

    iGeometryRenderer::setClassFilter({});
    manager->loop();
    EXPECT_EQ(renderer->getNodeMask(), 1u);
    EXPECT_EQ(renderer->getNumChildren(), 1u);
    manager->freeLayerObjects();
}

TEST_F(GeometricsLayerTest, MaterialSlotsSwapStateSets)
{
    osg::ref_ptr<iLayerGroup> group = add("g");
    osg::ref_ptr<iMaterialGroup> material = make<iMaterialGroup>("m");
    material->updateMaterial();

    group->set_material(iMaterialGroupObserver(material.get()));
    EXPECT_EQ(group->getStateSet(), material->getStateSet());
    group->set_material(iMaterialGroupObserver());
    EXPECT_NE(group->getStateSet(), material->getStateSet());
    EXPECT_EQ(group->getStateSet()->getAttributeList().size(), 0u);

    group->set_material(iMaterialGroupObserver(material.get()));
    group->set_usecolor(false);
    group->set_usecolor(true);
    EXPECT_NE(group->getStateSet(), material->getStateSet());
    group->set_usematerial(true);
    EXPECT_EQ(group->getStateSet(), material->getStateSet());
}

TEST_F(GeometricsLayerTest, HideUnselectedShowsAncestorsOfTheSelection)
{
    osg::ref_ptr<iNodeGroup> folder = make<iNodeGroup>("folder");
    layer->addObject(folder.get(), true);
    osg::ref_ptr<iLayerGroup> chosen = add("chosen", folder.get());
    osg::ref_ptr<iLayerGroup> sibling = add("sibling", folder.get());
    osg::ref_ptr<iLayerGroup> other = add("other");
    osg::ref_ptr<iLayerGroup> kept = add("kept");
    layer->addObjectSelection(chosen.get());

    layer->hideUnSelected(kept.get());
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(folder.get(), 0));
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(chosen.get(), 0));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(sibling.get(), 0));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(other.get(), 0));
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(kept.get(), 0));
    EXPECT_FALSE(other->get_visible());

    layer->showAll();
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(other.get(), 0));
    layer->hideSelected();
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(chosen.get(), 0));
    layer->showSelected();
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(chosen.get(), 0));
    layer->hideAll();
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(kept.get(), 0));
}

TEST_F(GeometricsLayerTest, SelectionFilterPassesExceptions)
{
    osg::ref_ptr<iLayerGroup> group = add("g");
    osg::ref_ptr<iNodeGroup> plain = make<iNodeGroup>("p");
    EXPECT_TRUE(layer->isObjectFiltered(group.get()));
    layer->setSelectionFilter({"iNodeGroup"});
    EXPECT_TRUE(layer->isObjectFiltered(group.get())); // inactive
    layer->setSelectionFilterActive(true);
    EXPECT_FALSE(layer->isObjectFiltered(group.get()));
    EXPECT_TRUE(layer->isObjectFiltered(plain.get()));
    layer->setSelectionFilter({});
    EXPECT_TRUE(layer->isObjectFiltered(group.get()));
}
