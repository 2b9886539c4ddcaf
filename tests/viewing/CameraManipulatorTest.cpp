#include "ManipulatorTestSupport.h"

#include <iModelStage/viewing/iCameraManipulator.h>

#include <osg/Geode>
#include <osg/Notify>
#include <osg/Shape>
#include <osg/ShapeDrawable>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using Event = osgGA::GUIEventAdapter;

constexpr unsigned int kRight = Event::RIGHT_MOUSE_BUTTON;
constexpr unsigned int kMiddle = Event::MIDDLE_MOUSE_BUTTON;
constexpr unsigned int kLeft = Event::LEFT_MOUSE_BUTTON;
constexpr unsigned int kCtrl = Event::MODKEY_LEFT_CTRL | Event::MODKEY_RIGHT_CTRL;
constexpr unsigned int kShift = Event::MODKEY_LEFT_SHIFT | Event::MODKEY_RIGHT_SHIFT;

void expectVecNear(osg::Vec3d const& expected, osg::Vec3d const& actual, double tolerance)
{
    EXPECT_NEAR(expected.x(), actual.x(), tolerance);
    EXPECT_NEAR(expected.y(), actual.y(), tolerance);
    EXPECT_NEAR(expected.z(), actual.z(), tolerance);
}

void expectMatrixNear(osg::Matrixd const& expected, osg::Matrixd const& actual, double tolerance)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(expected(row, column), actual(row, column), tolerance) << row << "," << column;
}

// q and -q are the same rotation.
void expectRotationNear(osg::Quat const& expected, osg::Quat const& actual, double tolerance)
{
    double const sign = (expected.asVec4() * actual.asVec4()) < 0.0 ? -1.0 : 1.0;
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(expected[i], sign * actual[i], tolerance) << i;
}

// The rotation that a drag from the centre to (x, 0) gives a trackball of
// size 0.5 that has not turned yet.
osg::Quat dragFromCentreTo(double x)
{
    double const r = 0.5;
    double const z = std::sqrt(r * r - x * x);
    double const chord = std::sqrt(x * x + (r - z) * (r - z));
    return osg::Quat(std::asin(chord / (2.0 * r)), osg::Vec3d(0.0, -1.0, 0.0));
}

class CameraManipulator : public testing::Test {
protected:
    bool send(osg::ref_ptr<Event> const& event) { return manipulator->handle(*event, actions); }
    bool push(float x, float y, double time, unsigned int buttons, unsigned int modifiers = 0)
    {
        return send(pointerEvent(Event::PUSH, x, y, time, buttons, modifiers));
    }
    bool drag(float x, float y, double time, unsigned int buttons, unsigned int modifiers = 0)
    {
        return send(pointerEvent(Event::DRAG, x, y, time, buttons, modifiers));
    }
    bool release(float x, float y, double time, unsigned int buttons = 0)
    {
        return send(pointerEvent(Event::RELEASE, x, y, time, buttons));
    }
    bool frame(double time) { return send(plainEvent(Event::FRAME, time)); }

    osg::ref_ptr<iCameraManipulator> manipulator = new iCameraManipulator;
    RecordingActions actions;
};

// Collects what the scene library writes to its notify stream.
class NotifyCapture : public osg::NotifyHandler {
public:
    void notify(osg::NotifySeverity severity, char const* message) override
    {
        if (severity == osg::WARN)
            text += message;
    }
    std::string text;
};

} // namespace

TEST_F(CameraManipulator, MatricesFollowCentreRotationAndDistance)
{
    osg::Vec3d const centre(1.0, 2.0, 3.0);
    osg::Quat const rotation(0.7, osg::Vec3d(0.0, 0.6, 0.8));
    manipulator->setCenter(centre);
    manipulator->setRotation(rotation);
    manipulator->setDistance(4.0);

    // The camera sits on the sphere of radius 4 around the centre, looking at it.
    osg::Matrixd const m = manipulator->getMatrix();
    expectVecNear(centre + rotation * osg::Vec3d(0.0, 0.0, 4.0), m.getTrans(), 1e-12);
    expectVecNear(rotation * osg::Vec3d(0.0, 0.0, -1.0), osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, -1.0), m),
                  1e-12);
    expectMatrixNear(osg::Matrixd::identity(), m * manipulator->getInverseMatrix(), 1e-12);
    EXPECT_FLOAT_EQ(4.0f, manipulator->getFusionDistanceValue());

    // Read back by another manipulator: the distance is its own.
    osg::ref_ptr<iCameraManipulator> other = new iCameraManipulator;
    other->setDistance(4.0);
    other->setByMatrix(m);
    expectVecNear(centre, other->getCenter(), 1e-12);
    expectRotationNear(rotation, other->getRotation(), 1e-12);
    other->setDistance(2.0);
    other->setByInverseMatrix(manipulator->getInverseMatrix());
    EXPECT_DOUBLE_EQ(2.0, other->getDistance());
    expectVecNear(m.getTrans() + rotation * osg::Vec3d(0.0, 0.0, -2.0), other->getCenter(), 1e-12);
}

TEST_F(CameraManipulator, HomeLooksFromTheHomeEyeAtTheHomeCentre)
{
    osg::Vec3d const eye(-8.0, -25.0, 12.0);
    manipulator->setAutoComputeHomePosition(false);
    manipulator->setHomePosition(eye, osg::Vec3d(), osg::Vec3d(0.0, 0.0, 1.0), false);
    manipulator->home(0.0);

    EXPECT_NEAR(std::sqrt(64.0 + 625.0 + 144.0), manipulator->getDistance(), 1e-5);
    expectVecNear(osg::Vec3d(), manipulator->getCenter(), 0.0);
    expectMatrixNear(osg::Matrixd::lookAt(eye, osg::Vec3d(), osg::Vec3d(0.0, 0.0, 1.0)),
                     manipulator->getInverseMatrix(), 1e-5);

    // computePosition with the up vector along the view: no NaN reaches the centre or distance.
    manipulator->computePosition(osg::Vec3f(0, 0, 5), osg::Vec3f(0, 0, 0), osg::Vec3f(0, 0, 1));
    EXPECT_FLOAT_EQ(5.0f, static_cast<float>(manipulator->getDistance()));
    expectVecNear(osg::Vec3d(), manipulator->getCenter(), 0.0);

    // Space goes home from anywhere and is handled; other keys are not.
    manipulator->setCenter(osg::Vec3d(7.0, 7.0, 7.0));
    EXPECT_FALSE(send(plainEvent(Event::KEYDOWN, 0.0, 'a')));
    EXPECT_TRUE(send(plainEvent(Event::KEYDOWN, 0.0, ' ')));
    expectVecNear(osg::Vec3d(), manipulator->getCenter(), 0.0);
    expectVecNear(eye, manipulator->getMatrix().getTrans(), 1e-4);
    EXPECT_EQ(1, actions.redraws);
}

TEST_F(CameraManipulator, RightDragRotatesAsATrackball)
{
    EXPECT_TRUE(push(0.0f, 0.0f, 0.0, kRight));
    EXPECT_EQ(0, actions.redraws);
    EXPECT_TRUE(drag(0.1f, 0.0f, 0.1, kRight));
    EXPECT_EQ(1, actions.redraws);
    expectRotationNear(dragFromCentreTo(0.1), manipulator->getRotation(), 1e-6);
    EXPECT_DOUBLE_EQ(1.0, manipulator->getDistance());
    expectVecNear(osg::Vec3d(), manipulator->getCenter(), 0.0);

    // Ctrl with Shift is not the zoom chord: it rotates too.
    manipulator->setRotation(osg::Quat());
    push(0.0f, 0.0f, 1.0, kRight, kCtrl | kShift);
    drag(0.1f, 0.0f, 1.1, kRight, kCtrl | kShift);
    expectRotationNear(dragFromCentreTo(0.1), manipulator->getRotation(), 1e-6);
    EXPECT_DOUBLE_EQ(1.0, manipulator->getDistance());
}

TEST_F(CameraManipulator, MiddleDragPansInTheViewPlane)
{
    manipulator->setDistance(10.0);
    push(0.0f, 0.0f, 0.0, kMiddle);
    drag(0.1f, 0.2f, 0.1, kMiddle);
    expectVecNear(osg::Vec3d(-0.3, -0.6, 0.0), manipulator->getCenter(), 1e-6);

    // Turned a quarter about Z, the screen's x runs along world y.
    manipulator->setCenter(osg::Vec3d());
    manipulator->setRotation(osg::Quat(osg::PI_2, osg::Vec3d(0.0, 0.0, 1.0)));
    push(0.0f, 0.0f, 1.0, kMiddle);
    drag(0.1f, 0.0f, 1.1, kMiddle);
    expectVecNear(osg::Vec3d(0.0, -0.3, 0.0), manipulator->getCenter(), 1e-6);
}

TEST_F(CameraManipulator, CtrlRightDragZoomsDownToTheFloorThenMovesForward)
{
    manipulator->setDistance(2.0);
    push(0.0f, 0.0f, 0.0, kRight, kCtrl);
    // The chord is read from the event where the step starts.
    drag(0.0f, 0.1f, 0.1, kRight, 0);
    EXPECT_NEAR(2.2, manipulator->getDistance(), 1e-6);
    expectRotationNear(osg::Quat(), manipulator->getRotation(), 0.0);

    // Default floor: 0.05 of a model scale of 0.01, about 0.0005.
    manipulator->setDistance(0.001);
    push(0.0f, 0.0f, 1.0, kRight, kCtrl);
    drag(0.0f, -0.1f, 1.1, kRight, kCtrl);
    EXPECT_NEAR(0.0009, manipulator->getDistance(), 1e-9);
    manipulator->setDistance(0.0005);
    push(0.0f, 0.0f, 2.0, kRight, kCtrl);
    drag(0.0f, -0.1f, 2.1, kRight, kCtrl);
    EXPECT_DOUBLE_EQ(0.0005, manipulator->getDistance());
    expectVecNear(osg::Vec3d(0.0, 0.0, -0.00005), manipulator->getCenter(), 1e-9);

    // A node sets the model scale: its radius.
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), 10.0f)));
    manipulator->setNode(geode.get());
    EXPECT_EQ(geode.get(), manipulator->getNode());
    manipulator->setCenter(osg::Vec3d());
    manipulator->setDistance(0.5);
    push(0.0f, 0.0f, 3.0, kRight, kCtrl);
    drag(0.0f, -0.1f, 3.1, kRight, kCtrl);
    EXPECT_DOUBLE_EQ(0.5, manipulator->getDistance());
    expectVecNear(osg::Vec3d(0.0, 0.0, -0.05), manipulator->getCenter(), 1e-7);
}

TEST_F(CameraManipulator, OtherButtonsJumpsAndHandledEventsMoveNothing)
{
    osg::Matrixd const before = manipulator->getMatrix();
    EXPECT_TRUE(push(0.0f, 0.0f, 0.0, kLeft));
    EXPECT_TRUE(drag(0.1f, 0.1f, 0.1, kLeft));
    EXPECT_TRUE(push(0.0f, 0.0f, 1.0, kRight | kMiddle));
    EXPECT_TRUE(drag(0.1f, 0.1f, 1.1, kRight | kMiddle));
    // A jump longer than 0.5 is a glitch.
    EXPECT_TRUE(push(0.0f, 0.0f, 2.0, kRight));
    EXPECT_TRUE(drag(0.4f, 0.4f, 2.1, kRight));
    EXPECT_EQ(0, actions.redraws);
    expectMatrixNear(before, manipulator->getMatrix(), 0.0);

    osg::ref_ptr<Event> handled = pointerEvent(Event::DRAG, 0.5f, 0.5f, 2.2, kRight);
    handled->setHandled(true);
    EXPECT_FALSE(send(handled));
    EXPECT_FALSE(send(plainEvent(Event::SCROLL, 2.3)));
    expectMatrixNear(before, manipulator->getMatrix(), 0.0);
}

TEST_F(CameraManipulator, AFastReleaseThrowsAndFramesRepeatTheLastStep)
{
    push(0.0f, 0.0f, 0.0, kRight);
    drag(0.1f, 0.0f, 0.5, kRight);
    osg::Quat const step = manipulator->getRotation();
    EXPECT_TRUE(release(0.1f, 0.0f, 0.515));
    EXPECT_TRUE(actions.continuous);
    expectRotationNear(step * step, manipulator->getRotation(), 1e-6);

    // A frame repeats the step yet leaves the frame to the other handlers.
    int const redraws = actions.redraws;
    EXPECT_FALSE(frame(0.6));
    EXPECT_EQ(redraws + 1, actions.redraws);
    expectRotationNear(step * step * step, manipulator->getRotation(), 1e-6);

    // A push stops the motion.
    push(0.0f, 0.0f, 1.0, kRight);
    EXPECT_FALSE(actions.continuous);
    osg::Quat const stopped = manipulator->getRotation();
    EXPECT_FALSE(frame(1.1));
    expectRotationNear(stopped, manipulator->getRotation(), 0.0);
}

TEST_F(CameraManipulator, ASlowReleaseOrOneWithButtonsDownNeverThrows)
{
    push(0.0f, 0.0f, 0.0, kRight);
    drag(0.1f, 0.0f, 0.5, kRight);
    EXPECT_TRUE(release(0.1f, 0.0f, 0.525));
    EXPECT_FALSE(actions.continuous);
    osg::Quat const after = manipulator->getRotation();
    EXPECT_FALSE(frame(0.6));
    expectRotationNear(after, manipulator->getRotation(), 0.0);

    // Another button still down: the release starts afresh.
    push(0.0f, 0.0f, 1.0, kRight | kMiddle);
    drag(0.1f, 0.0f, 1.001, kRight | kMiddle);
    EXPECT_TRUE(release(0.1f, 0.0f, 1.002, kRight));
    EXPECT_FALSE(actions.continuous);
    EXPECT_FALSE(frame(1.1));
    expectRotationNear(after, manipulator->getRotation(), 0.0);
}

TEST_F(CameraManipulator, TrackballSizeIsClampedWithAWarning)
{
    osg::ref_ptr<NotifyCapture> capture = new NotifyCapture;
    osg::ref_ptr<osg::NotifyHandler> previous = osg::getNotifyHandler();
    osg::NotifySeverity const level = osg::getNotifyLevel();
    osg::setNotifyLevel(osg::WARN);
    osg::setNotifyHandler(capture.get());

    manipulator->setTrackballSize(0.1f);
    manipulator->setTrackballSize(1.0f);
    std::string const quiet = capture->text;
    float const atMaximum = manipulator->getTrackballSize();
    manipulator->setTrackballSize(0.05f);
    float const low = manipulator->getTrackballSize();
    std::string const lowText = capture->text;
    capture->text.clear();
    manipulator->setTrackballSize(2.5f);

    osg::setNotifyHandler(previous.get());
    osg::setNotifyLevel(level);

    EXPECT_EQ("", quiet);
    EXPECT_EQ(1.0f, atMaximum);
    EXPECT_EQ(0.1f, low);
    EXPECT_EQ("Warning: iCameraManipulator::setTrackballSize(float) of 0.05 is below permitted minimum, clamping "
              "to 0.1.\n",
              lowText);
    EXPECT_EQ("Warning: iCameraManipulator::setTrackballSize(float) of 2.5 is above permitted maximum, clamping "
              "to 1.\n",
              capture->text);
    EXPECT_EQ(1.0f, manipulator->getTrackballSize());
}
