#include <iModelStage/geometry/iOOBBox.h>

#include <osg/Vec3d>

#include <array>
#include <initializer_list>
#include <cmath>

namespace {

// Above this, two axes count as parallel and their cross product as no
// axis at all.
constexpr double kParallel = 0.999999;

struct Axes {
    std::array<osg::Vec3d, 3> axis;
    std::array<double, 3> half;
};

Axes axesOf(iOOBBox const& box)
{
    return {{osg::Vec3d(box.axis0), osg::Vec3d(box.axis1), osg::Vec3d(box.axis2)}, {box.half0, box.half1, box.half2}};
}

// Half the extent of the box projected on the line.
double radiusOn(Axes const& box, osg::Vec3d const& line)
{
    double radius = 0.0;
    for (int i = 0; i < 3; ++i)
        radius += box.half[i] * std::fabs(box.axis[i] * line);
    return radius;
}

bool separates(Axes const& a, Axes const& b, osg::Vec3d const& between, osg::Vec3d const& line)
{
    return std::fabs(between * line) > radiusOn(a, line) + radiusOn(b, line);
}

} // namespace

void iOOBBSet(iOOBBox& box, osg::Vec3f const& center, osg::Vec3f const& axis0, osg::Vec3f const& axis1,
              osg::Vec3f const& axis2, double half0, double half1, double half2)
{
    box.center = center;
    box.axis0 = axis0;
    box.axis1 = axis1;
    box.axis2 = axis2;
    box.half0 = half0;
    box.half1 = half1;
    box.half2 = half2;
}

bool iOOBBBoxPointIn(iOOBBox* box, osg::Vec3f point)
{
    if (!box)
        return false;
    osg::Vec3f const offset = point - box->center;
    Axes const axes = axesOf(*box);
    for (int i = 0; i < 3; ++i)
        if (std::fabs(osg::Vec3d(offset) * axes.axis[i]) > axes.half[i] + 1e-6)
            return false;
    return true;
}

bool iOOBBBoxIntBox(iOOBBox* a, iOOBBox* b)
{
    if (!a || !b)
        return false;
    Axes const first = axesOf(*a);
    Axes const second = axesOf(*b);
    osg::Vec3d const between = osg::Vec3d(b->center) - osg::Vec3d(a->center);

    bool parallel = false;
    for (osg::Vec3d const& u : first.axis)
        for (osg::Vec3d const& v : second.axis)
            parallel = parallel || std::fabs(u * v) > kParallel;

    for (Axes const* box : {&first, &second})
        for (osg::Vec3d const& line : box->axis)
            if (separates(first, second, between, line))
                return false;
    if (parallel)
        return true;
    for (osg::Vec3d const& u : first.axis)
        for (osg::Vec3d const& v : second.axis)
            if (separates(first, second, between, u ^ v))
                return false;
    return true;
}
