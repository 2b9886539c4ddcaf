#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iCoordinateSystem.h>

namespace {

// A top view of the red square of side 4 around the origin, 16 units
// over 200 pixels.
class ViewerPickingGL : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(viewer.open(200, 200)) << "no GL surface: is DISPLAY set?";
        viewer.setLookupSwitchAnimate(false);
        viewer.setViewLookup(iView::iLookupTop);
        square = makeRedSquare();
        model = new iBaseModel;
        model->addObject(square.get(), true);
        viewer.setViewModel(model.get());
    }

    bool hitsSquare(osgUtil::LineSegmentIntersector::Intersections const& hits)
    {
        for (auto const& hit : hits)
            for (osg::Node* node : hit.nodePath)
                if (node == square.get())
                    return true;
        return false;
    }

    ProbeViewer viewer;
    osg::ref_ptr<iViewerTestGroup> square;
    osg::ref_ptr<iBaseModel> model;
};

bool isRed(QColor const& c)
{
    return sameColor(c, 255, 0, 0);
}

} // namespace

TEST_F(ViewerPickingGL, RayAndBoxFindTheSquareOnlyWhereItIs)
{
    osgUtil::LineSegmentIntersector::Intersections hits;
    ASSERT_TRUE(viewer.getLineSegmentIntersections(osg::Vec2f(0.1f, 0.1f), hits));
    ASSERT_TRUE(hitsSquare(hits));
    osg::Vec3d const at = hits.begin()->getWorldIntersectPoint();
    EXPECT_NEAR(at.x(), 0.8, 0.05);
    EXPECT_NEAR(at.y(), 0.8, 0.05);
    EXPECT_NEAR(at.z(), 0.0, 1e-4);

    // A miss leaves the result as it was.
    EXPECT_FALSE(viewer.getLineSegmentIntersections(osg::Vec2f(0.4f, 0.6f), hits));
    EXPECT_TRUE(hitsSquare(hits));

    // The box reaches the square from 30 pixels away only when it is
    // wider than 30 pixels.
    osgUtil::PolytopeIntersector::Intersections inBox;
    osg::Vec2f const beside(0.55f, 0.2f); // at (4.4, 1.6), clear of the axis cross
    EXPECT_FALSE(viewer.getPolytotypeIntersections(beside, 10, 10, inBox));
    EXPECT_TRUE(inBox.empty());
    EXPECT_TRUE(viewer.getPolytotypeIntersections(beside, 40, 10, inBox));
    EXPECT_FALSE(inBox.empty());
}

TEST_F(ViewerPickingGL, ClipBoxCutsThePictureButNotThePick)
{
    int const insideX = 108, outsideX = 120, y = 110; // 0.64 and 1.6 units
    viewer.setClipBoxData(osg::BoundingBox(-1, -5, -5, 1, 5, 5), osg::Matrixd::identity());
    EXPECT_FALSE(viewer.isPointClipped(osg::Vec3f(1.6f, 0.8f, 0.0f)));
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(isRed(viewer.pixel(outsideX, y)));

    viewer.setClipBoxEnabled(true);
    ASSERT_TRUE(viewer.paintFrame());
    viewer.frame.save(QString::fromStdString(testing::TempDir() + "viewer_clipped.png"));
    EXPECT_TRUE(isRed(viewer.pixel(insideX, y)));
    EXPECT_TRUE(sameColor(viewer.pixel(outsideX, y), 62, 74, 98));
    EXPECT_TRUE(viewer.isPointClipped(osg::Vec3f(1.6f, 0.8f, 0.0f)));
    EXPECT_FALSE(viewer.isPointClipped(osg::Vec3f(1.0f, 0.8f, 0.0f)));
    EXPECT_EQ(viewer.getSceneData(), model->getRoot());

    // Picking does not see the planes.
    osgUtil::LineSegmentIntersector::Intersections hits;
    EXPECT_TRUE(viewer.getLineSegmentIntersections(osg::Vec2f(0.16f, 0.1f), hits));

    // The box moves with its matrix.
    viewer.setClipBoxData(osg::BoundingBox(-1, -5, -5, 1, 5, 5), osg::Matrixd::translate(1.5, 0, 0));
    EXPECT_FALSE(viewer.isPointClipped(osg::Vec3f(1.6f, 0.8f, 0.0f)));
    EXPECT_TRUE(viewer.isPointClipped(osg::Vec3f(0.0f, 0.8f, 0.0f)));

    viewer.setClipBoxEnabled(false);
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(isRed(viewer.pixel(outsideX, y)));
    EXPECT_FALSE(viewer.isPointClipped(osg::Vec3f(0.0f, 0.8f, 0.0f)));
}

TEST_F(ViewerPickingGL, InvalidClipBoxFitsTheModelAndKeepsTheFit)
{
    viewer.setClipBoxData(osg::BoundingBox(), osg::Matrixd::identity());
    viewer.setClipBoxEnabled(true);
    osg::BoundingSphere const sphere = model->getRoot()->getBound();
    osg::BoundingBox const fitted = viewer.getClipBox();
    EXPECT_NEAR(fitted.xMax(), sphere.center().x() + sphere.radius(), 1e-5);
    EXPECT_NEAR(fitted.zMin(), sphere.center().z() - sphere.radius(), 1e-5);
    viewer.setClipBoxEnabled(false);
    EXPECT_EQ(viewer.getClipBox()._max, fitted._max);

    // Resetting all viewers clears the switch, the box and the plane.
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    viewer.setIPlane(plane.get());
    viewer.setClipBoxEnabled(true);
    iViewerManager::getInstance()->resetAll();
    EXPECT_FALSE(viewer.getClipBoxEnabled());
    EXPECT_FALSE(viewer.getClipBox().valid());
    EXPECT_NE(viewer.getIPlane(), plane.get());
}

TEST_F(ViewerPickingGL, RayMeetsTheInputPlaneOnlyInFront)
{
    osg::Vec3f start, end;
    ASSERT_TRUE(viewer.computeCameraLineIntersector(150, 100, start, end));
    EXPECT_NEAR(start.x(), 4.0, 1e-4);
    EXPECT_NEAR(end.x(), 4.0, 1e-4);
    EXPECT_GT(start.z(), end.z());

    // Window pixels from the bottom-left corner, small ones too.
    ASSERT_TRUE(viewer.computeCameraLineIntersector(0, 0, start, end));
    EXPECT_NEAR(start.x(), -8.0, 1e-4);
    EXPECT_NEAR(start.y(), -8.0, 1e-4);

    osg::Vec3f point(7, 7, 7);
    iCoordinateSystem ground(osg::Vec3f(0, 0, -3), osg::Vec3f(1, 0, 0), osg::Vec3f(0, 1, 0), osg::Vec3f(0, 0, 1));
    ASSERT_TRUE(viewer.computeIPlaneIntersection(ground, 150, 50, point));
    EXPECT_NEAR(point.x(), 4.0, 1e-4);
    EXPECT_NEAR(point.y(), -4.0, 1e-4);
    EXPECT_FLOAT_EQ(point.z(), -3.0f);

    // Along the ray, and behind the camera: no point, and point untouched.
    iCoordinateSystem wall(osg::Vec3f(), osg::Vec3f(0, 1, 0), osg::Vec3f(0, 0, 1), osg::Vec3f(1, 0, 0));
    EXPECT_FALSE(viewer.computeIPlaneIntersection(wall, 150, 50, point));
    iCoordinateSystem sky(osg::Vec3f(0, 0, 500), osg::Vec3f(1, 0, 0), osg::Vec3f(0, 1, 0), osg::Vec3f(0, 0, 1));
    EXPECT_FALSE(viewer.computeIPlaneIntersection(sky, 150, 50, point));
    EXPECT_NEAR(point.x(), 4.0, 1e-4);
}

TEST_F(ViewerPickingGL, RendererMasksDecideWhatIsDrawnAndBuilt)
{
    EXPECT_EQ(viewer.isValidRendererMask(1), 0);
    EXPECT_EQ(viewer.isValidRendererMask(4), -1);
    EXPECT_FALSE(iGeometryRendererManager::canRender(4));

    int changes = 0;
    struct Counter : iSlot {
        int* count;
        void hit() { ++*count; }
    } counter;
    counter.count = &changes;
    viewer.sigRendererMaskChanged.connect(&counter, &Counter::hit);

    // The square's renderer on bit 2 only: not drawn until a row shows it.
    auto* renderer = static_cast<iViewerTestRenderer*>(square->getCachedRenderer()[0].get());
    renderer->setRenderMask(4);
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(110, 110), 62, 74, 98));
    EXPECT_TRUE(viewer.addRendererMask(4, QStringLiteral("Extra"), nullptr));
    EXPECT_EQ(viewer.getRendererMaskItems().size(), 2u);
    EXPECT_EQ(viewer.getRendererMaskItems()[1].getOptClass(), "");
    EXPECT_TRUE(iGeometryRendererManager::canRender(4));
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(isRed(viewer.pixel(110, 110)));

    EXPECT_TRUE(viewer.setRendererMaskEnabled(6, false));
    EXPECT_FALSE(viewer.isRendererMaskEnabled(4));
    EXPECT_FALSE(viewer.isRendererMaskNodeEnabled(renderer));
    EXPECT_TRUE(viewer.isValidRendererMaskNode(renderer));
    EXPECT_FALSE(viewer.setRendererMaskEnabled(8, false));
    EXPECT_EQ(changes, 1);
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(110, 110), 62, 74, 98));
    EXPECT_FALSE(iGeometryRendererManager::canRender(4));

    // An overlapping row replaces the first one, silently.
    EXPECT_TRUE(viewer.addRendererMask(3, QStringLiteral("Both"), "opt"));
    EXPECT_EQ(viewer.getRendererMaskItems()[0].getMask(), 3u);
    EXPECT_EQ(viewer.getRendererMaskItems()[0].getOptClass(), "opt");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(viewer.getCamera()->getCullMask(), 3u);

    // Hidden viewers answer for nothing.
    viewer.hide();
    EXPECT_FALSE(iGeometryRendererManager::canRender(1));
    viewer.show();
    EXPECT_TRUE(iGeometryRendererManager::canRender(1));

    // Everything off: nothing of the scene is drawn.
    renderer->setRenderMask(1);
    viewer.setRendererMaskEnabled(3, false);
    EXPECT_EQ(viewer.getCamera()->getCullMask(), 0u);
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(110, 110), 62, 74, 98));
}

TEST_F(ViewerPickingGL, GridFollowsTheInputPlaneInForce)
{
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    viewer.setGrid(grid.get());
    EXPECT_EQ(viewer.getGrid(), grid.get());
    EXPECT_EQ(viewer.getViewLayer()->getChild(1), grid.get());

    viewer.setViewLookup(iView::iLookupFront);
    osg::Vec3d const front = osg::Matrixd::transform3x3(osg::Vec3d(0, 0, 1), grid->getMatrix());
    EXPECT_NEAR(front.y(), 1.0, 1e-6);

    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setMatrix(osg::Matrixd::translate(0, 0, 5));
    viewer.setIPlane(plane.get());
    EXPECT_NEAR(grid->getMatrix().getTrans().z(), 5.0, 1e-9);

    // Any other behaviour leaves the grid where it is.
    viewer.setGridBevahior(static_cast<iViewer::iGridBevahior>(0));
    viewer.resetIPlane();
    EXPECT_NEAR(grid->getMatrix().getTrans().z(), 5.0, 1e-9);

    osg::ref_ptr<iGridGroup> other = new iGridGroup;
    viewer.setGrid(other.get());
    EXPECT_EQ(viewer.getViewLayer()->getNumChildren(), 2u);
    EXPECT_EQ(viewer.getViewLayer()->getChild(1), other.get());
    viewer.setGrid(nullptr);
    EXPECT_EQ(viewer.getViewLayer()->getNumChildren(), 1u);
}
