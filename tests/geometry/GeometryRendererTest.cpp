#include "geometry/GeometryTestSupport.h"

#include <iModelStage/geometry/iPolygonEntity.h>
#include <iModelStage/geometry/iQuadEntity.h>

#include <gtest/gtest.h>

#include <list>
#include <memory>

I_REGISTER_CLASS(iQuadTestRenderer)

namespace {

GEOMETRY_TEST_GROUP(iRegistryGroup)
GEOMETRY_TEST_GROUP(iRegistryChildGroup)
GEOMETRY_TEST_RENDERER(iRegistryRendererA)
GEOMETRY_TEST_RENDERER(iRegistryRendererB)
GEOMETRY_TEST_GROUP(iEntitiesGroup)

// Answers with one entity group holding one point, and shows the helpers.
class iEntityTestRenderer : public iGeometryRenderer {
    I_CLASS(iEntityTestRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iEntityTestRenderer)
public:
    iEntityTestRenderer() = default;
    iEntityTestRenderer(iEntityTestRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    bool getGeometricEntities(std::vector<iEntityGroup>& out) override
    {
        out.emplace_back();
        out.back().pushEntity(new iPolygonEntity);
        return true;
    }
    using iGeometryRenderer::getCylinderEntities;
    using iGeometryRenderer::getExtrudedPolygonEntities;

protected:
    ~iEntityTestRenderer() override = default;
};

GEOMETRY_TEST_RENDERER(iOtherEntityRenderer)

// The protected registry read, for the tests.
struct RendererManager : iGeometryRendererManager {
    using iGeometryRendererManager::getRenderClasses;
};

} // namespace

I_REGISTER_CLASS(iRegistryGroup)
I_REGISTER_CLASS(iRegistryChildGroup)
I_REGISTER_CLASS(iRegistryRendererA)
I_REGISTER_CLASS(iRegistryRendererB)
I_REGISTER_CLASS(iEntitiesGroup)
I_REGISTER_CLASS(iEntityTestRenderer)
I_REGISTER_CLASS(iOtherEntityRenderer)

TEST(GeometryRendererManager, RegistryIsExactAndNewestFirst)
{
    std::list<std::string> classes;
    EXPECT_FALSE(RendererManager::getRenderClasses("iRegistryGroup", classes));
    EXPECT_FALSE(iGeometryRendererManager::hasAttachedRenderer("iRegistryGroup"));

    EXPECT_FALSE(iGeometryRendererManager::registerGeometricRenderer("iNoSuchGroup", "iRegistryRendererA", 1));
    EXPECT_FALSE(iGeometryRendererManager::registerGeometricRenderer("iRegistryGroup", "iNoSuchRenderer", 1));
    EXPECT_FALSE(iGeometryRendererManager::registerGeometricRenderer(nullptr, "iRegistryRendererA", 1));
    EXPECT_FALSE(iGeometryRendererManager::hasAttachedRenderer("iRegistryGroup"));
    EXPECT_FALSE(iGeometryRendererManager::hasAttachedRenderer("iNoSuchGroup"));

    EXPECT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iRegistryGroup", "iRegistryRendererA", 1));
    EXPECT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iRegistryGroup", "iRegistryRendererB", 7));
    EXPECT_FALSE(iGeometryRendererManager::registerGeometricRenderer("iRegistryGroup", "iRegistryRendererA", 2));
    EXPECT_TRUE(iGeometryRendererManager::hasAttachedRenderer("iRegistryGroup"));
    EXPECT_TRUE(RendererManager::getRenderClasses("iRegistryGroup", classes));
    EXPECT_EQ(classes, (std::list<std::string>{"iRegistryRendererB", "iRegistryRendererA"}));

    // A subclass gets nothing from its parent's registrations.
    classes.push_back("stale");
    EXPECT_FALSE(RendererManager::getRenderClasses("iRegistryChildGroup", classes));
    EXPECT_TRUE(classes.empty());
    osg::ref_ptr<iRegistryChildGroup> child = new iRegistryChildGroup;
    child->forceGeometryUpdate();
    EXPECT_EQ(child->getNumChildren(), 0u);

    // One instance per pair, however often it was offered.
    osg::ref_ptr<iRegistryGroup> group = new iRegistryGroup;
    group->forceGeometryUpdate();
    ASSERT_EQ(group->getCachedRenderer().size(), 2u);
    EXPECT_TRUE(dynamic_cast<iRegistryRendererB*>(group->getCachedRenderer()[0].get()));
    EXPECT_TRUE(dynamic_cast<iRegistryRendererA*>(group->getCachedRenderer()[1].get()));
}

TEST(GeometryRendererManager, FirstInstanceIsTheSingleton)
{
    iGeometryRendererManager* before = iGeometryRendererManager::getInstance();
    auto first = std::make_unique<iGeometryRendererManager>();
    auto second = std::make_unique<iGeometryRendererManager>();
    EXPECT_EQ(iGeometryRendererManager::getInstance(), before ? before : first.get());
    EXPECT_FALSE(iGeometryRendererManager::canRender(1));
    EXPECT_FALSE(iGeometryRendererManager::canRender(0x7fffffff));
}

TEST(GeometryRendererManager, EntitiesComeFromMatchingRenderersWithInheritance)
{
    ASSERT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iEntitiesGroup", "iEntityTestRenderer", 1));
    ASSERT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iEntitiesGroup", "iOtherEntityRenderer", 1));
    osg::ref_ptr<iEntitiesGroup> group = new iEntitiesGroup;
    std::vector<iEntityGroup> out;
    // No renderers before the first update.
    EXPECT_FALSE(iGeometryRendererManager::getGeometricEntities(group.get(), "iGeometryRenderer", out));
    group->forceGeometryUpdate();
    EXPECT_TRUE(iGeometryRendererManager::getGeometricEntities(group.get(), "iEntityTestRenderer", out));
    EXPECT_EQ(out.size(), 1u);
    // The base class name reaches both; the quad renderer adds nothing.
    EXPECT_TRUE(iGeometryRendererManager::getGeometricEntities(group.get(), "iGeometryRenderer", out));
    EXPECT_EQ(out.size(), 2u);
    // Groups already there count.
    EXPECT_TRUE(iGeometryRendererManager::getGeometricEntities(group.get(), "iOtherEntityRenderer", out));
    EXPECT_EQ(out.size(), 2u);
    std::vector<iEntityGroup> none;
    EXPECT_FALSE(iGeometryRendererManager::getGeometricEntities(nullptr, "iGeometryRenderer", none));
}

TEST(GeometryRenderer, NewRendererIsLockedAndVisible)
{
    osg::ref_ptr<iQuadTestRenderer> renderer = new iQuadTestRenderer;
    EXPECT_TRUE(renderer->get_visible());
    EXPECT_EQ(renderer->getPriority(), -1);
    EXPECT_EQ(renderer->getRenderMask(), 1);
    EXPECT_EQ(renderer->getGeometryGroup(), nullptr);
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(renderer.get(), 1));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(renderer.get(), 5));
    std::vector<iEntityGroup> out;
    EXPECT_FALSE(renderer->iGeometryRenderer::getGeometricEntities(out));
    EXPECT_TRUE(out.empty());

    // visible opens the lock for its own bit only.
    renderer->setRenderMask(4);
    renderer->set_visible(false);
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(renderer.get(), 0));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(renderer.get(), 5));
    EXPECT_EQ(renderer->getNodeMask(), 0u);
    renderer->set_visible(true);
    EXPECT_EQ(renderer->getNodeMask(), 4u);

    // Without a geometrics layer the mask is left as it is.
    osg::ref_ptr<iRegistryGroup> group = new iRegistryGroup;
    renderer->setGeometryGroup(group.get());
    iGeometryRenderer::setClassFilter({"iRegistryGroup"});
    renderer->applyRenderMask();
    EXPECT_EQ(renderer->getNodeMask(), 4u);
    EXPECT_EQ(iGeometryRenderer::getClassFilter(), (std::set<std::string>{"iRegistryGroup"}));
    iGeometryRenderer::setClassFilter({});
    iGeometryRenderer::forceGeometricLayerUpdate();
}

TEST(GeometryRenderer, CylinderIsTwoCapsAndFourStrips)
{
    std::vector<iGeometricEntity*> out;
    osg::Quat const turn(osg::PI_2, osg::Vec3d(0, 0, 1));
    ASSERT_TRUE(iEntityTestRenderer::getCylinderEntities(0.5, 4.0, osg::Vec4f(1, 0, 0, 1), out,
                                                         osg::Vec3f(0, 0, 10), turn));
    ASSERT_EQ(out.size(), 6u);
    std::vector<osg::ref_ptr<iGeometricEntity>> held(out.begin(), out.end());
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(dynamic_cast<iPolygonEntity*>(out[i]));
        EXPECT_EQ(out[i]->getVertices().size(), 32u);
        EXPECT_EQ(out[i]->getColor(), osg::Vec4f(1, 0, 0, 1));
    }
    for (int i = 2; i < 6; ++i) {
        ASSERT_TRUE(dynamic_cast<iQuadEntity*>(out[i]));
        EXPECT_EQ(out[i]->getVertices().size(), 5u);
    }
    // The caps stand at the two ends of the axis, which the rotation turns
    // from X to Y, and face outward.
    osg::Vec3f min, max;
    out[0]->getBounds(min, max, osg::Matrixd());
    EXPECT_NEAR(min.y(), 2.0, 1e-5);
    EXPECT_NEAR(max.y(), 2.0, 1e-5);
    EXPECT_NEAR(min.z(), 9.5, 1e-5);
    EXPECT_NEAR(max.z(), 10.5, 1e-5);
    EXPECT_NEAR(out[0]->getNormal().y(), 1.0, 1e-5);
    out[1]->getBounds(min, max, osg::Matrixd());
    EXPECT_NEAR(min.y(), -2.0, 1e-5);
    EXPECT_NEAR(out[1]->getNormal().y(), -1.0, 1e-5);
    EXPECT_EQ(out[2]->getVertices()[1], osg::Vec3f(-2, 0.5f, 0));
    EXPECT_EQ(out[5]->getVertices()[1], osg::Vec3f(-2, 0, 0.5f));
}

TEST(GeometryRenderer, ExtrudedPolygonHasNoClosingSide)
{
    iEntityGroup out;
    osg::ref_ptr<osg::Vec3Array> none = new osg::Vec3Array;
    EXPECT_FALSE(iEntityTestRenderer::getExtrudedPolygonEntities(*none, osg::Vec3f(0, 0, 1), 2.0, {}, out));
    EXPECT_EQ(out.getSize(), 0);

    osg::ref_ptr<osg::Vec3Array> one = new osg::Vec3Array;
    one->push_back(osg::Vec3f(1, 1, 0));
    EXPECT_TRUE(iEntityTestRenderer::getExtrudedPolygonEntities(*one, osg::Vec3f(0, 0, 1), 2.0, {}, out));
    ASSERT_EQ(out.getSize(), 2);
    EXPECT_EQ(out.getEntities()[1]->getVertices(), std::vector<osg::Vec3f>{osg::Vec3f(1, 1, 2)});

    out.clear();
    osg::ref_ptr<osg::Vec3Array> outline = new osg::Vec3Array;
    for (osg::Vec3f p : {osg::Vec3f(0, 0, 0), osg::Vec3f(1, 0, 0), osg::Vec3f(0, 1, 0)})
        outline->push_back(p);
    osg::Vec4f const blue(0, 0, 1, 1);
    EXPECT_TRUE(iEntityTestRenderer::getExtrudedPolygonEntities(*outline, osg::Vec3f(0, 0, 2), 1.5, blue, out));
    ASSERT_EQ(out.getSize(), 4);
    auto const& entities = out.getEntities();
    EXPECT_EQ(entities[0]->getVertices(),
              (std::vector<osg::Vec3f>{osg::Vec3f(0, 1, 0), osg::Vec3f(1, 0, 0), osg::Vec3f(0, 0, 0)}));
    EXPECT_NEAR(entities[0]->getNormal().z(), -1.0, 1e-6);
    EXPECT_EQ(entities[1]->getVertices()[2], osg::Vec3f(0, 1, 3));
    EXPECT_NEAR(entities[1]->getNormal().z(), 1.0, 1e-6);
    EXPECT_TRUE(dynamic_cast<iQuadEntity*>(entities[3].get()));
    EXPECT_EQ(entities[3]->getVertices(),
              (std::vector<osg::Vec3f>{osg::Vec3f(1, 0, 0), osg::Vec3f(0, 1, 0), osg::Vec3f(0, 1, 3),
                                       osg::Vec3f(1, 0, 3), osg::Vec3f(1, 0, 0)}));
    EXPECT_EQ(entities[3]->getColor(), blue);
    EXPECT_TRUE(entities[3]->getMatrix().isIdentity());
}
