#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iGridGroup.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <cmath>

namespace {

osg::Vec4f const kLine(58 / 255.0f, 69 / 255.0f, 92 / 255.0f, 1.0f);
osg::Vec4f const kStrong(46 / 255.0f, 56 / 255.0f, 74 / 255.0f, 1.0f);

// The grid's three parts: 0 plane, 1 lines, 2 axes.
osg::Geode* part(iGridGroup* grid, unsigned int index)
{
    return index < grid->getNumChildren() ? grid->getChild(index)->asGeode() : nullptr;
}

osg::Geometry* geometryOf(iGridGroup* grid, unsigned int index)
{
    osg::Geode* geode = part(grid, index);
    return geode && geode->getNumDrawables() == 1 ? geode->getDrawable(0)->asGeometry() : nullptr;
}

osg::Vec3Array& verticesOf(osg::Geometry* geometry)
{
    return *static_cast<osg::Vec3Array*>(geometry->getVertexArray());
}

osg::Vec4Array& coloursOf(osg::Geometry* geometry)
{
    return *static_cast<osg::Vec4Array*>(geometry->getColorArray());
}

// A grid that has built itself once, as one outside a layer does on any
// change of its own properties.
osg::ref_ptr<iGridGroup> builtGrid()
{
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->updateGeometry(false);
    return grid;
}

std::string colourBytes(osg::Vec4f const& c)
{
    return f64(c[0]) + f64(c[1]) + f64(c[2]) + f64(c[3]);
}

} // namespace

TEST(GridGroup, DefaultGridHasStrongLinesAtMultiplesOfTen)
{
    osg::ref_ptr<iGridGroup> grid = builtGrid();
    EXPECT_FALSE(grid->isFlagSet(1));
    EXPECT_FALSE(grid->isFlagSet(2));
    EXPECT_FALSE(grid->get_selectable());
    ASSERT_EQ(grid->getNumChildren(), 3u);

    osg::Geometry* plane = geometryOf(grid.get(), 0);
    ASSERT_TRUE(plane);
    osg::Vec3Array& corners = verticesOf(plane);
    ASSERT_EQ(corners.size(), 4u);
    EXPECT_EQ(corners[0], osg::Vec3f(-50, 50, 0));
    EXPECT_EQ(corners[2], osg::Vec3f(50, -50, 0));
    EXPECT_EQ(plane->getColorArray()->getBinding(), osg::Array::BIND_OVERALL);
    EXPECT_EQ(coloursOf(plane)[0], osg::Vec4f(77 / 255.0f, 92 / 255.0f, 123 / 255.0f, 63 / 255.0f));

    osg::Geometry* lines = geometryOf(grid.get(), 1);
    ASSERT_TRUE(lines);
    osg::Vec3Array& vertices = verticesOf(lines);
    osg::Vec4Array& colours = coloursOf(lines);
    ASSERT_EQ(vertices.size(), 400u);
    ASSERT_EQ(colours.size(), 400u);
    ASSERT_EQ(lines->getNumPrimitiveSets(), 1u);
    EXPECT_EQ(lines->getPrimitiveSet(0)->getMode(), GLenum(GL_LINES));
    EXPECT_EQ(lines->getPrimitiveSet(0)->getNumIndices(), 400u);
    EXPECT_EQ(lines->getPrimitiveSet(0)->index(399), 399u);

    int strongX = 0;
    int strongY = 0;
    for (unsigned int v = 0; v < 400; v += 2) {
        ASSERT_EQ(colours[v], colours[v + 1]);
        bool const alongY = v < 200; // lines at constant x come first
        float const at = alongY ? vertices[v].x() : vertices[v].y();
        ASSERT_NE(at, 0.0f);
        bool const strong = std::fmod(std::fabs(at), 10.0f) == 0.0f;
        EXPECT_EQ(colours[v], strong ? kStrong : kLine) << "line at " << at;
        (alongY ? strongX : strongY) += strong;
        if (alongY) {
            EXPECT_EQ(vertices[v].y(), -50.0f);
            EXPECT_EQ(vertices[v + 1].y(), 50.0f);
        } else {
            EXPECT_EQ(vertices[v].x(), -50.0f);
            EXPECT_EQ(vertices[v + 1].x(), 50.0f);
        }
    }
    EXPECT_EQ(strongX, 10);
    EXPECT_EQ(strongY, 10);
    // Outward from the centre, the negative side first.
    EXPECT_EQ(vertices[0].x(), -1.0f);
    EXPECT_EQ(vertices[100].x(), 1.0f);
    EXPECT_EQ(vertices[200].y(), -1.0f);

    osg::Geometry* axes = geometryOf(grid.get(), 2);
    ASSERT_TRUE(axes);
    EXPECT_EQ(verticesOf(axes)[0], osg::Vec3f(-50, 0, 0));
    EXPECT_EQ(verticesOf(axes)[3], osg::Vec3f(0, -50, 0));
    EXPECT_EQ(coloursOf(axes)[1], osg::Vec4f(1, 0, 0, 0.6f));
    EXPECT_EQ(coloursOf(axes)[2], osg::Vec4f(0, 1, 0, 0.6f));
}

TEST(GridGroup, HiddenPartsAreBuiltWithNodeMaskZero)
{
    osg::ref_ptr<iGridGroup> grid = builtGrid();
    grid->set_gridvisible(false);
    ASSERT_EQ(grid->getNumChildren(), 3u);
    EXPECT_EQ(part(grid.get(), 1)->getNodeMask(), 0u);
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(part(grid.get(), 1), 0));
    EXPECT_EQ(verticesOf(geometryOf(grid.get(), 1)).size(), 400u);
    EXPECT_NE(part(grid.get(), 0)->getNodeMask(), 0u);

    grid->set_gridvisible(true);
    EXPECT_NE(part(grid.get(), 1)->getNodeMask(), 0u);

    grid->set_planevisible(false);
    grid->set_axisvisible(false);
    EXPECT_EQ(part(grid.get(), 0)->getNodeMask(), 0u);
    EXPECT_EQ(part(grid.get(), 2)->getNodeMask(), 0u);
}

TEST(GridGroup, OnlyItsOwnPropertiesRebuild)
{
    osg::ref_ptr<iGridGroup> grid = builtGrid();
    osg::ref_ptr<osg::Node> before = grid->getChild(1);
    grid->set_name("another");
    grid->set_clr(osg::Vec4f(0, 0, 1, 1));
    grid->setPosition(osg::Vec3f(1, 2, 3));
    EXPECT_EQ(grid->getChild(1), before.get());

    grid->set_clrh(osg::Vec4f(1, 0, 1, 1));
    EXPECT_NE(grid->getChild(1), before.get());
    EXPECT_EQ(coloursOf(geometryOf(grid.get(), 1))[0], osg::Vec4f(1, 0, 1, 1));
}

TEST(GridGroup, CountsAndPeriodsAtTheirLimits)
{
    osg::ref_ptr<iGridGroup> grid = builtGrid();
    grid->set_nhs(0);
    EXPECT_EQ(verticesOf(geometryOf(grid.get(), 0))[0], osg::Vec3f(0, 50, 0));
    osg::Vec3Array& lines = verticesOf(geometryOf(grid.get(), 1));
    ASSERT_EQ(lines.size(), 200u);
    EXPECT_EQ(lines[0], osg::Vec3f(0, -1, 0));
    EXPECT_EQ(lines[1], osg::Vec3f(0, -1, 0));

    // A period of 0 marks no strong line instead of dividing by zero.
    grid->set_nhs(3);
    grid->set_nhq(0);
    grid->set_vvq(0);
    for (osg::Vec4f const& colour : coloursOf(geometryOf(grid.get(), 1)))
        EXPECT_EQ(colour, kLine);

    // A negative count draws no lines and turns the plane round.
    grid->set_nhs(-2);
    grid->set_nvs(-2);
    EXPECT_EQ(verticesOf(geometryOf(grid.get(), 1)).size(), 0u);
    EXPECT_EQ(verticesOf(geometryOf(grid.get(), 0))[0], osg::Vec3f(2, -2, 0));

    // A count from a damaged file is bounded.
    grid->set_nhs(2000000000);
    grid->set_nvs(0);
    EXPECT_EQ(verticesOf(geometryOf(grid.get(), 1)).size(), 4u * iGridGroup::MaxLinesPerSide);
}

TEST(GridGroup, RecordIsWrittenAndReadInOrder)
{
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_gridvisible(false);
    grid->set_hstep(0.5);
    grid->set_nvs(7);
    grid->set_vvq(5);
    osg::Vec4f const red(1, 0, 0, 1);
    osg::Vec4f const blue(0, 0, 1, 0.5f);
    grid->set_clrhq(red);
    grid->set_clrvq(blue);

    std::string const expected = std::string("\1\0\1", 3) +
                                 colourBytes(osg::Vec4f(77 / 255.0f, 92 / 255.0f, 123 / 255.0f, 63 / 255.0f)) +
                                 f64(0.5) + f64(1.0) + i32(50) + i32(7) + colourBytes(kLine) + colourBytes(kLine) +
                                 i32(10) + i32(5) + colourBytes(red) + colourBytes(blue);
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    grid->write(out);
    EXPECT_EQ(buffer.str(), expected);

    osg::ref_ptr<iGridGroup> back = new iGridGroup;
    Recorder events;
    events.listen(back->sigPropertyChanged, "set");
    iMemoryBuffer in(expected);
    iInStream stream(&in);
    back->read(stream, 99);
    EXPECT_EQ(stream.bytesLeft(), 0);
    EXPECT_EQ(events.take(), (Log{"set:gridvisible", "set:hstep", "set:nvs", "set:vvq", "set:clrhq", "set:clrvq"}));
    EXPECT_FALSE(back->get_gridvisible());
    EXPECT_EQ(back->get_clrvq(), blue);
    // Outside a layer each setter has rebuilt at once.
    EXPECT_EQ(verticesOf(geometryOf(back.get(), 1)).size(), 4u * (50 + 7));
}
