#include "interaction/InteractionTestSupport.h"
#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/interaction/iIAPointBuilder.h>
#include <iModelStage/snapping/iBaseSnap.h>
#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <osg/io_utils>

INTERACTION_TEST_CLASSES

namespace {

// Pulls every point to (3, 4, 0), without looking at any geometry.
class iPullSnap : public iBaseSnap {
    I_CLASS(iPullSnap, iBaseSnap, 1)
public:
    iPullSnap() { setNeedGeometry(false); }
    bool collectGeometry(std::list<iSnapGeometry> const&) override { return true; }
    bool snap(iViewer*, osg::Vec3f& point, osg::Vec2f const&) override
    {
        point.set(3.0f, 4.0f, 0.0f);
        return true;
    }
};

// A viewer with a known camera, and the camera's own sums.
class OpenViewer : public ProbeViewer {
public:
    bool open()
    {
        if (!ProbeViewer::open(200, 200))
            return false;
        setLookupSwitchAnimate(false);
        return true;
    }
    osg::Matrixd windowMatrix()
    {
        osg::Camera* camera = getCamera();
        return camera->getViewMatrix() * camera->getProjectionMatrix() *
               camera->getViewport()->computeWindowMatrix();
    }
    // Where the ray through a pixel meets the plane z = level, worked out
    // from the camera alone.
    osg::Vec3d unprojectOnto(double x, double y, double level)
    {
        osg::Matrixd const inverse = osg::Matrixd::inverse(windowMatrix());
        osg::Vec3d const near = osg::Vec3d(x, y, 0.0) * inverse;
        osg::Vec3d const far = osg::Vec3d(x, y, 1.0) * inverse;
        double const t = (level - near.z()) / (far.z() - near.z());
        return near + (far - near) * t;
    }
};

bool near(osg::Vec3f const& a, osg::Vec3d const& b, double tolerance = 1e-3)
{
    return (osg::Vec3d(a) - b).length() < tolerance;
}

class InteractorPointGL : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(viewer.open()) << "no GL surface: is DISPLAY set?";
        viewer.setViewLookup(iView::iLookupTop);
        layer = new iGeometricsLayer;
        viewer.setViewModel(layer.get());
        tool.setViewer(&viewer);
        tool.setGeometricsLayer(layer.get());
    }
    void TearDown() override { iViewerEventHandler::setOrthoEnabled(false); }
    iIAPoint pointAt(float x, float y)
    {
        iIAPointBuilder builder(&viewer, &tool, x, y, x / 100.0f - 1.0f, y / 100.0f - 1.0f);
        return builder.compute();
    }
    // Gives the tool its first point at a pixel, as the mouse would.
    void firstPoint(float x, float y)
    {
        iIAPoint const p = pointAt(x, y);
        tool.start();
        tool.click(p);
        tool.release(p);
    }

    OpenViewer viewer;
    osg::ref_ptr<iGeometricsLayer> layer;
    iTwoPointsIA tool;
};

} // namespace

TEST_F(InteractorPointGL, WindowPositionBecomesAPointOnTheInputPlane)
{
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setPosition(osg::Vec3f(1, 2, 0.5f));
    viewer.setIPlane(plane.get());

    iIAPoint const p = pointAt(130, 70);
    osg::Vec3d const expected = viewer.unprojectOnto(130, 70, 0.5);
    EXPECT_TRUE(near(p.getGlobalPos(), expected)) << p.getGlobalPos() << " vs " << expected;
    EXPECT_TRUE(near(p.getLocalPos(), expected - osg::Vec3d(1, 2, 0.5))) << p.getLocalPos();
    EXPECT_EQ(p.getWindowPos(), osg::Vec3f(130, 70, 0));
    EXPECT_TRUE(near(p.getViewportPos(), osg::Vec3d(0.3, -0.3, 0), 1e-6));
    // The picture agrees: the point lies under the pixel.
    osg::Vec3d const back = viewer.project(osg::Vec3d(p.getGlobalPos()));
    EXPECT_NEAR(back.x(), 130, 1e-2);
    EXPECT_NEAR(back.y(), 70, 1e-2);

    // The tool's matrices and its feedback follow the plane.
    EXPECT_EQ(tool.getLocalToWorldMatrix(), plane->getWorldMatrix());
    osg::ref_ptr<iTransformGroup> feedback = dynamic_cast<iTransformGroup*>(tool.getILayer());
    ASSERT_TRUE(feedback.valid());
    EXPECT_EQ(feedback->getMatrix(), plane->getMatrix());
    tool.setILayerFollowIPlane(false);
    EXPECT_EQ(feedback->getMatrix(), osg::Matrixd::identity());
    tool.setILayerFollowIPlane(true);
    viewer.resetIPlane();
    EXPECT_EQ(feedback->getMatrix(), viewer.getIPlane()->getMatrix());

    osg::Vec3f window;
    ASSERT_TRUE(tool.project3DTo2D(osg::Vec3f(2, -1, 0), window));
    EXPECT_TRUE(near(window, viewer.project(osg::Vec3d(2, -1, 0))));
}

TEST_F(InteractorPointGL, OrthoHoldsOddStepsToThePlaneAxes)
{
    iViewerEventHandler::setOrthoEnabled(true);
    tool.setNumSteps(4);
    // Step 0: no ortho.
    iIAPoint const first = pointAt(100, 100);
    EXPECT_TRUE(near(first.getGlobalPos(), viewer.unprojectOnto(100, 100, 0)));
    firstPoint(100, 100);
    osg::Vec3d const origin = viewer.unprojectOnto(100, 100, 0);

    // Step 1: mostly along x keeps the first y, mostly along y the first x.
    osg::Vec3d const wide = viewer.unprojectOnto(160, 110, 0);
    EXPECT_TRUE(near(pointAt(160, 110).getGlobalPos(), osg::Vec3d(wide.x(), origin.y(), 0)));
    osg::Vec3d const tall = viewer.unprojectOnto(95, 30, 0);
    EXPECT_TRUE(near(pointAt(95, 30).getGlobalPos(), osg::Vec3d(origin.x(), tall.y(), 0)));

    // Not for a tool that takes no snaps, nor with the switch off.
    tool.setAcceptSnap(false);
    EXPECT_TRUE(near(pointAt(160, 110).getGlobalPos(), wide));
    tool.setAcceptSnap(true);
    iViewerEventHandler::setOrthoEnabled(false);
    EXPECT_TRUE(near(pointAt(160, 110).getGlobalPos(), wide));

    // Not at step 2.
    iViewerEventHandler::setOrthoEnabled(true);
    tool.click(pointAt(160, 110));
    tool.release(pointAt(160, 110));
    ASSERT_EQ(tool.getCurrentStep(), 2);
    EXPECT_TRUE(near(pointAt(130, 150).getGlobalPos(), viewer.unprojectOnto(130, 150, 0)));
}

TEST_F(InteractorPointGL, PlaneConstraintFreesOnlyTheToolsAxes)
{
    firstPoint(100, 100);
    osg::Vec3d const origin = viewer.unprojectOnto(100, 100, 0);
    osg::Vec3d const there = viewer.unprojectOnto(150, 140, 0);
    tool.constraint = 1; // x only
    EXPECT_TRUE(near(pointAt(150, 140).getGlobalPos(), osg::Vec3d(there.x(), origin.y(), 0)));
    tool.constraint = 2; // y only
    EXPECT_TRUE(near(pointAt(150, 140).getGlobalPos(), osg::Vec3d(origin.x(), there.y(), 0)));
    tool.constraint = 0;
    EXPECT_TRUE(near(pointAt(150, 140).getGlobalPos(), origin));

    // Along the normal: in a side-on view the cursor over the point two
    // units above the first one gives that point.
    viewer.setViewLookup(iView::iLookupAxonometric);
    viewer.resetIPlane();
    tool.reset();
    tool.start();
    iIAPoint const base(osg::Vec3f(), osg::Vec3f(), osg::Vec3f(), osg::Vec3f(0, 0, 0));
    tool.click(base);
    tool.release(base);
    tool.constraint = 4;
    osg::Vec3d const above = viewer.project(osg::Vec3d(0, 0, 2));
    iIAPoint const lifted = pointAt(float(above.x()), float(above.y()));
    EXPECT_TRUE(near(lifted.getGlobalPos(), osg::Vec3d(0, 0, 2), 1e-2)) << lifted.getGlobalPos();
}

TEST_F(InteractorPointGL, ManagerTakesTheViewersLayerAndRestoresItsPlane)
{
    iInteractorManager manager;
    manager.setCurrentViewer(&viewer);
    osg::ref_ptr<iGeometricsLayer> other = new iGeometricsLayer;
    auto* restoring = new iTwoPointsIA;
    restoring->setGeometricsLayer(other.get());
    restoring->setRestoreInputPlane(true);
    iInputPlane* before = viewer.getIPlane();
    ASSERT_TRUE(manager.pushInteractor(restoring, false));
    EXPECT_EQ(restoring->getGeometricsLayer(), layer.get());
    EXPECT_EQ(restoring->getViewer(), &viewer);
    EXPECT_EQ(restoring->getPrevIPlane(), before);
    EXPECT_TRUE(layer->getInteractiveLayer()->containsNode(restoring->getILayer()));
    EXPECT_FALSE(other->getInteractiveLayer()->containsNode(restoring->getILayer()));

    osg::ref_ptr<iInputPlane> working = new iInputPlane;
    viewer.setIPlane(working.get());
    restoring->close();
    manager.loop();
    EXPECT_EQ(viewer.getIPlane(), before);
}

I_REGISTER_CLASS(iPullSnap)

TEST_F(InteractorPointGL, SnappedPointIsTheRawPointOfTheConstraints)
{
    iGeometricsLayer::registerSnapClass("iPullSnap");
    iRoot::setClassAlias("iPullSnap", "Richiamo");
    iBaseSnap* pull = iGeometricsLayer::getSnapObject("iPullSnap");
    ASSERT_NE(pull, nullptr);
    pull->setActive(true);

    iIAPointBuilder builder(&viewer, &tool, 20, 30, -0.8f, -0.7f);
    iIAPoint const snapped = builder.compute();
    EXPECT_EQ(snapped.getGlobalPos(), osg::Vec3f(3, 4, 0));
    EXPECT_EQ(builder.getSnap(), pull);
    EXPECT_EQ(builder.getSnapAlias(), "Richiamo");
    EXPECT_EQ(builder.getRawPoint(), osg::Vec3f(3, 4, 0));

    // The plane constraint works on the snapped point, and a tool that
    // takes no snaps keeps the cursor.
    pull->setActive(false);
    firstPoint(100, 100);
    pull->setActive(true);
    osg::Vec3d const first = viewer.unprojectOnto(100, 100, 0);
    tool.constraint = 2;
    EXPECT_TRUE(near(pointAt(20, 30).getGlobalPos(), osg::Vec3d(first.x(), 4, 0)));
    tool.setAcceptSnap(false);
    iIAPointBuilder plain(&viewer, &tool, 20, 30, -0.8f, -0.7f);
    plain.compute();
    EXPECT_EQ(plain.getSnap(), nullptr);
    EXPECT_TRUE(plain.getSnapAlias().empty());
    pull->setActive(false);
}

TEST(InteractorViewerGL, ADestroyedViewerIsForgotten)
{
    iInteractorManager manager;
    iTwoPointsIA tool;
    auto* viewer = new OpenViewer;
    ASSERT_TRUE(viewer->open());
    manager.setCurrentViewer(viewer);
    tool.setViewer(viewer);
    tool.setViewer(viewer); // the same viewer again: nothing
    EXPECT_EQ(manager.getCurrentViewer(), viewer);
    delete viewer;
    EXPECT_EQ(manager.getCurrentViewer(), nullptr);
    EXPECT_EQ(tool.getViewer(), nullptr);
    EXPECT_EQ(tool.getLocalToWorldMatrix(), osg::Matrixd::identity());
    osg::Vec3f untouched(7, 7, 7);
    EXPECT_FALSE(tool.project3DTo2D(osg::Vec3f(), untouched));
    EXPECT_EQ(untouched, osg::Vec3f(7, 7, 7));
}
