#include "viewing/ManipulatorTestSupport.h"

#include <iModelStage/viewing/iCameraManipulator.h>
#include <iModelStage/viewing/iViewer.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using Event = osgGA::GUIEventAdapter;

constexpr unsigned int kRight = Event::RIGHT_MOUSE_BUTTON;
constexpr unsigned int kMiddle = Event::MIDDLE_MOUSE_BUTTON;
constexpr unsigned int kCtrl = Event::MODKEY_LEFT_CTRL | Event::MODKEY_RIGHT_CTRL;

struct Moves {
    bool rotate = false;
    bool pan = false;
    bool zoom = false;
};

// One short drag of each kind, each from the same start.
Moves tryEachMotion(iCameraManipulator* manipulator, osgGA::GUIActionAdapter& aa)
{
    auto moved = [&](unsigned int buttons, unsigned int modifiers) {
        manipulator->setCenter(osg::Vec3d());
        manipulator->setRotation(osg::Quat());
        manipulator->setDistance(10.0);
        osg::Matrixd const before = manipulator->getMatrix();
        manipulator->handle(*pointerEvent(Event::PUSH, 0.0f, 0.0f, 0.0, buttons, modifiers), aa);
        manipulator->handle(*pointerEvent(Event::DRAG, 0.1f, 0.1f, 0.1, buttons, modifiers), aa);
        manipulator->handle(*pointerEvent(Event::RELEASE, 0.1f, 0.1f, 0.5, 0), aa);
        return !(before == manipulator->getMatrix());
    };
    Moves moves;
    moves.rotate = moved(kRight, 0);
    moves.pan = moved(kMiddle, 0);
    moves.zoom = moved(kRight, kCtrl);
    return moves;
}

// A viewer switched at once to the free lookup.
std::unique_ptr<iViewer> freeViewer()
{
    auto viewer = std::make_unique<iViewer>(nullptr, Qt::WindowFlags());
    viewer->resize(320, 240);
    viewer->init();
    viewer->setLookupSwitchAnimate(false);
    viewer->setViewLookup(iView::iLookupFree);
    return viewer;
}

} // namespace

TEST(CameraManipulatorGL, EachMotionWaitsForItsLookupOfTheViewer)
{
    // The free lookup installs the manipulator; the viewer's first frame
    // would then introduce the two.
    std::unique_ptr<iViewer> viewer = freeViewer();
    auto* manipulator = dynamic_cast<iCameraManipulator*>(viewer->getCameraManipulator());
    ASSERT_NE(nullptr, manipulator);
    osg::ref_ptr<iCameraManipulator> held = manipulator;
    manipulator->init(*plainEvent(Event::FRAME, 0.0), *viewer);

    Moves moves = tryEachMotion(manipulator, *viewer);
    EXPECT_TRUE(moves.rotate && moves.pan && moves.zoom);

    viewer->setViewLookup(iView::iLookupAxonometric);
    EXPECT_EQ(nullptr, viewer->getCameraManipulator());
    moves = tryEachMotion(manipulator, *viewer);
    EXPECT_TRUE(moves.rotate);
    EXPECT_TRUE(moves.pan);
    EXPECT_FALSE(moves.zoom);

    viewer->setViewLookup(iView::iLookupBack);
    moves = tryEachMotion(manipulator, *viewer);
    EXPECT_FALSE(moves.rotate || moves.pan || moves.zoom);
}

TEST(CameraManipulatorGL, TheFreeLookupStartsAtHomeAndKeepsItsPlaceAcrossSwitches)
{
    std::unique_ptr<iViewer> viewer = freeViewer();
    auto* manipulator = dynamic_cast<iCameraManipulator*>(viewer->getCameraManipulator());
    ASSERT_NE(nullptr, manipulator);
    EXPECT_FALSE(manipulator->getAutoComputeHomePosition());

    osg::Matrixd const home = osg::Matrixd::lookAt(osg::Vec3d(-8, -25, 12), osg::Vec3d(), osg::Vec3d(0, 0, 1));
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(home.ptr()[i], manipulator->getInverseMatrix().ptr()[i], 1e-5) << i;

    manipulator->setCenter(osg::Vec3d(1, 2, 3));
    viewer->setViewLookup(iView::iLookupTop);
    EXPECT_EQ(nullptr, viewer->getCameraManipulator());
    viewer->setViewLookup(iView::iLookupFree);
    EXPECT_EQ(manipulator, viewer->getCameraManipulator());
    EXPECT_NEAR(0.0, (manipulator->getCenter() - osg::Vec3d(1, 2, 3)).length(), 1e-9);
}
