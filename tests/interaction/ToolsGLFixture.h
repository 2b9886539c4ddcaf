#ifndef IMODELSTAGE_TESTS_INTERACTION_TOOLS_GL_FIXTURE_H
#define IMODELSTAGE_TESTS_INTERACTION_TOOLS_GL_FIXTURE_H

#include "snapping/SnapTestSupport.h"
#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iIAPointBuilder.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorManager.h>

#include <osg/Matrixd>

// A top view of a geometrics layer in a viewer of 200 x 200 pixels (16
// units across, 12.5 pixels a unit, the origin in the middle), with a
// manager bound to it; tools are driven as the event handler drives them.
class ToolsGLFixture : public testing::Test {
protected:
    void SetUp() override
    {
        layer = new iGeometricsLayer;
        ASSERT_TRUE(viewer.openTopView(layer.get())) << "no GL surface: is DISPLAY set?";
        manager.setCurrentViewer(&viewer);
    }

    // A filled square between two corners at height z.
    osg::ref_ptr<iSnapTestGroup> square(float x0, float y0, float x1, float y1, float z = 0.0f)
    {
        return addSnapTestGroup(
            layer.get(), {{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}}, GL_QUADS);
    }

    // Window pixel of a world point.
    osg::Vec2f pixel(osg::Vec3f const& world)
    {
        osg::Vec3d const w = viewer.project(world);
        return osg::Vec2f(float(w.x()), float(w.y()));
    }

    iIAPoint pointAt(iInteractor* tool, osg::Vec2f const& at)
    {
        iIAPointBuilder builder(&viewer, tool, at.x(), at.y(), at.x() / 100.0f - 1.0f, at.y() / 100.0f - 1.0f);
        return builder.compute();
    }

    // A press, moves through the given pixels and a release at the last.
    void drag(iInteractor* tool, std::vector<osg::Vec2f> const& path)
    {
        if (tool->getState() == iInteractor::iIAStateIdle)
            tool->start();
        tool->move(pointAt(tool, path.front()));
        tool->click(pointAt(tool, path.front()));
        for (size_t i = 1; i < path.size(); ++i)
            tool->move(pointAt(tool, path[i]));
        tool->release(pointAt(tool, path.back()));
    }

    // View and projection together: an orthographic zoom changes only the latter.
    osg::Matrixd viewMatrix() { return viewer.getCamera()->getViewMatrix() * viewer.getCamera()->getProjectionMatrix(); }

    ProbeViewer viewer;
    osg::ref_ptr<iGeometricsLayer> layer;
    iInteractorManager manager;
};

inline bool sameMatrix(osg::Matrixd const& a, osg::Matrixd const& b, double tolerance = 1e-9)
{
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            if (std::abs(a(r, c) - b(r, c)) > tolerance)
                return false;
    return true;
}

#endif
