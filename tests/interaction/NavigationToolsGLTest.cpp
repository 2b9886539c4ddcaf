#include "interaction/ToolsGLFixture.h"

#include <iModelStage/interaction/iPanIA.h>
#include <iModelStage/interaction/iRotateViewIA.h>
#include <iModelStage/interaction/iZoomAllIA.h>
#include <iModelStage/interaction/iZoomInteractiveIA.h>
#include <iModelStage/interaction/iZoomSelectedIA.h>
#include <iModelStage/interaction/iZoomWindowIA.h>

I_REGISTER_CLASS(iSnapTestGroup)
I_REGISTER_CLASS(iSnapTestRenderer)

namespace {

class NavigationTools : public ToolsGLFixture {};

TEST_F(NavigationTools, DragsMoveTheCameraAsTheViewersOwnOperations)
{
    square(-2.0f, -2.0f, 2.0f, 2.0f);
    std::vector<osg::Vec2f> const path{{100, 100}, {110, 104}, {130, 90}};

    viewer.resetToHome();
    auto* pan = new iPanIA;
    ASSERT_TRUE(manager.pushInteractor(pan, false));
    drag(pan, path);
    osg::Matrixd const panned = viewMatrix();
    viewer.resetToHome();
    viewer.pan(100, 100, 110, 104);
    viewer.pan(110, 104, 130, 90);
    EXPECT_TRUE(sameMatrix(panned, viewMatrix(), 1e-6));
    EXPECT_FALSE(sameMatrix(panned, osg::Matrixd::identity()));

    // A second pan while the first is current is refused.
    EXPECT_FALSE(manager.pushInteractor(new iPanIA, false));
    manager.loop();

    viewer.resetToHome();
    auto* zoom = new iZoomInteractiveIA;
    ASSERT_TRUE(manager.pushInteractor(zoom, false));
    osg::Matrixd const before = viewMatrix();
    drag(zoom, path);
    osg::Matrixd const zoomed = viewMatrix();
    EXPECT_FALSE(sameMatrix(before, zoomed, 1e-6));
    viewer.resetToHome();
    viewer.zoomFactor((100.0 - 104.0) * 0.003);
    viewer.zoomFactor((104.0 - 90.0) * 0.003);
    EXPECT_TRUE(sameMatrix(zoomed, viewMatrix(), 1e-6));
    manager.loop();

    viewer.resetToHome();
    auto* window = new iZoomWindowIA;
    ASSERT_TRUE(manager.pushInteractor(window, false));
    window->start();
    window->click(pointAt(window, {60, 60}));
    window->move(pointAt(window, {120, 140}));
    // The band is shown while dragging, and spans the two corners.
    ASSERT_TRUE(window->getBand().isShownIn(&viewer));
    auto* corners = static_cast<osg::Vec3Array*>(window->getBand().getGeometry()->getVertexArray());
    EXPECT_EQ((*corners)[0], osg::Vec3f(60, 60, 0));
    EXPECT_EQ((*corners)[2], osg::Vec3f(120, 140, 0));
    window->release(pointAt(window, {120, 140}));
    EXPECT_FALSE(window->getBand().isShownIn(&viewer));
    osg::Matrixd const windowed = viewMatrix();
    viewer.resetToHome();
    viewer.zoomWindow(60, 60, 120, 140);
    EXPECT_TRUE(sameMatrix(windowed, viewMatrix(), 1e-6));
    manager.loop();
}

TEST_F(NavigationTools, RotateViewWithoutOffsetKeepsTheCameraAndTurnsWithIt)
{
    viewer.setViewLookup(iView::iLookupAxonometric);
    auto* rotate = new iRotateViewIA;
    ASSERT_TRUE(manager.pushInteractor(rotate, false));
    osg::Matrixd const before = viewMatrix();
    rotate->start();
    rotate->click(pointAt(rotate, {100, 100}));
    rotate->move(pointAt(rotate, {100, 100}));
    EXPECT_TRUE(sameMatrix(before, viewMatrix(), 1e-4));
    rotate->move(pointAt(rotate, {150, 100}));
    EXPECT_FALSE(sameMatrix(before, viewMatrix(), 1e-3));
    rotate->release(pointAt(rotate, {150, 100}));
}

TEST_F(NavigationTools, ZoomAllAndZoomSelectedFitTheObjects)
{
    osg::ref_ptr<iSnapTestGroup> a = square(20.0f, 20.0f, 24.0f, 24.0f);
    osg::ref_ptr<iSnapTestGroup> b = square(-30.0f, 0.0f, -28.0f, 2.0f);
    ASSERT_TRUE(manager.pushInteractor(new iZoomAllIA, false));
    osg::Matrixd const all = viewMatrix();
    viewer.resetToHome();
    viewer.zoomBounds(NodeList{a, b});
    EXPECT_TRUE(sameMatrix(all, viewMatrix(), 1e-6));

    // An empty selection moves nothing.
    ASSERT_TRUE(manager.pushInteractor(new iZoomSelectedIA, false));
    EXPECT_TRUE(sameMatrix(all, viewMatrix(), 1e-9));
    layer->addObjectSelection(b.get());
    ASSERT_TRUE(manager.pushInteractor(new iZoomSelectedIA, false));
    osg::Matrixd const selected = viewMatrix();
    viewer.zoomBounds(NodeList{b});
    EXPECT_TRUE(sameMatrix(selected, viewMatrix(), 1e-6));
    EXPECT_FALSE(sameMatrix(selected, all, 1e-6));
}

} // namespace
