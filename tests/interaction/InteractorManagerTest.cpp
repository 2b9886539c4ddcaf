#include "interaction/InteractionTestSupport.h"

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/snapping/iBaseSnap.h>

namespace {

// Records what the manager clears in the application's input line.
class iLineHandler : public iInteractorInputHandler {
public:
    using iInteractorInputHandler::dataAccepted;
    void setDefaultData(std::string const& text) override { cleared.push_back("default:" + text); }
    Log cleared;
};

class InteractorManagerTest : public testing::Test {
protected:
    void SetUp() override
    {
        layer = new iGeometricsLayer;
        events.listen(manager.sigPushed, "pushed");
        events.listen(manager.sigPopped, "popped");
        events.listen(manager.sigCurrentChanging, "changing");
        events.listen(manager.sigMessage, "msg");
    }
    template <class T>
    T* tool(bool* destroyed = nullptr)
    {
        T* made = new T;
        made->setGeometricsLayer(layer.get());
        made->destroyed = destroyed;
        return made;
    }
    void walk(iInteractor* interactor, int releases)
    {
        interactor->start();
        for (int i = 0; i < releases; ++i) {
            interactor->click(at(float(i), 0));
            interactor->release(at(float(i), 0));
        }
    }

    osg::ref_ptr<iGeometricsLayer> layer;
    iInteractorManager manager;
    SignalLog events;
};

} // namespace

TEST_F(InteractorManagerTest, PushStackedToolAndLoopPopsItBackToTheOneBeneath)
{
    EXPECT_EQ(iInteractorManager::getInteractorManager(), &manager);
    auto* first = tool<iTwoPointsIA>();
    ASSERT_TRUE(manager.pushInteractor(first, false));
    EXPECT_EQ(first->inits, 1);
    EXPECT_EQ(first->getState(), 0); // not started by the push
    EXPECT_EQ(manager.getCurrentInteractor(), first);
    EXPECT_EQ(manager.getCount(), 1);
    EXPECT_TRUE(layer->getInteractiveLayer()->containsNode(first->getILayer()));
    EXPECT_EQ(events.take(), (Log{"changing", "msg:Primo punto:0", "pushed"}));

    walk(first, 1);
    auto* zoom = new iStackedTestIA;
    zoom->setGeometricsLayer(layer.get());
    zoom->setSnapBevahior(iBaseSnap::iOrthoSnapProject);
    events.take();
    ASSERT_TRUE(manager.pushInteractor(zoom, true));
    EXPECT_EQ(iBaseSnap::getOrthoSnapBevahior(), iBaseSnap::iOrthoSnapProject);
    EXPECT_EQ(first->getState(), 2); // left working beneath
    EXPECT_EQ(manager.getCount(), 2);
    EXPECT_EQ(events.take(), (Log{"changing", "msg:0", "pushed"}));

    // A second one of the same class while the first is current is refused.
    auto* again = new iStackedTestIA;
    again->setGeometricsLayer(layer.get());
    EXPECT_FALSE(manager.pushInteractor(again, false));
    EXPECT_EQ(manager.getCount(), 2);
    EXPECT_TRUE(events.take().empty());

    walk(zoom, 1);
    EXPECT_EQ(zoom->getState(), 3);
    events.take();
    osg::ref_ptr<osg::Group> feedback = zoom->getILayer();
    feedback->addChild(new osg::Group);
    manager.loop();
    EXPECT_EQ(events.take(), (Log{"popped", "changing", "msg:Secondo punto:0", "pushed"}));
    EXPECT_EQ(manager.getCurrentInteractor(), first);
    EXPECT_EQ(iBaseSnap::getOrthoSnapBevahior(), iBaseSnap::iOrthoSnapFree);
    EXPECT_EQ(first->getState(), 2);
    EXPECT_EQ(feedback->getNumChildren(), 0u);
    EXPECT_FALSE(layer->getInteractiveLayer()->containsNode(feedback.get()));

    // The tool's prompts reach the application through the manager.
    first->emitMessage(QString("No"), iInteractor::iIAMessageError);
    EXPECT_EQ(events.take(), (Log{"msg:No:1"}));
}

TEST_F(InteractorManagerTest, ReplaceCancelsTheCurrentToolAndAPersistentOneComesBack)
{
    bool firstGone = false;
    auto* bottom = tool<iTwoPointsIA>();
    bottom->setPersistent(true);
    ASSERT_TRUE(manager.pushInteractor(bottom, true));
    walk(bottom, 1);

    auto* command = tool<iOtherPointsIA>(&firstGone);
    events.take();
    ASSERT_TRUE(manager.pushInteractor(command, true));
    // The persistent tool reset on cancel and refused the pop.
    EXPECT_EQ(bottom->getState(), 0);
    EXPECT_EQ(manager.getCount(), 2);
    EXPECT_EQ(events.take(), (Log{"msg:Secondo punto:0", "changing", "msg:Primo punto:0", "pushed"}));

    // A non-persistent tool beneath is cancelled, popped and deleted.
    bool secondGone = false;
    auto* next = tool<iTwoPointsIA>(&secondGone);
    events.take();
    ASSERT_TRUE(manager.pushInteractor(next, true));
    EXPECT_TRUE(firstGone);
    EXPECT_EQ(manager.getCount(), 2);
    EXPECT_EQ(events.take(), (Log{"msg:Primo punto:0", "popped", "changing", "msg:Primo punto:0", "pushed",
                                  "changing", "msg:Primo punto:0", "pushed"}));

    // Escape: cancelled now, gone at the next loop, and the bottom is back.
    walk(next, 1);
    manager.cancelCurrentInteractor();
    EXPECT_EQ(next->getState(), 5);
    EXPECT_FALSE(secondGone);
    manager.loop();
    EXPECT_TRUE(secondGone);
    EXPECT_EQ(manager.getCurrentInteractor(), bottom);

    // The persistent tool restarts after its end and stays after close.
    walk(bottom, 2);
    EXPECT_EQ(bottom->getState(), 3);
    manager.loop();
    EXPECT_EQ(bottom->getState(), 0);
    manager.closeCurrentInteractor();
    manager.loop();
    EXPECT_EQ(bottom->getState(), 4);
    EXPECT_EQ(manager.getCurrentInteractor(), bottom);
    manager.popInteractor();
    EXPECT_EQ(manager.getCount(), 1);
}

TEST_F(InteractorManagerTest, LoopRedrawsWhenAskedAndRestartsAContinuousTool)
{
    auto* draw = tool<iTwoPointsIA>();
    draw->setContinuos(true);
    draw->setPersistent(true); // continuos wins
    ASSERT_TRUE(manager.pushInteractor(draw, false));
    manager.loop();
    EXPECT_EQ(draw->updates, 0); // idle: nothing to draw
    draw->start();
    manager.loop();
    manager.loop();
    EXPECT_EQ(draw->updates, 1);
    draw->update();
    manager.loop();
    EXPECT_EQ(draw->updates, 2);

    SignalLog moves;
    moves.listen(manager.sigMoved, "moved");
    moves.listen(manager.sigClicked, "clicked");
    moves.listen(manager.sigReleased, "released");
    draw->click(at(1, 2));
    draw->release(at(1, 2));
    draw->click(at(3, 4));
    draw->release(at(3, 4));
    EXPECT_EQ(draw->getState(), 3);
    manager.loop();
    EXPECT_EQ(draw->getState(), 1);
    EXPECT_EQ(draw->getCurrentStep(), 0);
    EXPECT_EQ(moves.take(), (Log{"clicked:1,2,0", "released:1,2,0", "clicked:3,4,0", "released:3,4,0",
                                 "moved:3,4,0"}));
}

TEST_F(InteractorManagerTest, ImmediateToolRunsAtOnceAndLeavesNothingBehind)
{
    bool gone = false;
    auto* zoomAll = tool<iImmediateTestIA>(&gone);
    ASSERT_TRUE(manager.pushInteractor(zoomAll, false));
    EXPECT_TRUE(gone);
    EXPECT_EQ(manager.getCurrentInteractor(), nullptr);
    EXPECT_EQ(manager.getCount(), 0);
    EXPECT_EQ(layer->getInteractiveLayer()->getNumChildren(), 0u);
    EXPECT_EQ(events.take(), (Log{"changing", "msg:0", "msg:0", "msg:0", "popped", "changing"}));
    manager.loop(); // nothing left to touch

    auto* below = tool<iTwoPointsIA>();
    ASSERT_TRUE(manager.pushInteractor(below, false));
    walk(below, 1);
    gone = false;
    zoomAll = tool<iImmediateTestIA>(&gone);
    events.take();
    ASSERT_TRUE(manager.pushInteractor(zoomAll, false));
    EXPECT_TRUE(gone);
    EXPECT_EQ(manager.getCurrentInteractor(), below);
    EXPECT_EQ(below->getState(), 2);
    EXPECT_EQ(events.take(), (Log{"changing", "msg:0", "msg:0", "msg:0", "popped", "changing", "msg:Secondo punto:0"}));
}

TEST_F(InteractorManagerTest, NoLayerNoPushAndTheCallerKeepsTheTool)
{
    ASSERT_EQ(iLayersManager::getLayer("iGeometricsLayer"), nullptr);
    bool gone = false;
    iTwoPointsIA* orphan = new iTwoPointsIA;
    orphan->destroyed = &gone;
    EXPECT_FALSE(manager.pushInteractor(orphan, true));
    EXPECT_FALSE(gone);
    EXPECT_EQ(orphan->inits, 0);
    delete orphan;
    EXPECT_FALSE(manager.pushInteractor(nullptr, false));

    // popInteractor on an empty stack is harmless.
    manager.popInteractor();
    EXPECT_EQ(events.take(), (Log{"changing"}));
}

TEST_F(InteractorManagerTest, InputLineIsClearedOnReleaseCancelAndCloseAndDocumentResetCancels)
{
    iLineHandler line;
    manager.setInputHandler(&line);
    auto* current = tool<iTwoPointsIA>();
    ASSERT_TRUE(manager.pushInteractor(current, false));
    walk(current, 1);
    EXPECT_EQ(line.cleared, (Log{"default:"}));
    manager.closeCurrentInteractor();
    manager.cancelCurrentInteractor();
    EXPECT_EQ(line.cleared.size(), 3u);

    EXPECT_FALSE(line.isBusy());
    line.setBusy(true);
    EXPECT_TRUE(line.isBusy());

    iLayersManager document;
    manager.setLayersManager(&document);
    manager.setLayersManager(&document); // connected once only
    EXPECT_EQ(manager.getLayersManager(), &document);
    current->start();
    document.emptyAllLayers();
    EXPECT_EQ(current->getState(), 5);
    EXPECT_EQ(line.cleared.size(), 4u);
    manager.setLayersManager(nullptr);
    current->start();
    document.emptyAllLayers();
    EXPECT_EQ(current->getState(), 1);
    manager.setInputHandler(nullptr);
}

TEST(InteractorManagerLifetime, DestructionDeletesTheStackAndTheInstance)
{
    osg::ref_ptr<iGeometricsLayer> layer = new iGeometricsLayer;
    bool gone = false;
    {
        iInteractorManager manager;
        auto* persistent = new iTwoPointsIA;
        persistent->setGeometricsLayer(layer.get());
        persistent->setPersistent(true);
        persistent->destroyed = &gone;
        ASSERT_TRUE(manager.pushInteractor(persistent, false));
    }
    EXPECT_TRUE(gone);
    EXPECT_EQ(iInteractorManager::getInteractorManager(), nullptr);
    EXPECT_EQ(layer->getInteractiveLayer()->getNumChildren(), 0u);
}
