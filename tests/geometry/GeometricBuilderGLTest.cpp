#include "support/iOffscreenRender.h"

#include <iModelStage/geometry/iGeometricBuilder.h>

#include <osg/Geode>
#include <osg/PositionAttitudeTransform>
#include <osgText/Font>
#include <osgText/Text>

#include <gtest/gtest.h>

#include <string>

namespace {

osg::Vec4f const kBackground(0.2f, 0.2f, 0.2f, 1.0f);
osg::Vec4f const kBlue(0.0f, 0.0f, 1.0f, 1.0f);
osg::Vec4f const kGreen(0.0f, 1.0f, 0.0f, 1.0f);
osg::Vec4f const kRed(1.0f, 0.0f, 0.0f, 1.0f);
osg::Vec4f const kWhite(1.0f, 1.0f, 1.0f, 1.0f);

osg::PositionAttitudeTransform* placedAt(osg::Group* scene, osg::Vec3f const& position)
{
    osg::PositionAttitudeTransform* place = new osg::PositionAttitudeTransform;
    place->setPosition(position);
    scene->addChild(place);
    return place;
}

osg::Geode* geodeOf(osg::Drawable* drawable)
{
    osg::Geode* geode = new osg::Geode;
    geode->addDrawable(drawable);
    return geode;
}

std::function<bool(osg::Vec4ub const&)> is(osg::Vec4f const& color)
{
    osg::Vec4ub const wanted = iOffscreenRender::toBytes(color);
    return [wanted](osg::Vec4ub const& p) { return iOffscreenRender::near(p, wanted); };
}

class GeometricBuilderGL : public testing::Test {
protected:
    // World x 0..200 and y 0..100 at two pixels per unit, seen from above.
    GeometricBuilderGL() : render(400, 200)
    {
        render.setTopView(0.0, 200.0, 0.0, 100.0);
        render.setClearColor(kBackground);
        scene = new osg::Group;
        scene->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    }

    void renderAndSave(std::string const& name)
    {
        ASSERT_TRUE(render.render(scene));
        std::string const path = "/tmp/" + name + ".png";
        EXPECT_TRUE(render.savePng(path)) << path;
    }

    osg::Vec4ub at(float x, float y) const
    {
        osg::Vec2i const p = render.project(osg::Vec3f(x, y, 0.0f));
        return render.pixel(p.x(), p.y());
    }

    iOffscreenRender render;
    osg::ref_ptr<osg::Group> scene;
};

} // namespace

TEST_F(GeometricBuilderGL, BoxLineAndArrowAreDrawnWhereTheyStand)
{
    ASSERT_TRUE(render.valid()) << "no GL context: is DISPLAY set?";

    osg::ref_ptr<osg::Geode> box = new osg::Geode;
    iGeometricBuilder::buildBox(box, 40.0, 30.0, 5.0);
    box->getDrawable(0)->asGeometry()->setColorArray(new osg::Vec4Array(osg::Array::BIND_OVERALL, 1, &kBlue));
    placedAt(scene, osg::Vec3f(10, 10, 0))->addChild(box);

    scene->addChild(geodeOf(iGeometricBuilder::buildLine(osg::Vec3f(60, 50, 0), osg::Vec3f(140, 50, 0), kGreen)));
    scene->addChild(geodeOf(iGeometricBuilder::buildArrow(osg::Vec3f(60, 20, 0), osg::Vec3f(140, 20, 0),
                                                          osg::Vec3f(0, 0, 1), 20.0, 10.0, kRed)));
    renderAndSave("GeometricBuilderGL_shapes");

    // The box fills its rectangle and nothing beside it.
    EXPECT_TRUE(is(kBlue)(at(30, 25)));
    EXPECT_TRUE(is(kBlue)(at(11, 11)));
    EXPECT_TRUE(is(kBlue)(at(49, 39)));
    EXPECT_TRUE(is(kBackground)(at(52, 25)));
    EXPECT_TRUE(is(kBackground)(at(30, 42)));

    // The line is dashed: about half of its row is green, in runs.
    osg::Vec2i const lineStart = render.project(osg::Vec3f(60, 50, 0));
    osg::Vec2i const lineEnd = render.project(osg::Vec3f(140, 50, 0));
    int const length = lineEnd.x() - lineStart.x();
    int const green = render.count(is(kGreen), lineStart.x(), lineStart.y() - 1, lineEnd.x(), lineStart.y() + 2);
    EXPECT_GT(green, length / 4);
    EXPECT_LT(green, length * 3 / 4);
    EXPECT_EQ(render.count(is(kGreen)), green);

    // Shaft and filled head; the head spans half its width each side.
    osg::Vec2i const shaft = render.project(osg::Vec3f(90, 20, 0));
    EXPECT_GT(render.count(is(kRed), shaft.x(), shaft.y() - 1, shaft.x() + 1, shaft.y() + 2), 0);
    EXPECT_TRUE(is(kRed)(at(126, 20)));
    EXPECT_TRUE(is(kRed)(at(121, 23.5f)));
    EXPECT_TRUE(is(kRed)(at(121, 16.5f)));
    EXPECT_TRUE(is(kBackground)(at(121, 26)));
    EXPECT_TRUE(is(kBackground)(at(90, 23)));
}

TEST_F(GeometricBuilderGL, LabelShowsItsTextOnTopInContrast)
{
    ASSERT_TRUE(render.valid()) << "no GL context: is DISPLAY set?";

    // A blue box right under the label: the label must hide it.
    osg::ref_ptr<osg::Geode> box = new osg::Geode;
    iGeometricBuilder::buildBox(box, 40.0, 30.0, 50.0);
    box->getDrawable(0)->asGeometry()->setColorArray(new osg::Vec4Array(osg::Array::BIND_OVERALL, 1, &kBlue));
    placedAt(scene, osg::Vec3f(80, 35, 0))->addChild(box);

    osg::PositionAttitudeTransform* label = placedAt(scene, osg::Vec3f(100, 50, -20));
    iGeometricBuilder::buildLabel(label, "Ag", 24.0, kWhite, true, kRed, kRed);
    renderAndSave("GeometricBuilderGL_label");

    auto* text = dynamic_cast<osgText::Text*>(label->getChild(0)->asGroup()->getChild(0)->asGeode()->getDrawable(0));
    ASSERT_TRUE(text && text->getFont());
    EXPECT_NE(text->getFont(), osgText::Font::getDefaultFont());

    // The label is sized in pixels: look around its centre.
    osg::Vec2i const centre = render.project(osg::Vec3f(100, 50, 0));
    int const x0 = centre.x() - 40, x1 = centre.x() + 40, y0 = centre.y() - 25, y1 = centre.y() + 25;
    int const black = render.count(is(osg::Vec4f(0, 0, 0, 1)), x0, y0, x1, y1);
    int const white = render.count(is(kWhite), x0, y0, x1, y1);
    // Glyphs of two letters of 24 pixels, on a white ground.
    EXPECT_GT(black, 40);
    EXPECT_GT(white, 400);
    // No red anywhere: contrast replaced the colours asked for.
    EXPECT_EQ(render.count(is(kRed)), 0);
    // The box shows around the label only.
    EXPECT_GT(render.count(is(kBlue)), 0);
    EXPECT_FALSE(is(kBlue)(render.pixel(centre.x(), centre.y())));
}
