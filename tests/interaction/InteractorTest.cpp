#include "interaction/InteractionTestSupport.h"

#include <iModelStage/model/iLayersManager.h>

#include <osg/io_utils>

INTERACTION_TEST_CLASSES

namespace {

class InteractorSteps : public testing::Test {
protected:
    void SetUp() override
    {
        tool = std::make_unique<iTwoPointsIA>();
        events.listen(tool->sigMessage, "msg");
        events.listen(tool->sigMoved, "moved");
        events.listen(tool->sigClicked, "clicked");
        events.listen(tool->sigReleased, "released");
        events.listen(tool->sigEnded, "ended");
        events.listen(tool->sigCancelled, "cancelled");
        events.listen(tool->sigClosed, "closed");
        events.listen(tool->sigChanged, "changed");
    }
    std::unique_ptr<iTwoPointsIA> tool;
    SignalLog events;
};

} // namespace

TEST_F(InteractorSteps, ClickMoveAndReleaseWalkTheStepsWithTheirPrompts)
{
    EXPECT_EQ(tool->getState(), 0);
    EXPECT_EQ(tool->getCurrentMessage(), QString("Primo punto"));

    tool->start();
    EXPECT_EQ(tool->getState(), 1);
    EXPECT_EQ(events.take(), (Log{"msg:Primo punto:0", "changed"}));

    tool->move(at(1, 0));
    EXPECT_FALSE(tool->getDragging());
    tool->click(at(1, 0));
    EXPECT_EQ(tool->getState(), 2);
    EXPECT_TRUE(tool->getClicked());
    tool->move(at(2, 0));
    EXPECT_TRUE(tool->getDragging());
    EXPECT_EQ(events.take(), (Log{"moved:1,0,0", "changed", "clicked:1,0,0", "changed", "msg:Primo punto:0",
                                  "moved:2,0,0", "changed"}));

    tool->release(at(2, 0));
    EXPECT_EQ(tool->getCurrentStep(), 1);
    EXPECT_EQ(tool->getState(), 2);
    EXPECT_FALSE(tool->getClicked());
    EXPECT_EQ(tool->getLastReleasedPos().getGlobalPos(), osg::Vec3f(2, 0, 0));
    EXPECT_EQ(iInteractor::getLastInputPos().getGlobalPos(), osg::Vec3f(2, 0, 0));
    EXPECT_EQ(events.take(), (Log{"released:2,0,0", "changed", "msg:Secondo punto:0"}));

    // The second click leaves the start of the run where the first put it.
    tool->click(at(3, 0));
    EXPECT_EQ(tool->getStartPos().getGlobalPos(), osg::Vec3f(1, 0, 0));
    events.take();
    tool->release(at(3, 0));
    EXPECT_EQ(events.take(), (Log{"released:3,0,0", "changed", "msg:Fatto:0", "ended"}));
    EXPECT_EQ(tool->getState(), 3);
    EXPECT_EQ(tool->getCurrentStep(), 0);
    EXPECT_FALSE(tool->getDragging());
    // The counter went back to 0 after the closing prompt.
    EXPECT_EQ(tool->getCurrentMessage(), QString("Primo punto"));

    // A run that ends without a release keeps the button down.
    tool->start();
    tool->click(at(4, 0));
    tool->end();
    EXPECT_TRUE(tool->getClicked());
}

TEST_F(InteractorSteps, CancelCloseAndGoBack)
{
    tool->start();
    tool->click(at(1, 0));
    tool->release(at(1, 0));
    tool->move(at(5, 0));
    events.take();

    // Back from step 1 to step 0: the tool is idle again, at its start.
    tool->goBack();
    EXPECT_EQ(tool->getState(), 0);
    EXPECT_EQ(tool->getCurrentStep(), 0);
    EXPECT_EQ(tool->getCurrentPos().getGlobalPos(), osg::Vec3f(1, 0, 0));
    EXPECT_EQ(events.take(), (Log{"msg:Primo punto:0"}));
    tool->goBack();
    EXPECT_EQ(tool->getState(), 0);

    // start copies the current position: the last one of the run before.
    tool->move(at(7, 0));
    tool->start();
    EXPECT_EQ(tool->getStartPos().getGlobalPos(), osg::Vec3f(7, 0, 0));
    tool->click(at(1, 0));
    tool->release(at(1, 0));
    events.take();
    tool->close();
    EXPECT_EQ(tool->getState(), 4);
    EXPECT_EQ(tool->getCurrentStep(), 1);
    EXPECT_EQ(events.take(), (Log{"msg:Secondo punto:0", "closed"}));

    tool->start();
    tool->click(at(1, 0));
    events.take();
    tool->cancel();
    EXPECT_EQ(tool->getState(), 5);
    EXPECT_EQ(events.take(), (Log{"msg:Primo punto:0", "cancelled"}));

    // A persistent tool resets instead.
    tool->setPersistent(true);
    tool->start();
    tool->click(at(1, 0));
    tool->release(at(1, 0));
    tool->cancel();
    EXPECT_EQ(tool->getState(), 0);
    EXPECT_EQ(tool->getCurrentStep(), 0);
}

TEST_F(InteractorSteps, StepCountsAndPromptLimits)
{
    // Without steps only close, cancel or setting the step to 0 ends it.
    tool->clearSteps();
    EXPECT_EQ(tool->getCurrentMessage(), QString());
    EXPECT_EQ(tool->getCurrentStepType(), iInteractor::iIATypeNone);
    tool->setNumSteps(0);
    tool->start();
    tool->click(at(0, 0));
    tool->release(at(0, 0));
    tool->release(at(0, 0));
    EXPECT_EQ(tool->getState(), 2);
    EXPECT_EQ(tool->getCurrentStep(), 2);
    tool->setCurrentStep(0);
    EXPECT_EQ(tool->getState(), 3);

    // Open-ended: three prompts at most, the first while working.
    tool->setNumSteps(-1);
    tool->setStepDefaultType(iInteractor::iIATypeVec2);
    for (char const* text : {"lavoro", "pronto", "terzo", "quarto"})
        tool->addStep(QString(text), iInteractor::iIATypeInt, osg::Vec3f());
    EXPECT_EQ(tool->getCurrentMessage(), QString("pronto"));
    EXPECT_EQ(tool->getCurrentStepType(), iInteractor::iIATypeVec2);
    tool->start();
    for (int i = 0; i < 5; ++i) {
        tool->click(at(0, 0));
        tool->release(at(0, 0));
    }
    EXPECT_EQ(tool->getState(), 2);
    EXPECT_EQ(tool->getCurrentMessage(), QString("lavoro"));
    tool->close();
    EXPECT_EQ(tool->getCurrentMessage(), QString("pronto"));

    // k steps hold k + 1 prompts; beyond the last the last one shows.
    tool->clearSteps();
    tool->setNumSteps(1);
    for (char const* text : {"uno", "fine", "oltre"})
        tool->addStep(QString(text), iInteractor::iIATypeDouble, osg::Vec3f());
    tool->setCurrentStep(5);
    EXPECT_EQ(tool->getCurrentMessage(), QString("fine"));
    EXPECT_EQ(tool->getCurrentStepType(), iInteractor::iIATypeDouble);
}

TEST_F(InteractorSteps, FlagsSignalAndContinuousStartKeepsTheStep)
{
    tool->setContinuos(true);
    tool->setLinked(true);
    EXPECT_EQ(events.take(), (Log{"changed", "changed"}));
    SignalLog flags;
    flags.listen(tool->sigContinuosChanged, "continuos");
    flags.listen(tool->sigLinkedChanged, "linked");
    tool->setContinuos(false);
    tool->setLinked(false);
    EXPECT_EQ(flags.take(), (Log{"continuos:0", "linked:0"}));

    tool->setContinuos(true);
    tool->start();
    tool->click(at(0, 0));
    tool->release(at(0, 0));
    tool->start();
    EXPECT_EQ(tool->getCurrentStep(), 1);
    tool->setContinuos(false);
    tool->start();
    EXPECT_EQ(tool->getCurrentStep(), 0);

    iStackedInteractor stacked;
    iImmediateInteractor immediate;
    EXPECT_TRUE(stacked.isStacked());
    EXPECT_TRUE(stacked.getAllowConstructionLines());
    EXPECT_TRUE(immediate.isImmediate());
    EXPECT_FALSE(immediate.getAllowConstructionLines());
    EXPECT_TRUE(iRoot::isClassOf("iImmediateInteractor", "iInteractor"));
    EXPECT_TRUE(iRoot::isClassOf("iStackedInteractor", "iInteractor"));
    EXPECT_TRUE(iRoot::isClassOf("iInteractor", "iRoot"));
}

TEST_F(InteractorSteps, InteractiveLayerFollowsTheGeometricsLayer)
{
    osg::ref_ptr<iGeometricsLayer> first = new iGeometricsLayer;
    osg::ref_ptr<iGeometricsLayer> second = new iGeometricsLayer;
    tool->setGeometricsLayer(first.get());
    EXPECT_TRUE(first->getInteractiveLayer()->containsNode(tool->getILayer()));
    tool->setGeometricsLayer(second.get());
    EXPECT_FALSE(first->getInteractiveLayer()->containsNode(tool->getILayer()));
    EXPECT_TRUE(second->getInteractiveLayer()->containsNode(tool->getILayer()));
    EXPECT_EQ(tool->getGeometricsLayer(), second.get());

    // Each start listens to the layer's selection once more.
    tool->start();
    tool->start();
    events.take();
    second->sigObjectsSelectionChanged();
    EXPECT_EQ(events.take(), (Log{"changed", "changed"}));

    EXPECT_FALSE(tool->lockGeometricLayer(true));
    EXPECT_TRUE(tool->isGeometryLayerLocked());
    EXPECT_TRUE(tool->lockGeometricLayer(false));

    osg::ref_ptr<osg::Group> feedback = tool->getILayer();
    tool.reset();
    EXPECT_FALSE(second->getInteractiveLayer()->containsNode(feedback.get()));
}

TEST(InteractorLayer, WithoutALayerOfItsOwnTheDocumentsIsFound)
{
    iLayersManager manager;
    manager.freeLayerObjects();
    iTwoPointsIA tool;
    EXPECT_EQ(tool.getGeometricsLayer(), nullptr);
    iNodeLayer* layer = iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer");
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(tool.getGeometricsLayer(), layer);
    manager.freeLayerObjects();
    EXPECT_EQ(tool.getGeometricsLayer(), nullptr);
}

TEST(InteractorMatrices, WithoutAViewerThePlaneIsTheWorld)
{
    iTwoPointsIA tool;
    EXPECT_EQ(tool.getLocalToWorldMatrix(), osg::Matrixd::identity());
    EXPECT_EQ(tool.getWorldToLocalMatrix(), osg::Matrixd::identity());

    // The frame's x runs along the direction and its z along the plane's
    // normal.
    osg::Matrixd const frame = tool.computeIPlaneMatrix(osg::Vec3f(1, 2, 3), osg::Vec3f(0, 5, 0));
    osg::Vec3d const origin = osg::Vec3d(0, 0, 0) * frame;
    osg::Vec3d const x = osg::Vec3d(1, 0, 0) * frame - origin;
    osg::Vec3d const y = osg::Vec3d(0, 1, 0) * frame - origin;
    osg::Vec3d const z = osg::Vec3d(0, 0, 1) * frame - origin;
    EXPECT_LT((origin - osg::Vec3d(1, 2, 3)).length(), 1e-9) << origin;
    EXPECT_LT((x - osg::Vec3d(0, 1, 0)).length(), 1e-9) << x;
    EXPECT_LT((y - osg::Vec3d(-1, 0, 0)).length(), 1e-9) << y;
    EXPECT_LT((z - osg::Vec3d(0, 0, 1)).length(), 1e-9) << z;

    EXPECT_EQ(tool.computeIPlaneMatrix(osg::Vec3f(1, 2, 3), osg::Vec3f()), osg::Matrixd::translate(1, 2, 3));
}
