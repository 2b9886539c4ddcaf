#include "snapping/SnapViewerFixture.h"

#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/snapping/iCentroidSnap.h>
#include <iModelStage/snapping/iGridSnap.h>
#include <iModelStage/snapping/iIntersectionSnap.h>
#include <iModelStage/snapping/iNearestSnap.h>
#include <iModelStage/snapping/iPointSnap.h>

I_REGISTER_CLASS(iSnapTestGroup)
I_REGISTER_CLASS(iSnapTestRenderer)

namespace {

class SnapGL : public SnapViewerFixture {};

} // namespace

TEST_F(SnapGL, RegistryListsTheKindsInNameOrder)
{
    std::vector<std::string> names;
    for (iBaseSnap* snap : iGeometricsLayer::getSnapObjectsList())
        names.push_back(snap->getClassName());
    EXPECT_EQ(names, (std::vector<std::string>{"iCentroidSnap", "iGridSnap", "iIntersectionSnap", "iNearestSnap",
                                               "iPointSnap"}));
    EXPECT_FALSE(iGeometricsLayer::getSnapObject("iGridSnap")->getNeedGeometry());
    EXPECT_TRUE(iGeometricsLayer::getSnapObject("iPointSnap")->getNeedGeometry());
    EXPECT_EQ(iGeometricsLayer::getSnapObject("iNearestSnap")->getClassAlias(), "Snap vicino");
}

TEST_F(SnapGL, PointSnapTakesTheVertexWithinFifteenPixels)
{
    addSnapTestGroup(layer.get(), {{1.0f, 1.0f, 0.0f}, {3.0f, 1.5f, 0.0f}});
    osg::Vec3f const vertex(3.0f, 1.5f, 0.0f);

    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(vertex, 14.0f, 0.0f)), "iPointSnap");
    EXPECT_EQ(point, vertex);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(vertex, 0.0f, -14.0f)), "iPointSnap");
    EXPECT_EQ(point, vertex);

    // One pixel beyond the tolerance, and the corner of the square that
    // the circle cuts off, leave the point alone.
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(vertex, 16.0f, 0.0f)), "");
    EXPECT_EQ(point, osg::Vec3f(50.0f, 50.0f, 50.0f));
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(vertex, 14.0f, 14.0f)), "");
    EXPECT_EQ(point, osg::Vec3f(50.0f, 50.0f, 50.0f));
}

TEST_F(SnapGL, PointSnapFollowsTheGroupMatrixAndTheNearerVertex)
{
    osg::ref_ptr<iSnapTestGroup> group = addSnapTestGroup(layer.get(), {{0.0f, 0.0f, 0.0f}, {0.5f, 0.0f, 0.0f}});
    group->setPosition(osg::Vec3f(2.0f, -1.0f, 0.0f));
    // 0.5 units are about 6 pixels: the vertex nearer the cursor wins.
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(osg::Vec3f(2.4f, -1.0f, 0.0f), 0.0f, 3.0f)), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(2.5f, -1.0f, 0.0f));
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(osg::Vec3f(2.1f, -1.0f, 0.0f))), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(2.0f, -1.0f, 0.0f));
}

TEST_F(SnapGL, NearestSnapLaysTheFootOnTheSegmentAwayFromItsEnds)
{
    addSnapTestGroup(layer.get(), {{-4.0f, 1.0f, 0.0f}, {4.0f, 1.0f, 0.0f}});
    iBaseSnap::setPrecision(1000.0f);
    EXPECT_EQ(snapWith({"iNearestSnap"}, cursorAt(osg::Vec3f(1.5f, 1.0f, 0.0f), 0.0f, 9.0f)), "iNearestSnap");
    EXPECT_EQ(point, osg::Vec3f(1.5f, 1.0f, 0.0f));
    EXPECT_EQ(snapWith({"iNearestSnap"}, cursorAt(osg::Vec3f(-2.25f, 1.0f, 0.0f), 0.0f, -6.0f)), "iNearestSnap");
    EXPECT_EQ(point, osg::Vec3f(-2.25f, 1.0f, 0.0f));

    // Four pixels from an end the foot belongs to the vertex snap; a
    // segment shorter than ten pixels gives no foot at all.
    EXPECT_EQ(snapWith({"iNearestSnap"}, cursorAt(osg::Vec3f(4.0f, 1.0f, 0.0f), -4.0f, 2.0f)), "");
    addSnapTestGroup(layer.get(), {{0.0f, -3.0f, 0.0f}, {0.6f, -3.0f, 0.0f}});
    EXPECT_EQ(snapWith({"iNearestSnap"}, cursorAt(osg::Vec3f(0.3f, -3.0f, 0.0f), 0.0f, 2.0f)), "");
}

TEST_F(SnapGL, IntersectionSnapFindsCrossingsButNotCollinearSegments)
{
    addSnapTestGroup(layer.get(), {{0.0f, 0.0f, 0.0f}, {4.0f, 2.0f, 0.0f}, {0.0f, 2.0f, 0.0f}, {4.0f, 0.0f, 0.0f}});
    EXPECT_EQ(snapWith({"iIntersectionSnap"}, cursorAt(osg::Vec3f(2.0f, 1.0f, 0.0f), 6.0f, -5.0f)),
              "iIntersectionSnap");
    EXPECT_EQ(point, osg::Vec3f(2.0f, 1.0f, 0.0f));

    addSnapTestGroup(layer.get(), {{-4.0f, -2.0f, 0.0f}, {-2.0f, -2.0f, 0.0f}, {-3.0f, -2.0f, 0.0f},
                                   {-1.0f, -2.0f, 0.0f}});
    EXPECT_EQ(snapWith({"iIntersectionSnap"}, cursorAt(osg::Vec3f(-2.5f, -2.0f, 0.0f))), "");
}

TEST_F(SnapGL, CentroidSnapTakesMidpointsOfQuadEdges)
{
    addSnapTestGroup(layer.get(), {{0.0f, 0.0f, 0.0f}, {3.0f, 0.0f, 0.0f}, {3.0f, 2.0f, 0.0f}, {0.0f, 2.0f, 0.0f}},
                     GL_QUADS);
    EXPECT_EQ(snapWith({"iCentroidSnap"}, cursorAt(osg::Vec3f(1.5f, 0.0f, 0.0f), 3.0f, 8.0f)), "iCentroidSnap");
    EXPECT_EQ(point, osg::Vec3f(1.5f, 0.0f, 0.0f));
    EXPECT_EQ(snapWith({"iCentroidSnap"}, cursorAt(osg::Vec3f(3.0f, 1.0f, 0.0f), -5.0f, 0.0f)), "iCentroidSnap");
    EXPECT_EQ(point, osg::Vec3f(3.0f, 1.0f, 0.0f));
    // A line strip gives no segments.
    addSnapTestGroup(layer.get(), {{-4.0f, -3.0f, 0.0f}, {-2.0f, -3.0f, 0.0f}}, GL_LINE_STRIP);
    EXPECT_EQ(snapWith({"iCentroidSnap"}, cursorAt(osg::Vec3f(-3.0f, -3.0f, 0.0f))), "");
}

TEST_F(SnapGL, GridSnapTakesTheNearestNodeOnTheInputPlane)
{
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_hstep(0.5);
    grid->set_vstep(2.0);
    viewer.setGrid(grid.get());
    osg::Vec2f const anywhere(10.0f, 10.0f);

    EXPECT_EQ(snapWith({"iGridSnap"}, anywhere, osg::Vec3f(0.6f, 1.7f, 0.0f)), "iGridSnap");
    EXPECT_EQ(point, osg::Vec3f(0.5f, 2.0f, 0.0f));
    // A value on a negative multiple of the step stays there.
    EXPECT_EQ(snapWith({"iGridSnap"}, anywhere, osg::Vec3f(-1.5f, -4.0f, 0.0f)), "iGridSnap");
    EXPECT_EQ(point, osg::Vec3f(-1.5f, -4.0f, 0.0f));
    // In the middle of a cell no node is near enough: (0.5 + 2) / 4.
    EXPECT_EQ(snapWith({"iGridSnap"}, anywhere, osg::Vec3f(0.25f, 1.0f, 0.0f)), "");

    // On a plane lifted by 3, the node is found in the plane's own frame.
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setMatrix(osg::Matrixd::translate(0.0, 0.0, 3.0));
    viewer.setIPlane(plane.get());
    EXPECT_EQ(snapWith({"iGridSnap"}, anywhere, osg::Vec3f(1.1f, -0.1f, 3.0f)), "iGridSnap");
    EXPECT_EQ(point, osg::Vec3f(1.0f, 0.0f, 3.0f));

    viewer.setGrid(nullptr);
    EXPECT_EQ(snapWith({"iGridSnap"}, anywhere, osg::Vec3f(1.1f, -0.1f, 3.0f)), "");
}
