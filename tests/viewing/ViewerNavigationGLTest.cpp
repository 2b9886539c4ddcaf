#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iInputPlane.h>

#include <osg/Geode>
#include <osg/ShapeDrawable>

namespace {

double const eps = 1e-6;

void expectNear(osg::Vec3d const& actual, osg::Vec3d const& expected, double tolerance = eps)
{
    EXPECT_NEAR(actual.x(), expected.x(), tolerance) << "x";
    EXPECT_NEAR(actual.y(), expected.y(), tolerance) << "y";
    EXPECT_NEAR(actual.z(), expected.z(), tolerance) << "z";
}

struct LookAt {
    osg::Vec3d eye, centre, up;
};

LookAt lookAt(osg::Camera* camera)
{
    LookAt out;
    camera->getViewMatrixAsLookAt(out.eye, out.centre, out.up, 1.0);
    return out;
}

bool isOrtho(osg::Matrixd const& projection)
{
    return projection(3, 3) == 1.0 && projection(2, 3) == 0.0;
}

// A square viewer, so that the view window maps 16 units to 200 pixels.
class ViewerNavigationGL : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(viewer.open(200, 200)) << "no GL surface: is DISPLAY set?";
        viewer.setLookupSwitchAnimate(false);
        viewer.setViewLookup(iView::iLookupTop);
    }

    osg::Vec3d eye() { return viewer.getCamera()->getInverseViewMatrix().getTrans(); }

    ProbeViewer viewer;
};

} // namespace

TEST_F(ViewerNavigationGL, EveryLookupEndsWhereItsRowPutsTheCamera)
{
    struct Expected {
        iView::iViewLookup lookup;
        osg::Vec3d eye, direction, up;
    };
    Expected const rows[] = {
        {iView::iLookupLeft, {-100, 0, 0}, {1, 0, 0}, {0, 0, 1}},
        {iView::iLookupRight, {100, 0, 0}, {-1, 0, 0}, {0, 0, 1}},
        {iView::iLookupTop, {0, 0, 100}, {0, 0, -1}, {0, 1, 0}},
        {iView::iLookupBottom, {0, 0, -100}, {0, 0, 1}, {0, -1, 0}},
        {iView::iLookupFront, {0, -100, 0}, {0, 1, 0}, {0, 0, 1}},
        {iView::iLookupBack, {0, 100, 0}, {0, -1, 0}, {0, 0, 1}},
    };
    for (Expected const& row : rows) {
        viewer.setViewLookup(row.lookup);
        EXPECT_EQ(viewer.getCurrentViewLookup(), row.lookup);
        LookAt const at = lookAt(viewer.getCamera());
        SCOPED_TRACE(row.lookup);
        expectNear(at.eye, row.eye);
        expectNear(at.centre - at.eye, row.direction);
        expectNear(at.up, row.up);
        EXPECT_TRUE(isOrtho(viewer.getCamera()->getProjectionMatrix()));
        EXPECT_EQ(viewer.getCamera()->getViewMatrix(), viewer.getCurrentView().getState().getViewMatrix());
    }

    // The axonometric camera: tilted 70 degrees from the top, then turned
    // -45 degrees about Z, looking at the origin.
    viewer.setViewLookup(iView::iLookupAxonometric);
    LookAt const axo = lookAt(viewer.getCamera());
    double const s = std::sin(osg::DegreesToRadians(70.0)) * 100.0 * std::sqrt(0.5);
    expectNear(axo.eye, osg::Vec3d(-s, -s, std::cos(osg::DegreesToRadians(70.0)) * 100.0));
    osg::Vec3d toOrigin = -axo.eye;
    toOrigin.normalize();
    expectNear(axo.centre - axo.eye, toOrigin);
    EXPECT_TRUE(isOrtho(viewer.getCamera()->getProjectionMatrix()));
    // A window of 20 units on a square viewer.
    EXPECT_EQ(viewer.getCamera()->getProjectionMatrix(), osg::Matrixd::ortho(-10, 10, -10, 10, 0.01, 10000));

    // The last row is applied as it stands, singular as it is.
    viewer.setViewLookup(iView::iLookupLast);
    osg::Matrixd const& last = viewer.getCurrentView().getState().getInverseViewMatrix();
    EXPECT_EQ(last, osg::Matrixd(0, 0, 1, 0, 0, 0, 1, 0, -1, 0, 0, 0, 100, 0, 0, 1));
    EXPECT_EQ(viewer.getCamera()->getViewMatrix(), viewer.getCurrentView().getState().getViewMatrix());

    // The free lookup: perspective, the camera handed to the orbit
    // manipulator at its home.
    viewer.setViewLookup(iView::iLookupFree);
    EXPECT_EQ(viewer.getCameraManipulator() != nullptr, true);
    EXPECT_FALSE(isOrtho(viewer.getCamera()->getProjectionMatrix()));
    EXPECT_EQ(viewer.getCamera()->getProjectionMatrix(), osg::Matrixd::perspective(30.0, 1.0, 1.0, 10000.0));
    ASSERT_TRUE(viewer.paintFrame());
    LookAt const free = lookAt(viewer.getCamera());
    expectNear(free.eye, osg::Vec3d(-8, -25, 12), 1e-4);

    // Back to a preset: the manipulator goes.
    viewer.setViewLookup(iView::iLookupTop);
    EXPECT_EQ(viewer.getCameraManipulator(), nullptr);
}

TEST_F(ViewerNavigationGL, AnimatedSwitchEndsOnTheTargetView)
{
    int planeChanges = 0;
    struct Counter : iSlot {
        int* count;
        void hit() { ++*count; }
    } counter;
    counter.count = &planeChanges;
    viewer.sigIPlaneChanged.connect(&counter, &Counter::hit);

    viewer.zoomFactor(0.5);
    double const topRight = viewer.getCurrentView().getState().getRight();
    viewer.setLookupSwitchAnimate(true);
    viewer.setViewLookup(iView::iLookupFront);
    EXPECT_TRUE(viewer.isLookupAnimating());
    EXPECT_EQ(planeChanges, 0);
    // The first tick starts from the old window.
    viewer.lookupAnimation();
    EXPECT_DOUBLE_EQ(viewer.getCurrentView().getState().getRight(), topRight);

    ASSERT_TRUE(processUntil([this] { return !viewer.isLookupAnimating(); }));
    EXPECT_EQ(planeChanges, 1);
    EXPECT_DOUBLE_EQ(viewer.getCurrentView().getState().getRight(), 8.0);
    LookAt const at = lookAt(viewer.getCamera());
    expectNear(at.eye, osg::Vec3d(0, -100, 0), 1e-4);
    expectNear(at.up, osg::Vec3d(0, 0, 1), 1e-6);

    // A switch made at once ends an animation under way; the view it was
    // heading for keeps its own window.
    viewer.setViewLookup(iView::iLookupTop);
    viewer.lookupAnimation();
    EXPECT_DOUBLE_EQ(viewer.getView(iView::iLookupTop).getState().getRight(), 8.0);
    viewer.setLookupSwitchAnimate(false);
    viewer.setViewLookup(iView::iLookupBack);
    EXPECT_FALSE(viewer.isLookupAnimating());
    EXPECT_DOUBLE_EQ(viewer.getView(iView::iLookupTop).getState().getRight(), topRight);
    viewer.setLookupSwitchAnimate(true);
    planeChanges = 1;

    // The free lookup never animates; leaving it does.
    viewer.setViewLookup(iView::iLookupFree);
    EXPECT_FALSE(viewer.isLookupAnimating());
    EXPECT_EQ(planeChanges, 2);
    viewer.setViewLookup(iView::iLookupTop);
    EXPECT_TRUE(viewer.isLookupAnimating());
    ASSERT_TRUE(processUntil([this] { return !viewer.isLookupAnimating(); }));
    EXPECT_EQ(viewer.getCameraManipulator(), nullptr);
    expectNear(lookAt(viewer.getCamera()).eye, osg::Vec3d(0, 0, 100), 1e-4);
}

TEST_F(ViewerNavigationGL, ZoomBoundsFramesTheBoxAndIgnoresNothing)
{
    osg::Matrixd const before = viewer.getCamera()->getViewMatrix();
    viewer.zoomBounds(NodeList());
    EXPECT_EQ(viewer.getCamera()->getViewMatrix(), before);

    // A box from (-1, 0, -1) to (3, 2, 1).
    osg::ref_ptr<osg::Geode> box = new osg::Geode;
    box->addDrawable(new osg::ShapeDrawable(new osg::Box(osg::Vec3(1, 1, 0), 4, 2, 2)));
    viewer.zoomBounds(NodeList{box});
    iViewState const& state = viewer.getCurrentView().getState();
    EXPECT_DOUBLE_EQ(state.getDistance(), 20.0);
    expectNear(eye(), osg::Vec3d(1, 1, 20), 1e-5);
    // The box's shadow on the view plane is 4 by 2.
    double const half = std::sqrt(20.0) / 2.0;
    EXPECT_NEAR(state.getRight(), half, 1e-5);
    EXPECT_NEAR(state.getBottom(), -half, 1e-5);
    osg::Vec3d const corner = viewer.project(osg::Vec3d(1 + half, 1, 0));
    EXPECT_NEAR(corner.x(), 200.0, 1e-3);
}

TEST_F(ViewerNavigationGL, PanMovesThePointUnderThePointer)
{
    // 16 units over 200 pixels: 50 pixels are 4 units.
    viewer.pan(100, 100, 150, 100);
    expectNear(eye(), osg::Vec3d(-4, 0, 100), 1e-4);
    osg::Vec3d const origin = viewer.project(osg::Vec3d(0, 0, 0));
    EXPECT_NEAR(origin.x(), 150.0, 1e-3);
    EXPECT_NEAR(origin.y(), 100.0, 1e-3);
    // The pan stays with the view; home brings it back.
    EXPECT_EQ(viewer.getCurrentView().getState().getViewMatrix(), viewer.getCamera()->getViewMatrix());
    viewer.resetToHome();
    expectNear(eye(), osg::Vec3d(0, 0, 100), 1e-9);
}

TEST_F(ViewerNavigationGL, ZoomWindowFitsTheRectangleWithAMargin)
{
    viewer.zoomWindow(4, 4, 8, 400);
    EXPECT_EQ(viewer.getCurrentView().getState().getRight(), 8.0);

    viewer.zoomWindow(100, 60, 0, 0);
    iViewState const& state = viewer.getCurrentView().getState();
    // 100 pixels are 8 units, with 2 percent to spare.
    EXPECT_NEAR(state.getRight(), 4.08, 1e-9);
    EXPECT_NEAR(state.getTop(), 4.08, 1e-9);
    expectNear(eye(), osg::Vec3d(-4, -5.6, 100), 1e-4);

    ProbeViewer other;
    ASSERT_TRUE(other.open(200, 200));
    other.setLookupSwitchAnimate(false);
    other.setViewLookup(iView::iLookupTop);
    other.zoomWindow(0, 60, 100, 0);
    EXPECT_EQ(other.getCurrentView().getState().getRight(), state.getRight());
    EXPECT_EQ(other.getCamera()->getViewMatrix(), viewer.getCamera()->getViewMatrix());
}

TEST_F(ViewerNavigationGL, ZoomFactorGrowsAndShrinksTheWindow)
{
    viewer.zoomFactor(0.1);
    iViewState const& state = viewer.getCurrentView().getState();
    EXPECT_DOUBLE_EQ(state.getLeft(), -9.6);
    EXPECT_DOUBLE_EQ(state.getTop(), 9.6);
    EXPECT_DOUBLE_EQ(state.getRight(), 9.76);
    EXPECT_DOUBLE_EQ(state.getBottom(), -9.76);
    // The projection recentres the window.
    EXPECT_EQ(viewer.getCamera()->getProjectionMatrix(),
              osg::Matrixd::ortho(-9.68, 9.68, -9.68, 9.68, 0.01, 10000));

    viewer.resetToHome();
    viewer.zoomFactor(-1.0);
    EXPECT_DOUBLE_EQ(state.getRight() - state.getLeft(), 0.0);
    EXPECT_DOUBLE_EQ(state.getTop() - state.getBottom(), 0.0);
}

TEST_F(ViewerNavigationGL, ProjectionWidensTheLongerSide)
{
    iViewState& state = viewer.getCurrentView().getState();
    viewer.updateProjection(400, 200);
    EXPECT_EQ(state.getProjectionMatrix(), osg::Matrixd::ortho(-16, 16, -8, 8, 0.01, 10000));
    viewer.updateProjection(200, 400);
    EXPECT_EQ(state.getProjectionMatrix(), osg::Matrixd::ortho(-8, 8, -16, 16, 0.01, 10000));
    // Any type but orthographic is perspective, whatever the lookup.
    viewer.getCurrentView().setProjectionType(static_cast<iView::iProjectionType>(5));
    viewer.updateProjection(400, 200);
    EXPECT_EQ(state.getProjectionMatrix(), osg::Matrixd::perspective(30.0, 1.0, 1.0, 10000.0));
}

TEST_F(ViewerNavigationGL, InputPlaneFollowsTheLookupAndTheExplicitPlane)
{
    EXPECT_EQ(viewer.getIPlane(), viewer.getCurrentView().getInputPlane());
    viewer.setViewLookup(iView::iLookupFront);
    expectNear(osg::Vec3d(viewer.getIPlane()->getNormal()), osg::Vec3d(0, 1, 0));
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setMatrix(osg::Matrixd::translate(0, 0, 5));
    viewer.setIPlane(plane.get());
    EXPECT_EQ(viewer.getIPlane(), plane.get());
    viewer.resetIPlane();
    EXPECT_EQ(viewer.getIPlane(), viewer.getCurrentView().getInputPlane());
}
