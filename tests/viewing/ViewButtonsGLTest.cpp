#include "viewing/EventTestSupport.h"

#include <iModelStage/viewing/iViewerButtonsLayout.h>
#include <iModelStage/viewing/iViewerSliderButton.h>

#include <QImage>

namespace {

// What a slider button reported, one line per signal.
struct SliderLog : iSlot {
    void pressed(int x, int y) { log.push_back("pressed " + std::to_string(x) + "," + std::to_string(y)); }
    void moved(int x, int y, int dx, int dy)
    {
        log.push_back("moved " + std::to_string(x) + "," + std::to_string(y) + " by " + std::to_string(dx) + "," +
                      std::to_string(dy));
    }
    void released() { log.push_back("released"); }
    void stackChanged(std::string const& what) { log.push_back(what); }
    void pushed() { stackChanged("pushed"); }
    void popped() { stackChanged("popped"); }
    void changing() { stackChanged("changing"); }
    CallLog log;
};

typedef EventViewerGL ViewButtonsGL;

} // namespace

TEST_F(ViewButtonsGL, SliderDragKeepsReportingOffTheButtonUntilRelease)
{
    frame();
    QImage image(24, 24, QImage::Format_RGBA8888);
    image.fill(Qt::blue);
    osg::ref_ptr<iViewerSliderButton> slider = new iViewerSliderButton(&viewer, image);
    viewer.getButtonsLayout()->addButton(slider.get(), iViewerButtonsLayout::iButtonsBottomRight);
    SliderLog heard;
    slider->sigSliderPressed.connect(&heard, &SliderLog::pressed);
    slider->sigSliderMoved.connect(&heard, &SliderLog::moved);
    slider->sigReleased.connect(&heard, &SliderLog::released);
    // Right row: the last button ends a margin from the right edge.
    ASSERT_EQ(slider->getPosition(), osg::Vec2i(200 - 8 - 24, 8));
    take();

    tool->skipMoves = true;
    press(170, 10);
    mouse(QEvent::MouseMove, 150, 30, Qt::LeftButton);
    mouse(QEvent::MouseMove, 100, 60, Qt::LeftButton);
    // Another button while dragging belongs to the tool.
    press(100, 60, Qt::RightButton);
    release(100, 60, Qt::RightButton);
    release(100, 60);
    frame();
    EXPECT_EQ(heard.log, (CallLog{"pressed 170,10", "moved 170,10 by -20,20", "moved 150,30 by -50,30", "released"}));
    EXPECT_FALSE(slider->isDragging());
    EXPECT_EQ(viewer.getCapturedButton(), nullptr);
    // The press did not grow it, as a plain button's press does.
    EXPECT_FLOAT_EQ(float(slider->getScale().x()), 1.0f);
    EXPECT_EQ(take(), (CallLog{"release " + worldAt(100, 60)}));

    // The viewer's drag slots move whatever tool is current, by window
    // position; the release slot pops only its own navigation tool.
    viewer.slotPanInteractiveMoved(10, 20, 5, -5);
    EXPECT_EQ(tool->getCurrentPos().getWindowPos(), osg::Vec3f(15, 15, 0));
    viewer.slotPanInteractiveReleased();
    viewer.slotZoomAll();
    EXPECT_EQ(manager.getCurrentInteractor(), tool);
}

TEST_F(ViewButtonsGL, StackedToolTakesTheEventsUntilItIsCancelledAndPopped)
{
    frame();
    take();
    SliderLog stack;
    manager.sigPushed.connect(&stack, &SliderLog::pushed);
    manager.sigPopped.connect(&stack, &SliderLog::popped);
    manager.sigCurrentChanging.connect(&stack, &SliderLog::changing);

    CallLog upper;
    auto* second = new iRecordIA;
    second->log = &upper;
    second->skipMoves = true;
    ASSERT_TRUE(manager.pushInteractor(second, false));
    tool->skipMoves = true;
    press(40, 40);
    release(40, 40);
    key(Qt::Key_Escape);
    frame();
    EXPECT_EQ(upper, (CallLog{"start", "click " + worldAt(40, 40), "release " + worldAt(40, 40), "cancel",
                              "keyup 65307"}));
    manager.loop();
    // The pop hands the stack back to the tool beneath as a push.
    EXPECT_EQ(stack.log, (CallLog{"changing", "pushed", "popped", "changing", "pushed"}));
    EXPECT_EQ(manager.getCurrentInteractor(), tool);
    press(50, 50);
    frame();
    EXPECT_EQ(take(), (CallLog{"click " + worldAt(50, 50)}));
}

TEST_F(ViewButtonsGL, PersistentToolRestartsAtTheNextEventAfterItEnds)
{
    tool->setPersistent(true);
    frame();
    take();
    tool->skipMoves = true;
    for (int i = 0; i < 3; ++i) {
        press(60 + 20 * i, 100);
        release(60 + 20 * i, 100);
    }
    frame();
    EXPECT_EQ(tool->getState(), iInteractor::iIAStateEnded);
    EXPECT_EQ(take().size(), 6u);
    manager.loop();
    EXPECT_EQ(manager.getCurrentInteractor(), tool);
    EXPECT_EQ(tool->getState(), iInteractor::iIAStateIdle);
    tool->skipMoves = false;
    moveTo(30, 30);
    frame();
    CallLog const restart = take();
    ASSERT_GE(restart.size(), 3u);
    EXPECT_EQ(restart[0], "start");
    EXPECT_EQ(restart.back(), "move " + worldAt(30, 30));
}
