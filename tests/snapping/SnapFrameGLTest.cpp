#include "snapping/SnapViewerFixture.h"

#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iInputPlane.h>

#include <cmath>

namespace {

class SnapFrameGL : public SnapViewerFixture {};

} // namespace

TEST_F(SnapFrameGL, TheLastSucceedingSnapOfTheListDecides)
{
    addSnapTestGroup(layer.get(), {{0.0f, 0.0f, 0.0f}, {4.0f, 0.0f, 0.0f}});
    // Ten pixels along the segment and three above it: the foot and the
    // vertex both answer, and the vertex snap comes later in the list.
    osg::Vec2f const cursor = cursorAt(osg::Vec3f(0.0f, 0.0f, 0.0f), 10.0f, 3.0f);
    EXPECT_EQ(snapWith({"iNearestSnap"}, cursor), "iNearestSnap");
    EXPECT_NEAR(point.x(), 0.8f, 1e-3f);
    EXPECT_EQ(snapWith({"iNearestSnap", "iPointSnap", "iIntersectionSnap"}, cursor), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(0.0f, 0.0f, 0.0f));

    // The grid snap works on the midpoint that the centroid snap left.
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_hstep(1.5);
    grid->set_vstep(1.5);
    viewer.setGrid(grid.get());
    osg::Vec2f const nearMiddle = cursorAt(osg::Vec3f(2.0f, 0.0f, 0.0f), 4.0f, 4.0f);
    EXPECT_EQ(snapWith({"iCentroidSnap"}, nearMiddle), "iCentroidSnap");
    EXPECT_EQ(point, osg::Vec3f(2.0f, 0.0f, 0.0f));
    EXPECT_EQ(snapWith({"iCentroidSnap", "iGridSnap"}, nearMiddle, osg::Vec3f(2.9f, 0.0f, 0.0f)), "iGridSnap");
    EXPECT_EQ(point, osg::Vec3f(1.5f, 0.0f, 0.0f));

    // Nothing active: no snap, the point stays.
    EXPECT_EQ(snapWith({}, nearMiddle), "");
    EXPECT_EQ(point, osg::Vec3f(50.0f, 50.0f, 50.0f));
}

TEST_F(SnapFrameGL, ExcludedNodesAndObjectsAreInvisibleToSnaps)
{
    osg::ref_ptr<iSnapTestGroup> group = addSnapTestGroup(layer.get(), {{1.0f, 1.0f, 0.0f}, {3.0f, 1.0f, 0.0f}});
    osg::Vec2f const cursor = cursorAt(osg::Vec3f(3.0f, 1.0f, 0.0f), 5.0f, 0.0f);
    ASSERT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");

    std::vector<osg::ref_ptr<osg::Node>> const owner{group.get()};
    iBaseSnap::addExclusionList(owner);
    iBaseSnap::addExclusionList(owner);
    EXPECT_EQ(iBaseSnap::getExclusionList().size(), 1u);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "");

    // The picture still shows it: the line differs from the background
    // beside it.
    ASSERT_TRUE(viewer.paintFrame());
    viewer.frame.save(QString::fromStdString(testing::TempDir() + "snap_excluded.png"));
    osg::Vec2f const onLine = cursorAt(osg::Vec3f(2.0f, 1.0f, 0.0f));
    QColor const background = viewer.pixel(int(onLine.x()), int(onLine.y()) + 10);
    bool drawn = false;
    for (int dy = -1; dy <= 1; ++dy)
        drawn = drawn || !sameColor(viewer.pixel(int(onLine.x()), int(onLine.y()) + dy), background.red(),
                                    background.green(), background.blue(), 8);
    EXPECT_TRUE(drawn);

    iBaseSnap::removeExclusionList(owner);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");

    // Excluding the drawn node alone hides it too.
    osg::Group* container = group->getChild(0)->asGroup();
    ASSERT_TRUE(container && container->getNumChildren() > 0);
    osg::Group* renderer = container->getChild(0)->asGroup();
    ASSERT_TRUE(renderer && renderer->getNumChildren() > 0);
    iBaseSnap::addExclusionList({renderer->getChild(0)});
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "");
    iBaseSnap::clearExclusionList();
    EXPECT_TRUE(iBaseSnap::getExclusionList().empty());
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");

    // Hidden or unsnappable objects give nothing either.
    iNodeGroup::setNodeFlag(group.get(), 4, false);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "");
}

TEST_F(SnapFrameGL, SnapFilterAdmitsOnlyItsClasses)
{
    addSnapTestGroup(layer.get(), {{1.0f, 1.0f, 0.0f}, {3.0f, 1.0f, 0.0f}});
    osg::Vec2f const cursor = cursorAt(osg::Vec3f(1.0f, 1.0f, 0.0f), -5.0f, 2.0f);
    iGeometricsLayer::setSnapFilter({});
    iGeometricsLayer::setSnapFilterActive(true);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "");
    iGeometricsLayer::setSnapFilter({"iSnapTestGroup"});
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(1.0f, 1.0f, 0.0f));
    iGeometricsLayer::setSnapFilter({"iGridGroup"});
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "");
}

// Two vertices over each other in the top view, the upper one second, and
// an input plane through the origin tilted by 45 degrees about y.
TEST_F(SnapFrameGL, OrthoBehaviourResolvesOverlappingVertices)
{
    addSnapTestGroup(layer.get(), {{-2.0f, 1.0f, -1.0f}, {-2.0f, 1.0f, 3.0f}});
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setMatrix(osg::Matrixd::rotate(osg::PI_4, osg::Y_AXIS));
    ASSERT_NEAR(plane->getNormal().x(), std::sqrt(0.5f), 1e-6f);
    ASSERT_NEAR(plane->getNormal().z(), std::sqrt(0.5f), 1e-6f);
    viewer.setIPlane(plane.get());
    osg::Vec2f const cursor = cursorAt(osg::Vec3f(-2.0f, 1.0f, 0.0f), 3.0f, 3.0f);

    // Free: depth counts and the vertex nearer the eye wins, as it is.
    iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapFree);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(-2.0f, 1.0f, 3.0f));

    // On the input plane: only the lower vertex lies no further above the
    // plane than the origin, so it wins, laid on the plane.
    iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapInputPlane);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_NEAR(point.x(), -0.5f, 1e-5f);
    EXPECT_NEAR(point.y(), 1.0f, 1e-6f);
    EXPECT_NEAR(point.z(), 0.5f, 1e-5f);

    // Projected: the last overlapping one, laid on the plane.
    iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapProject);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_NEAR(point.x(), -2.5f, 1e-5f);
    EXPECT_NEAR(point.y(), 1.0f, 1e-6f);
    EXPECT_NEAR(point.z(), 2.5f, 1e-5f);

    // Any other value behaves as projected; the axonometric view refines
    // nothing, so the vertex stays where it is.
    iBaseSnap::setOrthoSnapBevahior(static_cast<iBaseSnap::iOrthoSnapBevahior>(7));
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_NEAR(point.x(), -2.5f, 1e-5f);
    viewer.setViewLookup(iView::iLookupAxonometric);
    osg::Vec2f const seen = cursorAt(osg::Vec3f(-2.0f, 1.0f, 3.0f), 1.0f, 1.0f);
    EXPECT_EQ(snapWith({"iPointSnap"}, seen), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(-2.0f, 1.0f, 3.0f));
}

TEST_F(SnapFrameGL, PrecisionRoundsSnappedCoordinates)
{
    addSnapTestGroup(layer.get(), {{1.2345f, -2.6789f, 0.0f}, {3.0f, -2.0f, 0.0f}});
    osg::Vec2f const cursor = cursorAt(osg::Vec3f(1.2345f, -2.6789f, 0.0f), 2.0f, 2.0f);
    iBaseSnap::setPrecision(100.0f);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(1.23f, -2.68f, 0.0f));
    iBaseSnap::setPrecision(2.0f);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursor), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(1.0f, -2.5f, 0.0f));
}
