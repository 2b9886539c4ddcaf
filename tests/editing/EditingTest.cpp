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
    Names names{"stale"};
    {
        // A handler class whose row goes away, as when its library unloads.
        iRoot::iRootMapItem const row("iVanishingHandler", "iGeometryHandler", 1, nullptr,
                                      static_cast<iRoot::iRootMapItem::ReadFunction>(nullptr),
                                      static_cast<iRoot::iRootMapItem::WriteFunction>(nullptr));
        EXPECT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iBaseHandle", "iVanishingHandler"));
    }
    EXPECT_TRUE(iGeometryHandlerManager::getHandlerClasses("iBaseHandle", names));
    EXPECT_EQ(names, (Names{"iEditTestHandler", "iGeometryHandler"}));
    // A subclass does not inherit its parent's handlers.
    EXPECT_FALSE(iGeometryHandlerManager::getHandlerClasses("iPointHandle", names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(iGeometryHandlerManager::getHandlerClasses("iNoSuchGroup", names));
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
        ASSERT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iEditTestLine", "iEditTestHandler"));
        iEditTestHandler::log.clear();
        select = new iSelectIA;
        ASSERT_TRUE(manager.pushInteractor(select, false));
        line = new iEditTestLine;
        for (int i = 0; i < 5; ++i)
            line->getVertices()->push_back(osg::Vec3f(float(i), 0.0f, 0.0f));
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
    unsigned int handleCount() { return layer->getEditingLayer()->getObjectsRoot()->getNumChildren(); }
    iBaseHandle* handle(unsigned int i)
    {
        return dynamic_cast<iBaseHandle*>(layer->getEditingLayer()->getObjectsRoot()->getChild(i));
    }
    osg::Vec3f vertex(unsigned int i) { return (*line->getVertices())[i]; }
    bool excluded() { return iBaseSnap::getExclusionList().count(line) == 1; }
    // The tools and manipulators work on the document layer again.
    void expectBackOnDocumentLayer()
    {
        EXPECT_EQ(select->getGeometricsLayer(), layer);
        EXPECT_EQ(manager.getGeometricsLayer(), nullptr);
        EXPECT_EQ(iManipulatorsManager::getInstance()->getGeometricsLayer(), nullptr);
        EXPECT_FALSE(select->isGeometryLayerLocked());
        EXPECT_EQ(handleCount(), 0u);
        EXPECT_FALSE(excluded());
    }

    iInteractorManager manager;
    iSelectIA* select = nullptr;
    osg::ref_ptr<iEditTestLine> line;
    iEditingManager editing;
    Counter counter;
};

TEST_F(HandleEditing, UnsuitableStartKeepsTheFlagAndChangesNothing)
{
    auto* second = new iSelectIA;
    ASSERT_TRUE(manager.pushInteractor(second, false));
    editing.setEditing(true, "iEditTestHandler");
    EXPECT_TRUE(editing.getEditing());
    EXPECT_EQ(counter.begins, 0);
    EXPECT_EQ(second->getGeometricsLayer(), layer);
    EXPECT_EQ(manager.getGeometricsLayer(), nullptr);
    EXPECT_EQ(handleCount(), 0u);

    // Still on: a retry does nothing until the flag is cleared, quietly.
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
    iGeometricsLayer* edit = layer->getEditingLayer();
    EXPECT_EQ(editing.getWorkingLayer(), edit);
    EXPECT_EQ(manager.getGeometricsLayer(), edit);
    EXPECT_EQ(iManipulatorsManager::getInstance()->getGeometricsLayer(), edit);
    EXPECT_TRUE(select->isGeometryLayerLocked());
    EXPECT_TRUE(excluded());
    ASSERT_EQ(handleCount(), 5u);
    for (unsigned int i = 0; i < 5; ++i) {
        iBaseHandle* h = handle(i);
        EXPECT_STREQ(h->getClassName(), "iPointHandle");
        EXPECT_EQ(h->getIndex(), int(i));
        EXPECT_EQ(h->getPosition(), osg::Vec3f(10.0f + float(i), 0.0f, 0.0f));
        // Deletable as the handler says; never snapped to nor cloned.
        EXPECT_EQ(h->getFlags().to_ulong() & 0x214u, i == 0 ? 0u : 0x4u) << i;
    }
    EXPECT_EQ(iEditTestHandler::log, (Names{"init 0", "init 1", "init 2", "init 3", "init 4"}));

    // Any change of a handle's place reaches the vertex in the object's frame.
    iEditTestHandler::log.clear();
    handle(3)->setPosition(osg::Vec3f(13.0f, 2.0f, 0.0f));
    handle(1)->setWorldMatrix(osg::Matrixd::translate(11.0, -1.0, 0.5));
    EXPECT_EQ(vertex(3), osg::Vec3f(3.0f, 2.0f, 0.0f));
    EXPECT_EQ(vertex(1), osg::Vec3f(1.0f, -1.0f, 0.5f));
    EXPECT_EQ(iEditTestHandler::log, (Names{"set 3", "set 1"}));

    editing.setEditing(false, "");
    EXPECT_EQ(counter.ends, 1);
    EXPECT_TRUE(editing.getEditingData().empty());
    expectBackOnDocumentLayer();
}

TEST_F(HandleEditing, DeletingAHandleDeletesItsVertexOnceAndRenumbers)
{
    iEditTestHandler::undeletable = 0;
    editing.setEditing(true, "iEditTestHandler");
    ASSERT_EQ(handleCount(), 5u);
    iGeometricsLayer* edit = layer->getEditingLayer();
    osg::observer_ptr<iBaseHandle> removed = handle(2);
    osg::ref_ptr<iBaseHandle> fourth = handle(4);
    iEditTestHandler::log.clear();
    edit->addObjectSelection(removed.get());
    edit->removeSelectedObjects();
    EXPECT_FALSE(removed.valid());
    EXPECT_EQ(iEditTestHandler::log, (Names{"delete 2"}));
    ASSERT_EQ(line->getVertices()->size(), 4u);
    EXPECT_EQ(handle(2)->getIndex(), 2);
    EXPECT_EQ(fourth->getIndex(), 3);
    fourth->setPosition(osg::Vec3f(14.0f, 3.0f, 0.0f));
    EXPECT_EQ(vertex(3), osg::Vec3f(4.0f, 3.0f, 0.0f));

    // The handler refuses to delete the first.
    edit->addObjectSelection(handle(0));
    edit->removeSelectedObjects();
    EXPECT_EQ(handleCount(), 4u);
    // Ending the mode destroys the handles without deleting vertices.
    iEditTestHandler::log.clear();
    editing.setEditing(false, "");
    fourth = nullptr;
    EXPECT_EQ(iEditTestHandler::log, Names{});
    EXPECT_EQ(line->getVertices()->size(), 4u);
}

TEST_F(HandleEditing, WithoutAUsableHandlerTheModeRunsWithoutHandles)
{
    editing.setEditing(true, "iOtherHandler");
    EXPECT_EQ(counter.begins, 1);
    EXPECT_EQ(editing.getWorkingLayer(), layer->getEditingLayer());
    EXPECT_EQ(handleCount(), 0u);
    EXPECT_TRUE(excluded());
    editing.setEditing(false, "");
    expectBackOnDocumentLayer();

    // A handler that cannot edit the object.
    ASSERT_TRUE(iGeometryHandlerManager::registerGeometricHandler("iEditTestLine", "iGeometryHandler"));
    editing.setEditing(true, "iGeometryHandler");
    EXPECT_EQ(handleCount(), 0u);
    EXPECT_TRUE(editing.getEditingData().empty());
}

TEST_F(HandleEditing, AHandleClassThatCannotBeMadeGivesPointHandles)
{
    for (char const* name : {"iNoSuchHandle", "iTransformGroup", "iEditTestHandler"}) {
        iEditTestHandler::handleClass = name;
        editing.setEditing(true, "iEditTestHandler");
        ASSERT_EQ(handleCount(), 5u) << name;
        EXPECT_STREQ(handle(4)->getClassName(), "iPointHandle") << name;
        editing.setEditing(false, "");
    }
}

TEST_F(HandleEditing, UndoEndsEditingButStoringForUndoDoesNot)
{
    editing.setEditing(true, "iEditTestHandler");
    document->storeForUndo("Modifica");
    ASSERT_EQ(handleCount(), 5u);
    handle(4)->setPosition(osg::Vec3f(14.0f, 5.0f, 0.0f));
    EXPECT_EQ(vertex(4), osg::Vec3f(4.0f, 5.0f, 0.0f));

    ASSERT_TRUE(document->undo(1, true));
    EXPECT_FALSE(editing.getEditing());
    EXPECT_EQ(counter.ends, 1);
    expectBackOnDocumentLayer();
    line = dynamic_cast<iEditTestLine*>(layer->getObjectsRoot()->getChild(0));
    ASSERT_TRUE(line.valid());
    EXPECT_EQ(vertex(4), osg::Vec3f(4.0f, 0.0f, 0.0f));
}

osg::AutoTransform* glyphOf(iPointHandle* handle)
{
    handle->updateGeometry(true);
    auto* renderer = dynamic_cast<iGeometryRenderer*>(handle->getChild(0)->asGroup()->getChild(0));
    EXPECT_STREQ(renderer->getClassName(), "iPointHandleRenderer");
    return dynamic_cast<osg::AutoTransform*>(renderer->getChild(0));
}

TEST(PointHandleRenderer, HandlesShareOneGlyphInTheColourOfTheLastRebuilt)
{
    osg::ref_ptr<iPointHandle> first = new iPointHandle;
    osg::ref_ptr<iPointHandle> second = new iPointHandle;
    osg::AutoTransform* glyph = glyphOf(first.get());
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyphOf(second.get()), glyph);
    EXPECT_TRUE(glyph->getAutoScaleToScreen());
    ASSERT_EQ(glyph->getNumChildren(), 3u);
    osg::Geometry* square = glyph->getChild(0)->asGeode()->getDrawable(0)->asGeometry();
    EXPECT_EQ(square->getColorArray(), second->getSharedColorArray());
    glyphOf(first.get());
    EXPECT_EQ(square->getColorArray(), first->getSharedColorArray());
}

} // namespace
