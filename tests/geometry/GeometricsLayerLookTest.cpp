#include "geometry/GeometryTestSupport.h"
#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometricsLayerUpdateCallback.h>
#include <iModelStage/geometry/iMaterialGroup.h>

#include <osg/Material>
#include <osgUtil/UpdateVisitor>

namespace {

GEOMETRY_TEST_GROUP(iLookGroup)
GEOMETRY_TEST_GROUP(iObStrutturaGroup)

class GeometricsLayerLook : public testing::Test {
protected:
    void SetUp() override { layer = new iGeometricsLayer; }
    template <class T = iLookGroup>
    osg::ref_ptr<T> add(std::string const& name)
    {
        osg::ref_ptr<T> group = make<T>(name);
        layer->addObject(group.get(), true);
        return group;
    }
    void update()
    {
        osg::ref_ptr<osgUtil::UpdateVisitor> visitor = new osgUtil::UpdateVisitor;
        layer->getRoot()->accept(*visitor);
    }
    osg::ref_ptr<iGeometricsLayer> layer;
};

osg::Material* materialOf(osg::Node* node)
{
    osg::StateSet* state = node->getStateSet();
    return state ? dynamic_cast<osg::Material*>(state->getAttribute(osg::StateAttribute::MATERIAL)) : nullptr;
}

// What a look is made of, whichever material instance carries it.
std::string lookOf(osg::Node* node)
{
    osg::Material* material = materialOf(node);
    if (!material)
        return "plain";
    osg::Vec4f const emission = material->getEmission(osg::Material::FRONT);
    osg::Vec4f const diffuse = material->getDiffuse(osg::Material::BACK);
    if (emission == osg::Vec4f(0.95f, 0.61f, 0.11f, 1.0f) && diffuse == osg::Vec4f(0, 0, 0, 0.65f))
        return "amber";
    if (diffuse == osg::Vec4f(0.2f, 0.2f, 0.2f, 0.2f) && emission == osg::Vec4f(0, 0, 0, 1))
        return "grey";
    return "other";
}

unsigned int const kForcedOn = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;

} // namespace

I_REGISTER_CLASS(iLookGroup)
I_REGISTER_CLASS(iObStrutturaGroup)

TEST_F(GeometricsLayerLook, SelectionShinesAmberUntilDeselected)
{
    osg::ref_ptr<iLookGroup> group = add("g");
    layer->addObjectSelection(group.get());
    EXPECT_EQ(lookOf(group.get()), "plain"); // nothing happens before the traversal
    update();
    EXPECT_EQ(lookOf(group.get()), "amber");
    EXPECT_EQ(materialOf(group.get()), iGeometricsLayerUpdateCallback::getSelectionMaterial());
    osg::StateSet* state = group->getStateSet();
    EXPECT_TRUE(state->getAttributePair(osg::StateAttribute::MATERIAL)->second & osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(state->getMode(GL_LIGHTING), kForcedOn);
    EXPECT_EQ(state->getMode(GL_BLEND), kForcedOn);
    EXPECT_EQ(materialOf(group.get())->getColorMode(), osg::Material::OFF);
    // The group's own modes come along into the new state set.
    EXPECT_EQ(state->getTextureMode(0, GL_TEXTURE_2D), kForcedOn);
    // A fresh set at every traversal.
    update();
    EXPECT_NE(group->getStateSet(), state);

    layer->removeObjectSelection(group.get());
    update();
    EXPECT_EQ(lookOf(group.get()), "plain");

    // Without the show-selection flag a selected group keeps its look.
    group->setFlag(11, false);
    layer->addObjectSelection(group.get());
    update();
    EXPECT_EQ(lookOf(group.get()), "plain");
}

TEST_F(GeometricsLayerLook, FilteredAndUnselectableObjectsTurnGrey)
{
    osg::ref_ptr<iLookGroup> group = add("g");
    osg::ref_ptr<iObStrutturaGroup> structure = add<iObStrutturaGroup>("s");
    osg::ref_ptr<iLookGroup> fixed = add("fixed");
    fixed->set_selectable(false);
    layer->setSelectionFilter({"iNodeGroup"});
    layer->setSelectionFilterActive(true);
    update();
    EXPECT_EQ(lookOf(group.get()), "grey");
    EXPECT_EQ(materialOf(group.get()), iGeometricsLayerUpdateCallback::getFilteredMaterial());
    EXPECT_EQ(lookOf(structure.get()), "plain");
    EXPECT_EQ(lookOf(fixed.get()), "grey");

    // A selected object outside the filter still shows it is selected.
    layer->addObjectSelection(group.get());
    update();
    EXPECT_EQ(lookOf(group.get()), "amber");
    layer->removeObjectSelection(group.get());

    layer->setSelectionFilter({});
    update();
    EXPECT_EQ(lookOf(group.get()), "plain");
    EXPECT_EQ(lookOf(fixed.get()), "grey");

    // Once the layer is gone the callbacks only traverse.
    layer->setSelectionFilter({"iNodeGroup"});
    osg::ref_ptr<osg::Group> root = layer->getRoot();
    layer = nullptr;
    osg::ref_ptr<osgUtil::UpdateVisitor> visitor = new osgUtil::UpdateVisitor;
    root->accept(*visitor);
    EXPECT_EQ(lookOf(group.get()), "plain");
}

TEST_F(GeometricsLayerLook, GroupThatShowsItsMaterialSharesItAgainAfterSelection)
{
    osg::ref_ptr<iMaterialGroup> material = make<iMaterialGroup>("m");
    material->updateMaterial();
    osg::ref_ptr<iLookGroup> group = add("g");
    group->set_material(iMaterialGroupObserver(material.get()));
    group->set_usecolor(false);
    group->set_usematerial(true);
    ASSERT_EQ(group->getStateSet(), material->getStateSet());

    layer->addObjectSelection(group.get());
    update();
    EXPECT_EQ(lookOf(group.get()), "amber");
    EXPECT_NE(group->getStateSet(), material->getStateSet());
    EXPECT_NE(material->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL), nullptr);

    layer->removeObjectSelection(group.get());
    update();
    EXPECT_EQ(group->getStateSet(), material->getStateSet());
    EXPECT_EQ(materialOf(group.get()), material->getMaterial());

    // With its colour on again, the group drops the material from the state
    // set it holds.
    group->set_usecolor(true);
    update();
    EXPECT_EQ(lookOf(group.get()), "plain");
}
