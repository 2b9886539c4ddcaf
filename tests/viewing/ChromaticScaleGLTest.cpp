#include "support/iOffscreenRender.h"
#include "viewing/ViewerTestSupport.h"

#include <iModelStage/viewing/iChromaticScaleBuilder.h>
#include <iModelStage/viewing/iViewer.h>

#include <gtest/gtest.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <osg/Geode>
#include <osg/io_utils>

#include <vector>

namespace {

class TestScale : public iChromaticScaleBuilder {
public:
    using iChromaticScaleBuilder::getCamera;
    osg::ref_ptr<osg::Geode> build() { return buildGeode(); }
};

osg::Vec4ub const kWhite(255, 255, 255, 255);

bool dark(osg::Vec4ub const& c)
{
    return c.r() < 100 && c.g() < 100 && c.b() < 100;
}

// A legend from 0 to 100 in four steps, 40 wide and 200 high: its steps
// fall on the five colours of the default grading.
osg::ref_ptr<TestScale> legend()
{
    osg::ref_ptr<TestScale> scale = new TestScale;
    scale->setValMin(0.0);
    scale->setValMax(100.0);
    scale->setNumSteps(4);
    scale->setWidth(40.0);
    scale->setHeight(200.0);
    scale->setPrecision(0);
    scale->setTitle("Legenda");
    return scale;
}

} // namespace

TEST(ChromaticScaleGL, TheBarShowsTheGradingWithNumbersOnItsRight)
{
    iOffscreenRender render(240, 300);
    ASSERT_TRUE(render.valid());
    // One pixel per unit; the bar's foot at the window's (100, 50).
    render.setTopView(-100.0, 140.0, -50.0, 250.0);
    render.setClearColor(osg::Vec4f(1, 1, 1, 1));
    osg::ref_ptr<TestScale> scale = legend();
    scale->setCurrentValue(50.0);
    osg::ref_ptr<osg::Geode> geode = scale->build();
    ASSERT_TRUE(geode.valid());
    render.render(geode.get());
    render.savePng("/tmp/iModelStage-chromatic-scale.png");

    auto at = [&](float x, float y) {
        osg::Vec2i const p = render.project(osg::Vec3f(x, y, 0.0f));
        return render.pixel(p.x(), p.y());
    };
    EXPECT_TRUE(iOffscreenRender::near(osg::Vec4ub(0, 0, 255, 255), at(0, 1))) << at(0, 1);
    EXPECT_TRUE(iOffscreenRender::near(osg::Vec4ub(0, 128, 255, 255), at(0, 25))) << at(0, 25);
    EXPECT_TRUE(iOffscreenRender::near(osg::Vec4ub(0, 255, 0, 255), at(-10, 100))) << at(-10, 100);
    EXPECT_TRUE(iOffscreenRender::near(osg::Vec4ub(255, 255, 0, 255), at(10, 150))) << at(10, 150);
    EXPECT_TRUE(iOffscreenRender::near(osg::Vec4ub(255, 0, 0, 255), at(0, 198))) << at(0, 198);
    EXPECT_EQ(kWhite, at(-25, 100));

    // Numbers to the right only, the title above the bar.
    osg::Vec2i const foot = render.project(osg::Vec3f(0, 0, 0));
    EXPECT_GT(render.count(dark, foot.x() + 22, foot.y() + 90, foot.x() + 60, foot.y() + 110), 5);
    EXPECT_EQ(0, render.count(dark, 0, 0, foot.x() - 21, foot.y() + 200));
    EXPECT_GT(render.count(dark, foot.x() - 40, foot.y() + 202, foot.x() + 40, render.height()), 5);
}

TEST(ChromaticScaleGL, ALegendInAViewerWithItsMarker)
{
    ProbeViewer viewer;
    ASSERT_TRUE(viewer.open(300, 300)) << "no GL surface: is DISPLAY set?";
    osg::ref_ptr<TestScale> scale = legend();
    scale->setViewer(&viewer);
    scale->setPosition(60.0f, 50.0f);
    scale->setCurrentValue(50.0);
    scale->showCurrentValue(true);
    scale->rebuildGeometry();
    ASSERT_NE(nullptr, scale->getCamera());
    EXPECT_TRUE(viewer.getViewLayer()->containsNode(scale->getCamera()));
    int pixelsWide = 0;
    int pixelsHigh = 0;
    scale->getViewportSize(pixelsWide, pixelsHigh);
    EXPECT_EQ(300, pixelsWide);
    EXPECT_EQ(300, pixelsHigh);

    // In pixels from the bottom left: the bar's foot at (60, 50), the
    // marker's tip at its left edge, halfway up.
    ASSERT_TRUE(viewer.paintFrame());
    viewer.frame.save("/tmp/iModelStage-chromatic-scale-viewer.png");
    EXPECT_TRUE(sameColor(viewer.pixel(60, 51), 0, 0, 255, 8)) << viewer.pixel(60, 51).name().toStdString();
    EXPECT_TRUE(sameColor(viewer.pixel(60, 150), 0, 255, 0, 8)) << viewer.pixel(60, 150).name().toStdString();
    EXPECT_TRUE(sameColor(viewer.pixel(60, 248), 255, 0, 0, 8)) << viewer.pixel(60, 248).name().toStdString();
    EXPECT_TRUE(sameColor(viewer.pixel(34, 150), 0, 0, 0, 8)) << viewer.pixel(34, 150).name().toStdString();
    QColor const background = viewer.pixel(5, 5);

    // Out of range the marker goes; taken out of the viewer, the legend goes.
    scale->setCurrentValue(150.0);
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_EQ(background, viewer.pixel(34, 150));
    EXPECT_TRUE(sameColor(viewer.pixel(60, 150), 0, 255, 0, 8));
    scale->setViewer(nullptr);
    EXPECT_EQ(nullptr, scale->getCamera());
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_EQ(background, viewer.pixel(60, 150));
}

TEST(ChromaticScaleGL, SwitchingViewSpaceMovesTheLegendBetweenCameraAndViewLayer)
{
    ProbeViewer viewer;
    ASSERT_TRUE(viewer.open(200, 200)) << "no GL surface: is DISPLAY set?";
    osg::ref_ptr<TestScale> scale = legend();
    scale->setViewer(&viewer);
    scale->rebuildGeometry();
    osg::Group* layer = viewer.getViewLayer();
    unsigned int const children = layer->getNumChildren();

    scale->setViewSpace(iChromaticScaleBuilder::iViewSpaceModel);
    scale->rebuildGeometry();
    EXPECT_EQ(nullptr, scale->getCamera());
    EXPECT_EQ(children, layer->getNumChildren());
    float width = 0.0f;
    float height = 0.0f;
    scale->getSize(width, height);
    EXPECT_GE(width, 40.0f);
    EXPECT_GE(height, 200.0f);

    scale->setViewSpace(iChromaticScaleBuilder::iViewSpaceScreen);
    ASSERT_NE(nullptr, scale->getCamera());
    EXPECT_TRUE(layer->containsNode(scale->getCamera()));
    EXPECT_EQ(children, layer->getNumChildren());
    scale->resetViewer();
    EXPECT_EQ(children - 1, layer->getNumChildren());

    // A legend whose builder goes leaves the viewer with it.
    scale->rebuildGeometry();
    EXPECT_EQ(children, layer->getNumChildren());
    scale = nullptr;
    EXPECT_EQ(children - 1, layer->getNumChildren());
}
