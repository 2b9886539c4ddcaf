#include "viewing/ViewerTestSupport.h"

#include <iModelStage/viewing/iAdapterWidget.h>
#include <iModelStage/viewing/iOpenGLAdapterWidget.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWheelEvent>
#include <QWindow>

#include <osgGA/EventQueue>

#include <cstdlib>
#include <functional>
#include <vector>

namespace {

typedef osgGA::GUIEventAdapter Event;

// A surface that clears to a colour of the test's choosing and reads back
// what it drew, before the swap, from the back buffer.
class ProbeWidget : public iOpenGLAdapterWidget {
public:
    ProbeWidget() : iOpenGLAdapterWidget(nullptr) { }
    using iOpenGLAdapterWidget::initGL;

    void paintGL() override
    {
        ++paints;
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(clear[0], clear[1], clear[2], 1.0f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        gl->glReadPixels(2, 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    }
    void resizeGL(int width, int height) override
    {
        sizes.push_back(QSize(width, height));
        iOpenGLAdapterWidget::resizeGL(width, height);
    }
    void mouseEnterEvent() override { ++enters; }
    void mouseLeaveEvent() override { ++leaves; }

    float clear[3] = {0, 0, 0};
    unsigned char pixel[4] = {0, 0, 0, 0};
    int paints = 0;
    int enters = 0;
    int leaves = 0;
    std::vector<QSize> sizes;
};

std::vector<osg::ref_ptr<Event>> take(osgGA::EventQueue* queue)
{
    osgGA::EventQueue::Events events;
    queue->takeEvents(events);
    std::vector<osg::ref_ptr<Event>> out;
    for (auto const& event : events)
        if (Event* e = event->asGUIEventAdapter())
            if (e->getEventType() != Event::FRAME)
                out.push_back(e);
    return out;
}

void send(QObject* target, QEvent* event)
{
    QCoreApplication::sendEvent(target, event);
    delete event;
}

QMouseEvent* mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    return new QMouseEvent(type, at, at, at, button, held, modifiers);
}

QWheelEvent* wheel(QPoint delta)
{
    return new QWheelEvent(QPointF(5, 5), QPointF(5, 5), QPoint(), delta, Qt::NoButton, Qt::NoModifier,
                           Qt::NoScrollPhase, false);
}

class GLAdapterWidget : public testing::Test {
protected:
    void SetUp() override
    {
        widget.resize(160, 120);
        widget.show();
        ASSERT_TRUE(widget.initGL());
        ASSERT_NE(widget.getGLWindow(), nullptr);
        ASSERT_TRUE(processUntil([this] { return widget.getGLWindow()->isExposed(); }));
        surface = widget.getGLWindow();
        queue = widget.getGraphicsWindow()->getEventQueue();
        take(queue);
    }

    ProbeWidget widget;
    QWindow* surface = nullptr;
    osgGA::EventQueue* queue = nullptr;
};

} // namespace

TEST_F(GLAdapterWidget, PaintsRealFramesAndMergesRepaintRequests)
{
    widget.clear[0] = 1.0f;
    processUntil([this] { return widget.paints > 0; });
    int const before = widget.paints;
    widget.updateGL();
    widget.updateGL();
    widget.updateGL();
    ASSERT_TRUE(processUntil([&] { return widget.paints > before; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(widget.paints, before + 1);
    EXPECT_EQ(widget.pixel[0], 255);
    EXPECT_EQ(widget.pixel[1], 0);

    widget.clear[0] = 0.0f;
    widget.clear[2] = 1.0f;
    widget.updateGL();
    ASSERT_TRUE(processUntil([&] { return widget.pixel[2] == 255; }));
    EXPECT_EQ(widget.pixel[0], 0);
}

TEST_F(GLAdapterWidget, ButtonsWheelAndModifiersReachTheQueueInOrder)
{
    // Ctrl held over a move: the press after it carries the mask.
    send(surface, mouse(QEvent::MouseMove, QPointF(10.5, 20), Qt::NoButton, Qt::ControlModifier));
    send(surface, mouse(QEvent::MouseButtonPress, QPointF(11, 21), Qt::LeftButton, Qt::ControlModifier));
    send(surface, mouse(QEvent::MouseButtonRelease, QPointF(11, 21), Qt::LeftButton, Qt::NoModifier));
    // Shift pressed with no move before the click: the click goes without it.
    send(surface, mouse(QEvent::MouseButtonPress, QPointF(3, 4), Qt::RightButton, Qt::ShiftModifier));
    send(surface, mouse(QEvent::MouseButtonDblClick, QPointF(3, 4), Qt::RightButton, Qt::ShiftModifier));
    send(surface, mouse(QEvent::MouseButtonRelease, QPointF(3, 4), Qt::RightButton, Qt::AltModifier));
    send(surface, mouse(QEvent::MouseButtonPress, QPointF(3, 4), Qt::MiddleButton, Qt::NoModifier));
    send(surface, mouse(QEvent::MouseButtonPress, QPointF(3, 4), Qt::BackButton, Qt::NoModifier));

    auto events = take(queue);
    ASSERT_EQ(events.size(), 6u);
    EXPECT_EQ(events[0]->getEventType(), Event::MOVE);
    EXPECT_FLOAT_EQ(events[0]->getX(), 10.5f);
    EXPECT_EQ(events[0]->getModKeyMask(), 0);
    EXPECT_EQ(events[1]->getEventType(), Event::PUSH);
    EXPECT_EQ(events[1]->getButton(), Event::LEFT_MOUSE_BUTTON);
    EXPECT_EQ(events[1]->getModKeyMask(), 12);
    EXPECT_EQ(events[2]->getEventType(), Event::RELEASE);
    EXPECT_EQ(events[2]->getModKeyMask(), 12);
    EXPECT_EQ(events[3]->getEventType(), Event::PUSH);
    EXPECT_EQ(events[3]->getButton(), Event::RIGHT_MOUSE_BUTTON);
    EXPECT_EQ(events[3]->getModKeyMask(), 0);
    EXPECT_EQ(events[4]->getEventType(), Event::RELEASE);
    EXPECT_EQ(events[4]->getModKeyMask(), 3);
    EXPECT_EQ(events[5]->getButton(), Event::MIDDLE_MOUSE_BUTTON);
    EXPECT_EQ(events[5]->getModKeyMask(), 48);

    send(surface, wheel(QPoint(0, 0)));
    send(surface, wheel(QPoint(0, 120)));
    send(surface, wheel(QPoint(0, -120)));
    send(surface, wheel(QPoint(120, 0)));
    events = take(queue);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0]->getScrollingMotion(), Event::SCROLL_UP);
    EXPECT_EQ(events[1]->getScrollingMotion(), Event::SCROLL_DOWN);
    EXPECT_EQ(events[2]->getScrollingMotion(), Event::SCROLL_UP);
}

TEST_F(GLAdapterWidget, KeysGoThroughTheSharedTable)
{
    struct Row {
        int qtKey;
        int osgKey;
    };
    for (Row row : {Row{Qt::Key_Delete, 65385}, Row{Qt::Key_A, 'a'}, Row{Qt::Key_Z, 'z'}, Row{Qt::Key_7, '7'},
                    Row{Qt::Key_Space, 32}, Row{Qt::Key_Backspace, 65288}, Row{Qt::Key_Escape, 65307},
                    Row{Qt::Key_Return, 65293}, Row{Qt::Key_Enter, 65293}, Row{Qt::Key_F12, 65481}, Row{Qt::Key_F1, 0},
                    Row{Qt::Key_Tab, 0}, Row{Qt::Key_Plus, 0}}) {
        send(surface, new QKeyEvent(QEvent::KeyPress, row.qtKey, Qt::ShiftModifier));
        send(surface, new QKeyEvent(QEvent::KeyRelease, row.qtKey, Qt::ShiftModifier));
        auto const events = take(queue);
        ASSERT_EQ(events.size(), 2u) << row.qtKey;
        EXPECT_EQ(events[0]->getEventType(), Event::KEYDOWN);
        EXPECT_EQ(events[0]->getKey(), row.osgKey) << row.qtKey;
        EXPECT_EQ(events[1]->getEventType(), Event::KEYUP);
        EXPECT_EQ(events[1]->getKey(), row.osgKey) << row.qtKey;
        // Keys never write the modifier mask.
        EXPECT_EQ(events[0]->getModKeyMask(), 0);
    }
    EXPECT_EQ(iOpenGLAdapterWidget::keyMap().size(), 43u);

    // Auto-repeat: repeated presses, one release.
    send(surface, new QKeyEvent(QEvent::KeyPress, Qt::Key_B, Qt::NoModifier));
    send(surface, new QKeyEvent(QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier, QString(), true));
    send(surface, new QKeyEvent(QEvent::KeyPress, Qt::Key_B, Qt::NoModifier, QString(), true));
    send(surface, new QKeyEvent(QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier));
    auto const events = take(queue);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[2]->getEventType(), Event::KEYUP);

    // A second widget leaves the table as it is.
    std::map<int, int> const before = iOpenGLAdapterWidget::keyMap();
    ProbeWidget second;
    EXPECT_EQ(iOpenGLAdapterWidget::keyMap(), before);
}

TEST_F(GLAdapterWidget, ResizeReachesTheQueueTheGraphicsWindowAndTheSurface)
{
    widget.resize(200, 90);
    ASSERT_TRUE(processUntil([this] { return !widget.sizes.empty() && widget.sizes.back() == QSize(200, 90); }));
    EXPECT_EQ(surface->size(), QSize(200, 90));
    auto const events = take(queue);
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events.back()->getEventType(), Event::RESIZE);
    EXPECT_EQ(events.back()->getWindowWidth(), 200);
    EXPECT_EQ(events.back()->getWindowHeight(), 90);
    EXPECT_EQ(widget.getGraphicsWindow()->getTraits()->width, 200);

    widget.hide();
    EXPECT_FALSE(surface->isVisible());
    widget.show();
    EXPECT_TRUE(processUntil([this] { return surface->isVisible(); }));
}

TEST_F(GLAdapterWidget, HoverPollRepeatsWhileTheCursorStaysAndEndsWithOneLeave)
{
    QPoint const inside = surface->mapToGlobal(QPoint(80, 60));
    QCursor::setPos(inside);
    if (QCursor::pos() != inside)
        GTEST_SKIP() << "the display cannot move the cursor";
    send(surface, mouse(QEvent::MouseMove, QPointF(80, 60), Qt::NoButton, Qt::NoModifier));
    ASSERT_TRUE(processUntil([this] { return widget.enters >= 2; }));
    EXPECT_EQ(widget.leaves, 0);

    // Parked in the screen's far corner, where no test opens a window, so
    // that the real pointer never wanders into another test's surface.
    QCursor::setPos(QPoint(1279, 1023));
    ASSERT_TRUE(processUntil([this] { return widget.leaves == 1; }));
    int const enters = widget.enters;
    // The poll has stopped: a later turn of the loop brings nothing more.
    QDeadlineTimer quiet(1200);
    while (!quiet.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(widget.leaves, 1);
    EXPECT_EQ(widget.enters, enters);
    // Back where a fresh display keeps it, for the tests that follow.
    QCursor::setPos(QPoint(640, 512));
}

namespace {

class BoxWidget : public iAdapterWidget {
public:
    BoxWidget() : iAdapterWidget(nullptr) { }
    using iAdapterWidget::event;
};

} // namespace

TEST(AdapterWidget, InputAndTheHiddenSizeRule)
{
    // Only the variable's presence counts, and it is read once per process.
    setenv("IDOTWINE_BOX", "", 1);
    BoxWidget widget;
    widget.resize(100, 80);
    widget.show();
    EXPECT_EQ(widget.maximumSize(), QSize(16777215, 16777215));
    widget.hide();
    EXPECT_EQ(widget.maximumSize(), QSize(1, 1));
    unsetenv("IDOTWINE_BOX");
    widget.show();
    EXPECT_EQ(widget.maximumSize(), QSize(16777215, 16777215));
    widget.hide();
    EXPECT_EQ(widget.maximumSize(), QSize(1, 1));
    widget.show();

    osgGA::EventQueue* queue = widget.getGraphicsWindow()->getEventQueue();
    take(queue);
    send(&widget, mouse(QEvent::MouseMove, QPointF(5, 6), Qt::NoButton, Qt::ControlModifier));
    send(&widget, mouse(QEvent::MouseButtonPress, QPointF(5, 6), Qt::RightButton, Qt::NoModifier));
    send(&widget, wheel(QPoint(0, 0)));
    send(&widget, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier, "A"));
    send(&widget, new QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier));
    auto const events = take(queue);
    ASSERT_EQ(events.size(), 5u);
    EXPECT_EQ(events[1]->getButton(), Event::RIGHT_MOUSE_BUTTON);
    EXPECT_EQ(events[1]->getModKeyMask(), 12);
    EXPECT_EQ(events[2]->getScrollingMotion(), Event::SCROLL_UP);
    EXPECT_EQ(events[3]->getKey(), 'A');
    EXPECT_EQ(events[4]->getKey(), 0);
}
