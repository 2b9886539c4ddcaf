#include "geometry/GeometryTestSupport.h"

#include "support/iOffscreenRender.h"

#include <gtest/gtest.h>

namespace {

GEOMETRY_TEST_GROUP(iGLQuadGroup)

// Draws the left half of the unit square.
class iHalfQuadRenderer : public iQuadTestRenderer {
    I_CLASS(iHalfQuadRenderer, iQuadTestRenderer, 1)
    I_OSG_NODE(iHalfQuadRenderer)
public:
    iHalfQuadRenderer() { corner[2] = 0.5f; }
    iHalfQuadRenderer(iHalfQuadRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iQuadTestRenderer(other, copyop)
    {
    }

protected:
    ~iHalfQuadRenderer() override = default;
};

int const kSize = 64;

bool shows(iOffscreenRender const& render, int x, int y, osg::Vec4f const& colour)
{
    return iOffscreenRender::near(render.pixel(x, y), iOffscreenRender::toBytes(colour), 2);
}

} // namespace

I_REGISTER_CLASS(iQuadTestRenderer)
I_REGISTER_CLASS(iGLQuadGroup)
I_REGISTER_CLASS(iHalfQuadRenderer)

TEST(GeometricGroupGL, RendererDrawsInTheGroupColourAndFollowsColourChanges)
{
    ASSERT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iGLQuadGroup", "iHalfQuadRenderer", 1));
    osg::ref_ptr<iGLQuadGroup> group = new iGLQuadGroup;
    group->setColor(osg::Vec4f(1, 0, 0, 1));
    group->updateGeometry(false);
    ASSERT_EQ(group->getCachedRenderer().size(), 1u);
    auto* renderer = dynamic_cast<iHalfQuadRenderer*>(group->getCachedRenderer()[0].get());
    ASSERT_TRUE(renderer);

    osg::ref_ptr<osg::Group> root = new osg::Group;
    root->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    root->addChild(group.get());
    iOffscreenRender render(kSize, kSize);
    ASSERT_TRUE(render.valid()) << "no GL surface: is DISPLAY set?";
    render.setTopView(0.0, 1.0, 0.0, 1.0);
    osg::Vec4f const black(0, 0, 0, 1);
    int const left = kSize / 4;
    int const right = 3 * kSize / 4;
    int const middle = kSize / 2;

    render.render(root.get());
    render.savePng(testing::TempDir() + "geometric_group_red.png");
    EXPECT_TRUE(shows(render, left, middle, osg::Vec4f(1, 0, 0, 1)));
    EXPECT_TRUE(shows(render, right, middle, black));

    // A new colour shows at the next frame with the same drawables.
    osg::Node* drawn = renderer->getChild(0);
    group->setColor(osg::Vec4f(0, 1, 0, 1));
    render.render(root.get());
    render.savePng(testing::TempDir() + "geometric_group_green.png");
    EXPECT_EQ(renderer->rebuilds, 1);
    EXPECT_EQ(renderer->getChild(0), drawn);
    EXPECT_TRUE(shows(render, left, middle, osg::Vec4f(0, 1, 0, 1)));
    EXPECT_TRUE(shows(render, right, middle, black));

    // Through the property as well.
    group->set_clr(osg::Vec4f(0, 0, 1, 1));
    render.render(root.get());
    EXPECT_TRUE(shows(render, left, middle, osg::Vec4f(0, 0, 1, 1)));
    EXPECT_EQ(renderer->rebuilds, 1);
}
