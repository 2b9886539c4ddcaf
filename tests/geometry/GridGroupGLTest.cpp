#include "support/iOffscreenRender.h"

#include <iModelStage/geometry/iGridGroup.h>

#include <gtest/gtest.h>

namespace {

int const kSize = 100;

osg::Vec4ub bytes(int r, int g, int b)
{
    return osg::Vec4ub(static_cast<unsigned char>(r), static_cast<unsigned char>(g), static_cast<unsigned char>(b),
                       255);
}

// Whether a pixel within one of the point shows the colour: lines land on
// one column or the next, as rasterisation rounds.
bool showsNear(iOffscreenRender const& render, osg::Vec3f const& at, osg::Vec4ub const& colour)
{
    osg::Vec2i const centre = render.project(at);
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            if (iOffscreenRender::near(render.pixel(centre.x() + dx, centre.y() + dy), colour, 3))
                return true;
    return false;
}

bool shows(iOffscreenRender const& render, osg::Vec3f const& at, osg::Vec4ub const& colour)
{
    osg::Vec2i const centre = render.project(at);
    return iOffscreenRender::near(render.pixel(centre.x(), centre.y()), colour, 3);
}

} // namespace

TEST(GridGroupGL, PlaneLinesAndAxesShowInTheirColours)
{
    // Four steps of one unit to each side, a strong line every second one.
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_nhs(4);
    grid->set_nvs(4);
    grid->set_nhq(2);
    grid->set_vvq(2);
    grid->set_clrhq(osg::Vec4f(1, 1, 1, 1));
    grid->set_clrvq(osg::Vec4f(1, 1, 0, 1));

    iOffscreenRender render(kSize, kSize);
    ASSERT_TRUE(render.valid()) << "no GL surface: is DISPLAY set?";
    render.setClearColor(osg::Vec4f(0, 0, 0, 1));
    render.setTopView(-5.0, 5.0, -5.0, 5.0);
    render.render(grid.get());
    render.savePng(testing::TempDir() + "grid_group.png");

    osg::Vec4ub const line = bytes(58, 69, 92);
    EXPECT_TRUE(showsNear(render, osg::Vec3f(1, 2.5f, 0), line));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(-3, -2.5f, 0), line));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(2, 2.5f, 0), bytes(255, 255, 255)));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(-2.5f, 4, 0), bytes(255, 255, 0)));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(0, 3.5f, 0), bytes(0, 255, 0)));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(3.5f, 0, 0), bytes(255, 0, 0)));
    // The translucent plane between the lines, black beyond it.
    osg::Vec4ub const plane = bytes(19, 23, 30);
    EXPECT_TRUE(shows(render, osg::Vec3f(1.5f, 1.5f, 0), plane));
    EXPECT_TRUE(shows(render, osg::Vec3f(4.6f, 4.6f, 0), bytes(0, 0, 0)));

    // Hidden parts leave the picture.
    grid->set_gridvisible(false);
    grid->set_planevisible(false);
    render.render(grid.get());
    render.savePng(testing::TempDir() + "grid_group_axes.png");
    EXPECT_TRUE(shows(render, osg::Vec3f(1.5f, 1.5f, 0), bytes(0, 0, 0)));
    EXPECT_FALSE(showsNear(render, osg::Vec3f(1, 2.5f, 0), line));
    EXPECT_TRUE(showsNear(render, osg::Vec3f(0, 3.5f, 0), bytes(0, 255, 0)));
}
