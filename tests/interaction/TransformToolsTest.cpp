#include "interaction/InteractionTestSupport.h"
#include "support/GeometricsDocumentTest.h"

#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/interaction/iMirrorIA.h>
#include <iModelStage/interaction/iRotateIA.h>
#include <iModelStage/interaction/iScaleIA.h>
#include <iModelStage/interaction/iTranslateIA.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/model/iUndoRedoManager.h>

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

namespace {

bool sameMatrix(osg::Matrixd const& a, osg::Matrixd const& b)
{
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            if (std::abs(a(r, c) - b(r, c)) > 1e-9)
                return false;
    return true;
}

class TransformTools : public GeometricsDocumentTest {
protected:
    void SetUp() override
    {
        GeometricsDocumentTest::SetUp();
        if (HasFatalFailure())
            return;
        manager.setGeometricsLayer(layer);
        object = new iTransformGroup;
        object->setWorldMatrix(osg::Matrixd::translate(1.0, 2.0, 0.0));
        layer->addObject(object.get(), false);
        layer->addObjectSelection(object.get());
        start = object->getWorldMatrix();
        saved = save();
    }
    void TearDown() override
    {
        manager.slotCancelAllInteractors();
        GeometricsDocumentTest::TearDown();
    }
    std::string save()
    {
        iMemoryBuffer buffer;
        iOutStream stream(&buffer);
        document->saveToStream(stream);
        return buffer.str();
    }
    // Points given one after the other, each a press and release; the
    // tool sees a move to each point first.
    void points(iInteractor* tool, std::vector<osg::Vec3f> const& list, unsigned int modifiers = 0)
    {
        tool->setKeyModifiers(modifiers);
        tool->start();
        for (osg::Vec3f const& p : list) {
            tool->move(at(p.x(), p.y(), p.z()));
            tool->click(at(p.x(), p.y(), p.z()));
            tool->release(at(p.x(), p.y(), p.z()));
        }
    }
    // Undo gives back the document as it was, byte for byte.
    void expectOneUndoStep()
    {
        ASSERT_EQ(document->getUndoRedoManager()->getUndoList().size(), 1u);
        ASSERT_TRUE(document->undo(1, true));
        EXPECT_EQ(save(), saved);
    }
    // Undo rebuilds the document: the object is a new one, selected again.
    void refetch()
    {
        object = dynamic_cast<iTransformGroup*>(layer->getObjectsRoot()->getChild(0));
        ASSERT_NE(object, nullptr);
        layer->clearObjectSelection();
        layer->addObjectSelection(object.get());
    }
    unsigned int objectCount() { return layer->getObjectsRoot()->getNumChildren(); }

    iInteractorManager manager;
    osg::ref_ptr<iTransformGroup> object;
    osg::Matrixd start;
    std::string saved;
};

TEST_F(TransformTools, TranslateMovesByTheDifferenceOfItsPoints)
{
    auto* tool = new iTranslateIA;
    ASSERT_TRUE(manager.pushInteractor(tool, false));
    points(tool, {{1, 1, 0}, {4, -1, 2}});
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start * osg::Matrixd::translate(3.0, -2.0, 2.0)));
    EXPECT_EQ(objectCount(), 1u);
    EXPECT_EQ(tool->getState(), iInteractor::iIAStateEnded);
    expectOneUndoStep();
}

TEST_F(TransformTools, CtrlAtTheFirstReleaseMovesACopy)
{
    auto* tool = new iTranslateIA;
    ASSERT_TRUE(manager.pushInteractor(tool, false));
    points(tool, {{1, 1, 0}, {4, -1, 0}}, 1);
    EXPECT_TRUE(tool->get_makecopy());
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start));
    ASSERT_EQ(objectCount(), 2u);
    auto* copy = dynamic_cast<iTransformGroup*>(layer->getObjectsRoot()->getChild(1));
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, object.get());
    EXPECT_TRUE(sameMatrix(copy->getWorldMatrix(), start * osg::Matrixd::translate(3.0, -2.0, 0.0)));
    expectOneUndoStep();
    EXPECT_EQ(objectCount(), 1u);
}

TEST_F(TransformTools, EscapeDuringACopyLeavesTheSources)
{
    auto* tool = new iTranslateIA;
    ASSERT_TRUE(manager.pushInteractor(tool, false));
    tool->setKeyModifiers(1);
    tool->start();
    tool->click(at(0, 0));
    tool->release(at(0, 0));
    tool->move(at(5, 5));
    manager.cancelCurrentInteractor();
    manager.loop();
    EXPECT_EQ(objectCount(), 1u);
    EXPECT_EQ(save(), saved);
}

TEST_F(TransformTools, ScaleRotateAndMirrorChangeTheMatricesExactly)
{
    auto* scale = new iScaleIA;
    ASSERT_TRUE(manager.pushInteractor(scale, false));
    points(scale, {{1, 2, 0}, {3, 2.5f, 0}});
    osg::Matrixd const t = osg::Matrixd::translate(-1.0, -2.0, 0.0);
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(),
                           start * t * osg::Matrixd::scale(3.0, 1.5, 1.0) * osg::Matrixd::inverse(t)));
    expectOneUndoStep();
    manager.loop();
    refetch();

    auto* rotate = new iRotateIA;
    ASSERT_TRUE(manager.pushInteractor(rotate, false));
    points(rotate, {{1, 2, 0}, {2, 2, 0}, {1, 3, 0}});
    osg::Matrixd const quarter = t * osg::Matrixd::rotate(osg::PI_2, osg::Vec3d(0, 0, 1)) * osg::Matrixd::inverse(t);
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start * quarter));
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(save(), saved);
    manager.loop();
    refetch();

    auto* mirror = new iMirrorIA;
    ASSERT_TRUE(manager.pushInteractor(mirror, false));
    points(mirror, {{2, 0, 0}});
    osg::Matrixd const mx = osg::Matrixd::translate(-2.0, 0.0, 0.0) * osg::Matrixd::scale(-1.0, 1.0, 1.0) *
                            osg::Matrixd::translate(2.0, 0.0, 0.0);
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start * mx));
    // A new axis applies at once, at the last point.
    mirror->set_axis(1);
    osg::Matrixd const my = osg::Matrixd::translate(-2.0, 0.0, 0.0) * osg::Matrixd::scale(1.0, -1.0, 1.0) *
                            osg::Matrixd::translate(2.0, 0.0, 0.0);
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start * my));
    manager.closeCurrentInteractor();
    manager.loop();
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(save(), saved);
}

} // namespace
