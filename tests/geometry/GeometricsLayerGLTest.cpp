#include "geometry/GeometryTestSupport.h"

#include "support/iOffscreenRender.h"

#include <iModelStage/geometry/iGeometricsLayer.h>

#include <gtest/gtest.h>

namespace {

GEOMETRY_TEST_GROUP(iGLLayerGroup)
GEOMETRY_TEST_RENDERER(iGLLayerRenderer)

int const kWidth = 128;
int const kHeight = 64;

testing::AssertionResult shows(iOffscreenRender const& render, osg::Vec3f const& at, osg::Vec4ub const& colour)
{
    osg::Vec2i const pixel = render.project(at);
    osg::Vec4ub const seen = render.pixel(pixel.x(), pixel.y());
    if (iOffscreenRender::near(seen, colour, 3))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "pixel " << int(seen.r()) << "," << int(seen.g()) << "," << int(seen.b());
}

// Only the given channel (0 red, 1 green, 2 blue) is lit.
testing::AssertionResult hasHue(iOffscreenRender const& render, osg::Vec3f const& at, int channel)
{
    osg::Vec2i const pixel = render.project(at);
    osg::Vec4ub const seen = render.pixel(pixel.x(), pixel.y());
    for (int c = 0; c < 3; ++c)
        if ((seen[c] > 20) != (c == channel))
            return testing::AssertionFailure() << "pixel " << int(seen.r()) << "," << int(seen.g()) << ","
                                               << int(seen.b());
    return testing::AssertionSuccess();
}

osg::Vec4ub bytes(float r, float g, float b)
{
    return iOffscreenRender::toBytes(osg::Vec4f(r, g, b, 1.0f));
}

} // namespace

I_REGISTER_CLASS(iGLLayerGroup)
I_REGISTER_CLASS(iGLLayerRenderer)

TEST(GeometricsLayerGL, SelectedShowsAmberAndFilteredShowsGreyUntilCleared)
{
    ASSERT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iGLLayerGroup", "iGLLayerRenderer", 1));
    osg::ref_ptr<iGeometricsLayer> layer = new iGeometricsLayer;
    osg::ref_ptr<iGLLayerGroup> left = new iGLLayerGroup;
    osg::ref_ptr<iGLLayerGroup> right = new iGLLayerGroup;
    left->setColor(osg::Vec4f(1, 0, 0, 1));
    right->setColor(osg::Vec4f(0, 1, 0, 1));
    right->setMatrix(osg::Matrixd::translate(1, 0, 0));
    layer->addObject(left.get(), true);
    layer->addObject(right.get(), true);
    layer->loop();

    osg::ref_ptr<osg::Group> scene = new osg::Group;
    scene->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    scene->addChild(layer->getRoot());
    iOffscreenRender render(kWidth, kHeight);
    ASSERT_TRUE(render.valid()) << "no GL surface: is DISPLAY set?";
    render.setTopView(0.0, 2.0, 0.0, 1.0);
    render.setClearColor(osg::Vec4f(0, 0, 0, 1));
    osg::Vec3f const leftMiddle(0.5f, 0.5f, 0.0f);
    osg::Vec3f const rightMiddle(1.5f, 0.5f, 0.0f);

    render.render(scene.get());
    EXPECT_TRUE(shows(render, leftMiddle, bytes(1, 0, 0)));
    EXPECT_TRUE(shows(render, rightMiddle, bytes(0, 1, 0)));

    // Lit with no light: the selection shows its own amber glow at 0.65
    // over the black background, the filtered object its ambient share of
    // the light model (0.2 of 0.2) at 0.2.
    layer->addObjectSelection(left.get());
    layer->setSelectionFilter({"iNodeGroup"});
    layer->setSelectionFilterActive(true);
    render.render(scene.get());
    render.savePng(testing::TempDir() + "geometrics_layer_selected_filtered.png");
    EXPECT_TRUE(shows(render, leftMiddle, bytes(0.95f * 0.65f, 0.61f * 0.65f, 0.11f * 0.65f)));
    EXPECT_TRUE(shows(render, rightMiddle, bytes(0.008f, 0.008f, 0.008f)));

    // Back to their own colours. Lighting stays forced on in the state set
    // copied for the highlight, so without a light they show darker.
    layer->clearObjectSelection();
    layer->setSelectionFilterActive(false);
    render.render(scene.get());
    render.savePng(testing::TempDir() + "geometrics_layer_cleared.png");
    EXPECT_TRUE(hasHue(render, leftMiddle, 0));
    EXPECT_TRUE(hasHue(render, rightMiddle, 1));
}
