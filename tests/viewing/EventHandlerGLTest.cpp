#include "viewing/EventTestSupport.h"

#include <iModelStage/dimensioning/iPointQuote.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/interaction/iInteractorInputHandler.h>
#include <iModelStage/snapping/iBaseSnap.h>
#include <iModelStage/viewing/iViewerButton.h>
#include <iModelStage/viewing/iViewerButtonsLayout.h>

#include <QImage>

I_DEFINE_CLASS(iRecordIA)

namespace {

// Pulls every point to (3, 4, 0), without looking at any geometry.
class iPullToSnap : public iBaseSnap {
    I_CLASS(iPullToSnap, iBaseSnap, 1)
public:
    iPullToSnap() { setNeedGeometry(false); }
    bool collectGeometry(std::list<iSnapGeometry> const&) override { return true; }
    bool snap(iViewer*, osg::Vec3f& point, osg::Vec2f const&) override
    {
        point.set(3.0f, 4.0f, 0.0f);
        return true;
    }
};

class iTypingLine : public iInteractorInputHandler {
public:
    using iInteractorInputHandler::dataAccepted;
};

// A host's own button that switches the viewer to the front lookup.
struct FrontSwitch : iSlot {
    explicit FrontSwitch(iViewer* viewer) : viewer(viewer) { }
    void go() { viewer->setViewLookup(iView::iLookupFront); }
    iViewer* viewer;
};

class EventHandlerGL : public EventViewerGL {
protected:
    void SetUp() override
    {
        EventViewerGL::SetUp();
        frame();
        // The first event of any kind starts the fresh tool, and moves it
        // to where the pointer was last seen.
        CallLog const first = take();
        ASSERT_GE(first.size(), 2u);
        EXPECT_EQ(first[0], "start");
        for (std::size_t i = 1; i < first.size(); ++i)
            EXPECT_EQ(first[i].rfind("move ", 0), 0u) << first[i];
    }
};

} // namespace

I_REGISTER_CLASS(iPullToSnap)

TEST_F(EventHandlerGL, PointerReachesTheToolAsPointsOnTheInputPlane)
{
    std::string const a = worldAt(60, 150);
    std::string const b = worldAt(140, 40);
    moveTo(60, 150);
    press(60, 150);
    mouse(QEvent::MouseMove, 140, 40, Qt::LeftButton);
    release(140, 40);
    frame();
    EXPECT_EQ(take(), (CallLog{"move " + a, "click " + a, "move " + b, "release " + b}));
    EXPECT_EQ(tool->getCurrentStep(), 1);
    EXPECT_EQ(tool->getViewer(), &viewer);
    EXPECT_EQ(manager.getCurrentViewer(), &viewer);

    // The right button alone does nothing outside the axonometric lookup;
    // its release still reaches the tool.
    press(100, 100, Qt::RightButton);
    release(100, 100, Qt::RightButton);
    frame();
    tool->skipMoves = true;
    EXPECT_EQ(take(), (CallLog{"release " + worldAt(100, 100)}));

    // The wheel zooms the view and is not the tool's.
    double const width = viewer.getCurrentView().getState().getRight() - viewer.getCurrentView().getState().getLeft();
    QPointF const centre(100, 100);
    send(new QWheelEvent(centre, centre, QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                         false));
    frame();
    double const wider = viewer.getCurrentView().getState().getRight() - viewer.getCurrentView().getState().getLeft();
    EXPECT_NEAR(wider, width * 1.21, width * 1e-6);
    EXPECT_TRUE(take().empty());
}

TEST_F(EventHandlerGL, ViewButtonTakesTheClickAndTheToolSeesOnlyTheMotion)
{
    QImage image(24, 24, QImage::Format_RGBA8888);
    image.fill(Qt::red);
    osg::ref_ptr<iViewerButton> button = new iViewerButton(&viewer, image);
    viewer.getButtonsLayout()->addButton(button.get(), iViewerButtonsLayout::iButtonsBottomLeft);
    FrontSwitch front(&viewer);
    button->sigReleased.connect(&front, &FrontSwitch::go);
    ASSERT_EQ(button->getPosition(), osg::Vec2i(8, 8));

    tool->skipMoves = true;
    moveTo(12, 12);
    frame();
    EXPECT_EQ(viewer.getHoverButton(), button.get());
    EXPECT_FLOAT_EQ(float(button->getScale().x()), 1.2f);

    press(12, 12);
    frame();
    EXPECT_EQ(viewer.getCapturedButton(), button.get());
    // The captured button keeps the drag even off its face.
    mouse(QEvent::MouseMove, 150, 150, Qt::LeftButton);
    release(150, 150);
    frame();
    EXPECT_EQ(viewer.getCapturedButton(), nullptr);
    EXPECT_EQ(viewer.getCurrentViewLookup(), iView::iLookupFront);
    EXPECT_TRUE(take().empty());

    // Leaving the button lets it shrink back; the tool saw the moves.
    tool->skipMoves = false;
    moveTo(100, 100);
    frame();
    EXPECT_EQ(viewer.getHoverButton(), nullptr);
    EXPECT_FLOAT_EQ(float(button->getScale().x()), 1.0f);
    EXPECT_EQ(take().size(), 1u);

    // The six view buttons push navigation tools the program may lack:
    // a click on one is taken from the tool and does no harm.
    viewer.setViewerButtonsFlags(0xFF);
    osg::ref_ptr<osg::Node> zoomAll = viewer.getButtonsLayout()->getButtons(iViewerButtonsLayout::iButtonsTopLeft)[0];
    auto* first = static_cast<iViewerBaseButton*>(zoomAll.get());
    press(first->getX() + 2, first->getY() + 2);
    release(first->getX() + 2, first->getY() + 2);
    frame();
    EXPECT_TRUE(take().empty());
    EXPECT_EQ(manager.getCurrentInteractor(), tool);

    // A drag from the pan button pans through the library's pan tool, held
    // over the current tool while the button is and popped at the release.
    osg::ref_ptr<osg::Node> panNode = viewer.getButtonsLayout()->getButtons(iViewerButtonsLayout::iButtonsTopRight)[0];
    auto* pan = static_cast<iViewerBaseButton*>(panNode.get());
    osg::Matrixd const before = viewer.getCamera()->getViewMatrix();
    int const x = pan->getX() + 2;
    int const y = pan->getY() + 2;
    press(x, y);
    frame();
    ASSERT_NE(manager.getCurrentInteractor(), nullptr);
    EXPECT_STREQ(manager.getCurrentInteractor()->getClassName(), "iPanIA");
    mouse(QEvent::MouseMove, x - 60, y - 40, Qt::LeftButton);
    frame();
    EXPECT_NE(viewer.getCamera()->getViewMatrix(), before);
    release(x - 60, y - 40);
    frame();
    EXPECT_EQ(manager.getCurrentInteractor(), tool);
    for (std::string const& call : take())
        EXPECT_EQ(call.rfind("move ", 0), 0u) << call;
}

TEST_F(EventHandlerGL, SnappedPointReachesTheToolAndTheCrossFollowsIt)
{
    iGeometricsLayer::registerSnapClass("iPullToSnap");
    iBaseSnap* pull = iGeometricsLayer::getSnapObject("iPullToSnap");
    ASSERT_NE(pull, nullptr);
    pull->setActive(true);
    moveTo(100, 60);
    press(100, 60);
    frame();
    pull->setActive(false);
    EXPECT_EQ(take(), (CallLog{"move 3,4,0", "click 3,4,0"}));

    // The snap that acted is written beside the point, over the tool's own
    // objects; the next unsnapped event takes it away.
    iPointQuote* label = iViewerEventHandler::getSnapLabel();
    ASSERT_NE(label, nullptr);
    ASSERT_GT(layer->getInteractiveLayer()->getNumChildren(), 0u);
    EXPECT_EQ(layer->getInteractiveLayer()->getChild(0), label);
    std::string alias;
    iRoot::getClassAlias("iPullToSnap", alias);
    EXPECT_EQ(label->getText(), alias + " (3, 4, 0)");
    EXPECT_EQ(label->getPosition(), osg::Vec3f(3, 4, 0));

    // The construction cross stands on the point, in the layer's planes.
    osg::MatrixTransform* cross = iViewerEventHandler::getConstructionCross();
    ASSERT_NE(cross, nullptr);
    EXPECT_TRUE(layer->getIPlanes()->containsNode(cross));
    EXPECT_EQ(cross->getMatrix().getTrans(), osg::Vec3d(3, 4, 0));
    EXPECT_TRUE(layer->isNodeFlagSet(cross, 0));
    // Drawn as dashed grey lines through the pointer.
    moveTo(150, 120);
    frame();
    frame();
    auto greyRun = [this](int x0, int y0, int dx, int dy) {
        int count = 0;
        for (int i = 0; i < 60; ++i)
            count += sameColor(viewer.pixel(x0 + i * dx, y0 + i * dy), 204, 204, 204, 3) ? 1 : 0;
        return count;
    };
    EXPECT_GT(greyRun(150, 10, 0, 1), 30);
    EXPECT_LT(greyRun(150, 10, 0, 1), 60);
    EXPECT_GT(greyRun(10, 120, 1, 0), 30);
    EXPECT_EQ(greyRun(130, 10, 0, 1), 0);
    EXPECT_FALSE(layer->getInteractiveLayer()->containsNode(label));
    tool->setAllowConstructionLines(false);
    moveTo(101, 60);
    frame();
    EXPECT_FALSE(layer->isNodeFlagSet(cross, 0));
}

TEST_F(EventHandlerGL, KeysFollowTheViewerConventions)
{
    tool->skipMoves = true;
    key(Qt::Key_Q, Qt::NoModifier, "q");
    frame();
    EXPECT_EQ(take(), (CallLog{"key 113", "keyup 113"}));

    // Delete removes the selection of the layer.
    osg::ref_ptr<iGeometricGroup> object = new iGeometricGroup;
    layer->addObject(object.get(), false);
    layer->addObjectSelection(object.get());
    key(Qt::Key_Delete);
    frame();
    EXPECT_FALSE(layer->isRelative(object.get()));
    EXPECT_EQ(take(), (CallLog{"keyup 65385"}));

    // Return while the input line is busy only clears it.
    iTypingLine line;
    manager.setInputHandler(&line);
    line.setBusy(true);
    key(Qt::Key_Return);
    key(Qt::Key_Q, Qt::NoModifier, "q");
    frame();
    EXPECT_FALSE(line.isBusy());
    EXPECT_EQ(take(), (CallLog{"keyup 65293", "key 113", "keyup 113"}));
    manager.setInputHandler(nullptr);

    key(Qt::Key_Escape);
    frame();
    EXPECT_EQ(take(), (CallLog{"cancel", "keyup 65307"}));
    EXPECT_EQ(tool->getState(), iInteractor::iIAStateCancelled);
    manager.loop();
    EXPECT_EQ(manager.getCurrentInteractor(), nullptr);
}

TEST_F(EventHandlerGL, TypedPointMakesTheCallsOfTheMouse)
{
    moveTo(70, 120);
    press(70, 120);
    release(70, 120);
    frame();
    CallLog const byMouse = take();
    ASSERT_EQ(byMouse.size(), 3u);

    // The same point typed, on a fresh tool.
    osg::Vec3f point;
    ASSERT_TRUE(iIAPointBuilder(&viewer, tool, 70, 120, 0, 0).intersectIPlane(point));
    tool->close();
    manager.loop();
    take();
    tool = new iRecordIA;
    tool->log = &calls;
    ASSERT_TRUE(manager.pushInteractor(tool, false));
    iTypingLine line;
    manager.setInputHandler(&line);
    std::ostringstream text;
    text.precision(9);
    text << point.x() << " " << point.y() << " " << point.z();
    line.dataAccepted(text.str());
    manager.setInputHandler(nullptr);
    CallLog typed = take();
    ASSERT_FALSE(typed.empty());
    EXPECT_EQ(typed.front(), "start");
    typed.erase(typed.begin());
    EXPECT_EQ(typed, byMouse);
}

TEST_F(EventHandlerGL, LockedInteractorsLetOnlyTheViewerWork)
{
    EXPECT_FALSE(viewer.lockInteractors(true));
    moveTo(50, 50);
    press(50, 50);
    release(50, 50);
    frame();
    EXPECT_TRUE(take().empty());
    EXPECT_TRUE(viewer.lockInteractors(false));
    press(50, 50);
    frame();
    tool->skipMoves = true;
    EXPECT_EQ(take(), (CallLog{"click " + worldAt(50, 50)}));
}
