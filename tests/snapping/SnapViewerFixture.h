#ifndef IMODELSTAGE_TESTS_SNAPPING_SNAP_VIEWER_FIXTURE_H
#define IMODELSTAGE_TESTS_SNAPPING_SNAP_VIEWER_FIXTURE_H

#include "snapping/SnapTestSupport.h"
#include "viewing/ViewerTestSupport.h"

#include <string>
#include <vector>

// A top view of a geometrics layer in a viewer of 200 x 200 pixels (16
// units across), with the five snap kinds registered and the snap
// settings at their defaults before and after each test.
class SnapViewerFixture : public testing::Test {
protected:
    void SetUp() override
    {
        layer = new iGeometricsLayer;
        ASSERT_TRUE(viewer.openTopView(layer.get())) << "no GL surface: is DISPLAY set?";
        registerSnapKinds();
        resetSettings();
    }

    void TearDown() override
    {
        resetSettings();
        viewer.setGrid(nullptr);
        viewer.resetIPlane();
    }

    static void resetSettings()
    {
        iBaseSnap::clearExclusionList();
        iGeometricsLayer::setSnapFilterActive(false);
        iGeometricsLayer::setSnapFilter({});
        iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapFree);
        iBaseSnap::setPrecision(100000000.0f);
    }

    // The cursor at a world point, moved by (dx, dy) pixels.
    osg::Vec2f cursorAt(osg::Vec3f const& world, float dx = 0.0f, float dy = 0.0f)
    {
        osg::Vec3d const window = viewer.project(world);
        return osg::Vec2f(float(window.x()) + dx, float(window.y()) + dy);
    }

    // Runs the named snaps at the cursor from a start point; the class of
    // the snap that acted, or "" for none.
    std::string snapWith(std::vector<char const*> const& names, osg::Vec2f const& cursor,
                         osg::Vec3f start = osg::Vec3f(50.0f, 50.0f, 50.0f))
    {
        point = start;
        iBaseSnap* snap = iBaseSnap::snapMulti(onlySnaps(names), layer.get(), &viewer, point, cursor);
        return snap ? snap->getClassName() : "";
    }

    ProbeViewer viewer;
    osg::ref_ptr<iGeometricsLayer> layer;
    osg::Vec3f point;
};

#endif
