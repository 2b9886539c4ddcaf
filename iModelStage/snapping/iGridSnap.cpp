#include <iModelStage/snapping/iGridSnap.h>

#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/viewing/iViewer.h>

#include <cmath>

I_REGISTER_CLASS(iGridSnap)

namespace {

// The lower corner of the grid cell holding v, for a step s.
double cellStart(double v, double s)
{
    return (std::trunc(v / s) - (v < 0.0 ? 1.0 : 0.0)) * s;
}

float cleaned(float c)
{
    return std::fabs(c) < 1e-6f ? 0.0f : c;
}

} // namespace

iGridSnap::iGridSnap()
{
    setNeedGeometry(false);
}

bool iGridSnap::collectGeometry(std::list<iSnapGeometry> const&)
{
    return true;
}

bool iGridSnap::snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const&)
{
    iGridGroup* grid = viewer ? viewer->getGrid() : nullptr;
    iInputPlane* plane = grid ? viewer->getIPlane() : nullptr;
    if (!grid || !plane)
        return false;
    double const sx = grid->get_hstep(), sy = grid->get_vstep();
    if (!(sx > 0.0 && sy > 0.0 && std::isfinite(sx) && std::isfinite(sy)))
        return false;
    osg::Matrixd const matrix = plane->getMatrix();
    osg::Vec3d const local = osg::Vec3d(point) * osg::Matrixd::inverse(matrix);
    double const x0 = cellStart(local.x(), sx), y0 = cellStart(local.y(), sy);
    osg::Vec3d const corners[4] = {{x0, y0, local.z()},
                                   {x0 + sx, y0, local.z()},
                                   {x0, y0 + sy, local.z()},
                                   {x0 + sx, y0 + sy, local.z()}};
    osg::Vec3d const* best = &corners[0];
    for (osg::Vec3d const& corner : corners)
        if ((corner - local).length() < (*best - local).length())
            best = &corner;
    if (!((*best - local).length() < (sx + sy) * 0.25))
        return false;
    osg::Vec3f const world(*best * matrix);
    point.set(cleaned(world.x()), cleaned(world.y()), cleaned(world.z()));
    return true;
}
