#include "editing/EditingTestSupport.h"
#include "support/GeometricsDocumentTest.h"

#include <iModelStage/editing/iEditingManager.h>
#include <iModelStage/editing/iGeometryHandlerManager.h>
#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/editing/iPointHandle.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/snapping/iBaseSnap.h>

#include <osg/AutoTransform>
#include <osg/Material>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>

#include <cfloat>

I_EDIT_TEST_CLASSES

namespace {

typedef std::vector<std::string> Names;

TEST(GeometryHandlerManager, RegistersKnownClassesByExactNameInOrder)
{
    EXPECT_FALSE(iGeometryHandlerManager::registerGeometricHandler("iNoSuchGroup", "iEditTestHandler"));
    EXPECT_FALSE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iNoSuchHandler"));
    EXPECT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iEditTestHandler"));
    EXPECT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iGeometryHandler"));
    EXPECT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iEditTestHandler"));
    {
        // A handler class whose row goes away, as when its library unloads.
        iRoot::iRootMapItem const row("iVanishingHandler", "iGeometryHandler", 1, nullptr,
                                      static_cast<iRoot::iRootMapItem::ReadFunction>(nullptr),
                                      static_cast<iRoot::iRootMapItem::WriteFunction>(nullptr));
        EXPECT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iVanishingHandler"));
        Names names;
        EXPECT_TRUE(iGeometryHandlerManager::getHandlerClasses("iBaseHandle", names));
        EXPECT_EQ(names, (Names{"iEditTestHandler", "iGeometryHandler", "iVanishingHandler"}));
    }
    Names names{"stale"};
    EXPECT_TRUE(iGeometryHandlerManager::getHandlerClasses("iBaseHandle", names));
    EXPECT_EQ(names, (Names{"iEditTestHandler", "iGeometryHandler"}));
    // A subclass does not inherit its parent's handlers.
    EXPECT_FALSE(iGeometryHandlerManager::getHandlerClasses("iPointHandle", names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(iGeometryHandlerManager::getHandlerClasses("iNoSuchGroup", names));
    EXPECT_EQ(iGeometryHandlerManager::getInstance(), iGeometryHandlerManager::getInstance());
    EXPECT_NE(iGeometryHandlerManager::getInstance(), nullptr);
}

struct Counter : iSlot {
    void begin() { ++begins; }
    void end() { ++ends; }
    int begins = 0;
    int ends = 0;
};

// A document layer holding a polyline of five vertices at x = 10 to 14,
// selected, under a pick tool alone on the tool stack.
class HandleEditing : public GeometricsDocumentTest {
protected:
    void SetUp() override
    {
        GeometricsDocumentTest::SetUp();
        if (HasFatalFailure())
            return;
        iGeometryRendererManager::registerGeometricRenderer("iEditTestLine", "iEditTestLineRenderer", 1);
        ASSERT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iEditTestLine", "iEditTestHandler"));
        iEditTestHandler::log.clear();
        select = new iSelectIA;
        select->setPersistent(true);
        ASSERT_TRUE(manager.pushInteractor(select, false));
        line = new iEditTestLine;
        osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
        for (int i = 0; i < 5; ++i)
            points->push_back(osg::Vec3f(float(i), 0.0f, 0.0f));
        line->setVertices(*points);
        line->setPosition(osg::Vec3f(10.0f, 0.0f, 0.0f));
        layer->addObject(line.get(), false);
        layer->addObjectSelection(line.get());
        editing.sigEditingBegin.connect(&counter, &Counter::begin);
        editing.sigEditingEnd.connect(&counter, &Counter::end);
    }
    void TearDown() override
    {
        editing.setEditing(false, "");
        iEditTestHandler::undeletable = -1;
        iEditTestHandler::handleClass = "iPointHandle";
        GeometricsDocumentTest::TearDown();
    }
    iGeometricsLayer* editingLayer() { return layer->getEditingLayer(); }
    unsigned int handleCount() { return editingLayer()->getObjectsRoot()->getNumChildren(); }
    iBaseHandle* handle(unsigned int i)
    {
        return dynamic_cast<iBaseHandle*>(editingLayer()->getObjectsRoot()->getChild(i));
    }
    bool excluded(osg::Node* node) { return iBaseSnap::getExclusionList().count(node) == 1; }
    // The tools and manipulators work on the document layer again.
    void expectBackOnDocumentLayer()
    {
        EXPECT_EQ(select->getGeometricsLayer(), layer);
        EXPECT_EQ(manager.getGeometricsLayer(), nullptr);
        EXPECT_EQ(iManipulatorsManager::getInstance()->getGeometricsLayer(), nullptr);
        EXPECT_FALSE(select->isGeometryLayerLocked());
        EXPECT_EQ(handleCount(), 0u);
    }

    iInteractorManager manager;
    iSelectIA* select = nullptr;
    osg::ref_ptr<iEditTestLine> line;
    iEditingManager editing;
    Counter counter;
};

TEST_F(HandleEditing, UnsuitableStartKeepsTheFlagAndChangesNothing)
{
    // A second tool on the stack.
    auto* second = new iSelectIA;
    ASSERT_TRUE(manager.pushInteractor(second, false));
    editing.setEditing(true, "iEditTestHandler");
    EXPECT_TRUE(editing.getEditing());
    EXPECT_EQ(counter.begins, 0);
    EXPECT_EQ(editing.getWorkingLayer(), nullptr);
    EXPECT_EQ(second->getGeometricsLayer(), layer);
    EXPECT_EQ(manager.getGeometricsLayer(), nullptr);
    EXPECT_EQ(handleCount(), 0u);
    EXPECT_FALSE(excluded(line.get()));

    // Still on: a retry does nothing until the flag is cleared.
    manager.popInteractor();
    editing.setEditing(true, "iEditTestHandler");
    EXPECT_EQ(counter.begins, 0);
    editing.setEditing(false, "");
    EXPECT_FALSE(editing.getEditing());
    EXPECT_EQ(counter.ends, 0);
    editing.setEditing(true, "iEditTestHandler");
    EXPECT_EQ(counter.begins, 1);
    EXPECT_EQ(handleCount(), 5u);
}

TEST_F(HandleEditing, HandlesStandOnTheVerticesAndMoveThem)
{
    iEditTestHandler::undeletable = 0;
    editing.setEditing(true, "iEditTestHandler");
    ASSERT_TRUE(editing.getEditing());
    EXPECT_EQ(counter.begins, 1);
    iGeometricsLayer* edit = editingLayer();
    EXPECT_EQ(editing.getWorkingLayer(), edit);
    EXPECT_EQ(select->getGeometricsLayer(), edit);
    EXPECT_EQ(manager.getGeometricsLayer(), edit);
    EXPECT_EQ(iManipulatorsManager::getInstance()->getGeometricsLayer(), edit);
    EXPECT_TRUE(select->isGeometryLayerLocked());
    EXPECT_TRUE(excluded(line.get()));

    ASSERT_EQ(handleCount(), 5u);
    for (unsigned int i = 0; i < 5; ++i) {
        iBaseHandle* h = handle(i);
        ASSERT_NE(h, nullptr);
        EXPECT_STREQ(h->getClassName(), "iPointHandle");
        EXPECT_EQ(h->getIndex(), int(i));
        EXPECT_EQ(h->getPosition(), osg::Vec3f(10.0f + float(i), 0.0f, 0.0f));
        std::bitset<32> const flags = h->getFlags();
        EXPECT_EQ(flags.test(2), i != 0) << i;
        EXPECT_FALSE(flags.test(4));
        EXPECT_FALSE(flags.test(9));
        EXPECT_EQ(h->getColor(), osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
    }
    EXPECT_EQ(iEditTestHandler::log, (Names{"init 0", "init 1", "init 2", "init 3", "init 4"}));

    // Any change of a handle's place reaches the vertex in the object's frame.
    iEditTestHandler::log.clear();
    handle(3)->setPosition(osg::Vec3f(13.0f, 2.0f, 0.0f));
    EXPECT_EQ((*line->getVertices())[3], osg::Vec3f(3.0f, 2.0f, 0.0f));
    handle(1)->setWorldMatrix(osg::Matrixd::translate(11.0, -1.0, 0.5));
    EXPECT_EQ((*line->getVertices())[1], osg::Vec3f(1.0f, -1.0f, 0.5f));
    EXPECT_EQ(iEditTestHandler::log, (Names{"set 3", "set 1"}));

    editing.setEditing(false, "");
    EXPECT_FALSE(editing.getEditing());
    EXPECT_EQ(counter.ends, 1);
    EXPECT_FALSE(excluded(line.get()));
    EXPECT_TRUE(editing.getEditingData().empty());
    expectBackOnDocumentLayer();
}

TEST_F(HandleEditing, DeletingAHandleDeletesItsVertexOnceAndRenumbers)
{
    iEditTestHandler::undeletable = 0;
    editing.setEditing(true, "iEditTestHandler");
    ASSERT_EQ(handleCount(), 5u);
    iGeometricsLayer* edit = editingLayer();
    osg::observer_ptr<iBaseHandle> second = handle(2);
    osg::ref_ptr<iBaseHandle> third = handle(3);
    osg::ref_ptr<iBaseHandle> fourth = handle(4);
    iEditTestHandler::log.clear();

    edit->addObjectSelection(second.get());
    edit->removeSelectedObjects();
    EXPECT_FALSE(second.valid()) << "the handle outlives its removal";
    EXPECT_EQ(iEditTestHandler::log, (Names{"delete 2"}));
    ASSERT_EQ(line->getVertices()->size(), 4u);
    EXPECT_EQ((*line->getVertices())[2], osg::Vec3f(3.0f, 0.0f, 0.0f));
    EXPECT_EQ(third->getIndex(), 2);
    EXPECT_EQ(fourth->getIndex(), 3);
    ASSERT_EQ(editing.getEditingData().size(), 1u);
    EXPECT_EQ(editing.getEditingData()[0]->getHandles().size(), 4u);

    // The renumbered handle edits the vertex it now stands for.
    fourth->setPosition(osg::Vec3f(14.0f, 3.0f, 0.0f));
    EXPECT_EQ((*line->getVertices())[3], osg::Vec3f(4.0f, 3.0f, 0.0f));

    // A handle the handler will not delete is not deletable.
    iEditTestHandler::log.clear();
    edit->addObjectSelection(handle(0));
    edit->removeSelectedObjects();
    EXPECT_EQ(handleCount(), 4u);
    EXPECT_EQ(line->getVertices()->size(), 4u);

    // Ending the mode destroys the handles without deleting vertices.
    editing.setEditing(false, "");
    third = nullptr;
    fourth = nullptr;
    EXPECT_EQ(iEditTestHandler::log, Names{});
    EXPECT_EQ(line->getVertices()->size(), 4u);
}

TEST_F(HandleEditing, WithoutAUsableHandlerTheModeRunsWithoutHandles)
{
    // No handler of that name for the class.
    editing.setEditing(true, "iOtherHandler");
    EXPECT_TRUE(editing.getEditing());
    EXPECT_EQ(counter.begins, 1);
    EXPECT_EQ(editing.getWorkingLayer(), editingLayer());
    EXPECT_EQ(handleCount(), 0u);
    EXPECT_TRUE(excluded(line.get()));
    editing.setEditing(false, "");
    expectBackOnDocumentLayer();

    // A handler that cannot edit the object.
    ASSERT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iEditTestLine", "iGeometryHandler"));
    editing.setEditing(true, "iGeometryHandler");
    EXPECT_EQ(handleCount(), 0u);
    EXPECT_TRUE(editing.getEditingData().empty());
    EXPECT_EQ(editing.getEditedObjects().size(), 1u);
}

TEST_F(HandleEditing, AHandleClassThatCannotBeMadeGivesPointHandles)
{
    for (char const* name : {"iNoSuchHandle", "iTransformGroup", "iEditTestHandler"}) {
        iEditTestHandler::handleClass = name;
        editing.setEditing(true, "iEditTestHandler");
        ASSERT_EQ(handleCount(), 5u) << name;
        for (unsigned int i = 0; i < 5; ++i)
            EXPECT_STREQ(handle(i)->getClassName(), "iPointHandle") << name;
        editing.setEditing(false, "");
    }
}

TEST_F(HandleEditing, UndoEndsEditingButStoringForUndoDoesNot)
{
    editing.setEditing(true, "iEditTestHandler");
    document->storeForUndo("Modifica");
    EXPECT_TRUE(editing.getEditing());
    ASSERT_EQ(handleCount(), 5u);
    handle(4)->setPosition(osg::Vec3f(14.0f, 5.0f, 0.0f));
    EXPECT_EQ((*line->getVertices())[4], osg::Vec3f(4.0f, 5.0f, 0.0f));

    ASSERT_TRUE(document->undo(1, true));
    EXPECT_FALSE(editing.getEditing());
    EXPECT_EQ(counter.ends, 1);
    expectBackOnDocumentLayer();
    auto* restored = dynamic_cast<iEditTestLine*>(layer->getObjectsRoot()->getChild(0));
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ((*restored->getVertices())[4], osg::Vec3f(4.0f, 0.0f, 0.0f));
}

// The glyph's parts, as found below a rebuilt handle.
struct GlyphParts {
    explicit GlyphParts(iPointHandle* handle)
    {
        handle->updateGeometry(true);
        osg::Group* container = handle->getChild(0)->asGroup();
        renderer = dynamic_cast<iGeometryRenderer*>(container->getChild(0));
        transform = dynamic_cast<osg::AutoTransform*>(renderer->getChild(0));
        square = transform->getChild(0)->asGeode();
        outline = transform->getChild(1)->asGeode();
        pick = transform->getChild(2)->asGeode();
    }
    iGeometryRenderer* renderer = nullptr;
    osg::AutoTransform* transform = nullptr;
    osg::Geode* square = nullptr;
    osg::Geode* outline = nullptr;
    osg::Geode* pick = nullptr;
};

osg::Geometry* geometryOf(osg::Geode* geode)
{
    return geode->getDrawable(0)->asGeometry();
}

TEST(PointHandleRenderer, AllHandlesShareOneScreenSizedGlyph)
{
    osg::ref_ptr<iPointHandle> first = new iPointHandle;
    osg::ref_ptr<iPointHandle> second = new iPointHandle;
    first->setColor(osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f));
    GlyphParts const a(first.get());
    GlyphParts const b(second.get());
    // The library registers the renderer for the class.
    ASSERT_NE(a.renderer, nullptr);
    EXPECT_STREQ(a.renderer->getClassName(), "iPointHandleRenderer");
    ASSERT_NE(a.renderer, b.renderer);
    ASSERT_NE(a.transform, nullptr);
    EXPECT_EQ(a.transform, b.transform);
    EXPECT_EQ(a.transform->getNumChildren(), 3u);
    EXPECT_EQ(a.transform->getAutoRotateMode(), osg::AutoTransform::ROTATE_TO_SCREEN);
    EXPECT_TRUE(a.transform->getAutoScaleToScreen());
    EXPECT_EQ(a.transform->getMinimumScale(), 0.0);
    EXPECT_EQ(a.transform->getMaximumScale(), double(FLT_MAX));

    // The square takes the colour of the handle rebuilt last.
    osg::Geometry* square = geometryOf(a.square);
    EXPECT_EQ(square->getColorArray(), second->getSharedColorArray());
    first->updateGeometry(true);
    EXPECT_EQ(square->getColorArray(), first->getSharedColorArray());
    EXPECT_EQ(square->getColorArray()->getBinding(), osg::Array::BIND_OVERALL);

    auto const* corners = dynamic_cast<osg::Vec3Array const*>(square->getVertexArray());
    ASSERT_NE(corners, nullptr);
    EXPECT_EQ(std::vector<osg::Vec3f>(corners->begin(), corners->end()),
              (std::vector<osg::Vec3f>{{-3, -3, 0}, {3, -3, 0}, {3, 3, 0}, {-3, 3, 0}}));
    auto const* quad = dynamic_cast<osg::DrawElementsUInt const*>(square->getPrimitiveSet(0));
    ASSERT_NE(quad, nullptr);
    EXPECT_EQ(quad->getMode(), GLenum(GL_QUADS));
    EXPECT_EQ(std::vector<GLuint>(quad->begin(), quad->end()), (std::vector<GLuint>{0, 1, 2, 3}));
    EXPECT_EQ(square->getNormalBinding(), osg::Array::BIND_OVERALL);
    osg::StateSet const* squareState = a.square->getStateSet();
    auto const* offset = dynamic_cast<osg::PolygonOffset const*>(
        squareState->getAttribute(osg::StateAttribute::POLYGONOFFSET));
    ASSERT_NE(offset, nullptr);
    EXPECT_EQ(offset->getFactor(), 1.0f);
    EXPECT_EQ(offset->getUnits(), 1.0f);
    EXPECT_EQ(squareState->getMode(GL_POLYGON_OFFSET_FILL), osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);

    osg::Geometry* outline = geometryOf(a.outline);
    EXPECT_EQ(outline->getVertexArray()->getNumElements(), 8u);
    EXPECT_EQ(outline->getPrimitiveSet(0)->getNumIndices(), 4u);
    osg::StateSet const* outlineState = a.outline->getStateSet();
    auto const* mode = dynamic_cast<osg::PolygonMode const*>(
        outlineState->getAttribute(osg::StateAttribute::POLYGONMODE));
    ASSERT_NE(mode, nullptr);
    EXPECT_EQ(mode->getMode(osg::PolygonMode::FRONT), osg::PolygonMode::LINE);
    EXPECT_EQ(mode->getMode(osg::PolygonMode::BACK), osg::PolygonMode::LINE);
    auto const* material = dynamic_cast<osg::Material const*>(
        outlineState->getAttribute(osg::StateAttribute::MATERIAL));
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->getColorMode(), osg::Material::OFF);
    EXPECT_EQ(material->getDiffuse(osg::Material::BACK), osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(material->getEmission(osg::Material::FRONT), osg::Vec4f(0.15f, 0.15f, 0.15f, 1.0f));
    EXPECT_EQ(outlineState->getMode(GL_LIGHTING), osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(outlineState->getTextureMode(0, GL_TEXTURE_2D), osg::StateAttribute::OVERRIDE);

    // Snapping passes over the glyph; the pick point stays.
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(a.square, 4));
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(a.outline, 4));
    osg::Geometry* pick = geometryOf(a.pick);
    EXPECT_EQ(pick->getVertexArray()->getNumElements(), 1u);
    EXPECT_EQ(pick->getPrimitiveSet(0)->getMode(), GLenum(GL_POINTS));
}

} // namespace
