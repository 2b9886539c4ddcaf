#include <iModelStage/viewing/iColorRange.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

void expectColor(osg::Vec4f const& expected, osg::Vec4 const& actual)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_FLOAT_EQ(expected[i], actual[i]) << i;
}

osg::Vec4f const kBlue(0, 0, 1, 1);
osg::Vec4f const kGreen(0, 1, 0, 1);
osg::Vec4f const kRed(1, 0, 0, 1);

} // namespace

TEST(ColorRange, GradesBlueCyanGreenYellowRedOverTheRange)
{
    osg::ref_ptr<iColorRange> range = new iColorRange(10.0f, 18.0f);
    ASSERT_EQ(5u, range->getColors().size());
    expectColor(kBlue, range->getColor(10.0f));
    expectColor(osg::Vec4f(0, 1, 1, 1), range->getColor(12.0f));
    expectColor(kGreen, range->getColor(14.0f));
    expectColor(osg::Vec4f(1, 1, 0, 1), range->getColor(16.0f));
    expectColor(kRed, range->getColor(18.0f));
    // Between two colours each channel goes linearly, alpha included.
    expectColor(osg::Vec4f(0, 0.5f, 1, 1), range->getColor(11.0f));
    expectColor(osg::Vec4f(1, 0.25f, 0, 1), range->getColor(17.5f));
    range->setColors({osg::Vec4f(0, 0, 0, 0), osg::Vec4f(1, 1, 1, 1)});
    expectColor(osg::Vec4f(0.25f, 0.25f, 0.25f, 0.25f), range->getColor(12.0f));
}

TEST(ColorRange, EdgesOfTheRangeAndOfTheList)
{
    osg::ref_ptr<iColorRange> range = new iColorRange(0.0f, 1.0f, {kBlue, kGreen, kRed});
    expectColor(kBlue, range->getColor(-5.0f));
    expectColor(kRed, range->getColor(5.0f));
    expectColor(kBlue, range->getColor(std::numeric_limits<float>::quiet_NaN()));

    range->setColors({});
    expectColor(osg::Vec4f(1, 1, 1, 1), range->getColor(0.5f));
    range->setColors({kGreen});
    expectColor(kGreen, range->getColor(-1.0f));
    expectColor(kGreen, range->getColor(0.3f));

    // An empty range gives the first colour at its value, the end colours beside it.
    osg::ref_ptr<iColorRange> flat = new iColorRange(2.0f, 2.0f, {kBlue, kGreen, kRed});
    expectColor(kBlue, flat->getColor(2.0f));
    expectColor(kRed, flat->getColor(3.0f));
    expectColor(kBlue, flat->getColor(1.0f));

    // A range too wide for a float still gives a colour of the list.
    osg::ref_ptr<iColorRange> wide = new iColorRange(-3e38f, 3e38f, {kBlue, kRed});
    expectColor(kBlue, wide->getColor(0.0f));
}
