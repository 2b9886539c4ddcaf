#include "viewing/ViewerTestSupport.h"

#include <iModelStage/viewing/iViewerButtonsLayout.h>
#include <iModelStage/viewing/iViewerSliderButton.h>

namespace {

iViewerBaseButton* button(iViewer& viewer, iViewerButtonsLayout::iViewerButtonPos pos, std::size_t i)
{
    return static_cast<iViewerBaseButton*>(viewer.getButtonsLayout()->getButtons(pos)[i].get());
}

struct Recorder : iSlot {
    std::vector<int> values;
    int releases = 0;
    void pressed(int x, int y) { values.insert(values.end(), {x, y}); }
    void moved(int x, int y, int dx, int dy) { values.insert(values.end(), {x, y, dx, dy}); }
    void released() { ++releases; }
};

class ViewerButtonsGL : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(viewer.open(200, 150)) << "no GL surface: is DISPLAY set?"; }

    ProbeViewer viewer;
};

} // namespace

TEST_F(ViewerButtonsGL, RowsStandInTheTopCornersAndCloseUpOverHiddenButtons)
{
    using Pos = iViewerButtonsLayout;
    // Margin 8, spacing 4, buttons of 24: steps of 28 from the corner.
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 0)->getPosition(), osg::Vec2i(8, 118));
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 2)->getPosition(), osg::Vec2i(64, 118));
    EXPECT_EQ(button(viewer, Pos::iButtonsTopRight, 0)->getPosition(), osg::Vec2i(112, 118));
    EXPECT_EQ(button(viewer, Pos::iButtonsTopRight, 2)->getX() + 24, 200 - 8);
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 0)->getVisible(), true);
    EXPECT_TRUE(button(viewer, Pos::iButtonsTopLeft, 0)->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE));

    button(viewer, Pos::iButtonsTopLeft, 1)->setVisible(false);
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 2)->getX(), 36);
    viewer.getButtonsLayout()->setMargin(0);
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 0)->getPosition(), osg::Vec2i(0, 126));

    // A resize moves the rows with the top edge.
    viewer.resizeGL(300, 250);
    EXPECT_EQ(button(viewer, Pos::iButtonsTopLeft, 0)->getY(), viewer.height() - 24);

    // All or none: a single flag bit shows every button.
    viewer.setViewerButtonsFlags(4);
    EXPECT_TRUE(button(viewer, Pos::iButtonsTopLeft, 0)->getVisible());
    viewer.setViewerButtonsFlags(0);
    EXPECT_FALSE(button(viewer, Pos::iButtonsTopRight, 0)->getVisible());
    EXPECT_EQ(button(viewer, Pos::iButtonsTopRight, 0)->getNodeMask(), 0u);
}

TEST_F(ViewerButtonsGL, SliderReportsItsDragOnlyForButtonZero)
{
    auto* pan = dynamic_cast<iViewerSliderButton*>(button(viewer, iViewerButtonsLayout::iButtonsTopRight, 0));
    ASSERT_TRUE(pan);
    Recorder recorder;
    pan->sigSliderPressed.connect(&recorder, &Recorder::pressed);
    pan->sigSliderMoved.connect(&recorder, &Recorder::moved);
    pan->sigReleased.connect(&recorder, &Recorder::released);

    pan->mousePressEvent(1, osg::Vec2i(5, 5));
    pan->mouseMoveEvent(osg::Vec2i(6, 6));
    EXPECT_TRUE(recorder.values.empty());

    pan->mousePressEvent(0, osg::Vec2i(10, 20));
    pan->mouseMoveEvent(osg::Vec2i(13, 18));
    pan->mouseMoveEvent(osg::Vec2i(20, 18));
    pan->mouseReleaseEvent(0, osg::Vec2i(20, 18));
    pan->mouseMoveEvent(osg::Vec2i(30, 30));
    EXPECT_EQ(recorder.values, (std::vector<int>{10, 20, 10, 20, 3, -2, 13, 18, 7, 0}));
    EXPECT_EQ(recorder.releases, 1);
    // The press of a slider keeps the button's scale.
    EXPECT_EQ(pan->getScale(), osg::Vec3d(1, 1, 1));

    iViewerBaseButton* plain = button(viewer, iViewerButtonsLayout::iButtonsTopLeft, 0);
    plain->mouseEnterEvent(osg::Vec2i());
    EXPECT_FLOAT_EQ(float(plain->getScale().x()), 1.2f);
    plain->mousePressEvent(0, osg::Vec2i());
    EXPECT_FLOAT_EQ(float(plain->getScale().x()), 1.13f);
    plain->mouseLeaveEvent(osg::Vec2i());
    EXPECT_EQ(plain->getScale(), osg::Vec3d(1, 1, 1));
}
