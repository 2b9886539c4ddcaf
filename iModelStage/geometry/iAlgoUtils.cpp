#include <iModelStage/geometry/iAlgoUtils.h>

#include <osg/Quat>
#include <osg/Vec3d>

#include <algorithm>
#include <cmath>

namespace {

bool shorterThan(osg::Vec3d const& v, double eps)
{
    return std::fabs(v.x()) < eps && std::fabs(v.y()) < eps && std::fabs(v.z()) < eps;
}

// Strictly inside the segment, away from both ends.
bool inside(double mu, double eps)
{
    return !(mu < eps) && !(mu > 1.0 - eps);
}

// Where a ray from p towards +x crosses the edge a-b, if it does.
bool crosses(osg::Vec2d const& p, osg::Vec2d const& a, osg::Vec2d const& b)
{
    if ((a.y() > p.y()) == (b.y() > p.y()))
        return false;
    double const x = a.x() + (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y());
    return x > p.x();
}

bool pointInPolygon(osg::Vec2d const& p, osg::Vec2dArray const& polygon)
{
    bool in = false;
    std::size_t const n = polygon.size();
    for (std::size_t j = 0, k = n - 1; j < n; k = j++)
        if (crosses(p, polygon[j], polygon[k]))
            in = !in;
    return in;
}

} // namespace

bool iAlgoUtils::linelineIntersect3d(osg::Vec3f const& p1, osg::Vec3f const& p2, osg::Vec3f const& p3,
                                     osg::Vec3f const& p4, osg::Vec3f& pa, osg::Vec3f& pb, double& mua, double& mub,
                                     double eps)
{
    osg::Vec3d const p13 = osg::Vec3d(p1) - osg::Vec3d(p3);
    osg::Vec3d const p43 = osg::Vec3d(p4) - osg::Vec3d(p3);
    osg::Vec3d const p21 = osg::Vec3d(p2) - osg::Vec3d(p1);
    if (shorterThan(p43, eps) || shorterThan(p21, eps))
        return false;

    double const d1343 = p13 * p43;
    double const d4321 = p43 * p21;
    double const d1321 = p13 * p21;
    double const d4343 = p43 * p43;
    double const d2121 = p21 * p21;

    double const denom = d2121 * d4343 - d4321 * d4321;
    if (std::fabs(denom) < eps)
        return false;
    mua = (d1343 * d4321 - d1321 * d4343) / denom;
    if (!inside(mua, eps))
        return false;
    mub = (d1343 + mua * d4321) / d4343;
    if (!inside(mub, eps))
        return false;

    pa = osg::Vec3f(osg::Vec3d(p1) + p21 * mua);
    pb = osg::Vec3f(osg::Vec3d(p3) + p43 * mub);
    return true;
}

bool iAlgoUtils::lineIntersectPolygon3d(osg::Vec3Array* polygon, osg::Vec3f const& p1, osg::Vec3f const& p2,
                                        double distance, double eps)
{
    if (!polygon || polygon->size() < 2)
        return false;
    for (std::size_t i = 0; i + 1 < polygon->size(); ++i) {
        osg::Vec3f pa, pb;
        double mua = 0.0, mub = 0.0;
        if (!linelineIntersect3d(p1, p2, (*polygon)[i], (*polygon)[i + 1], pa, pb, mua, mub, eps))
            continue;
        if (!((pa - pb).length() > distance))
            return true;
    }
    return false;
}

bool iAlgoUtils::extractfreeEdgeOnPolygonTop(osg::Vec3Array* polygon, std::vector<int>& edges)
{
    if (!polygon)
        return !edges.empty();
    double top = 0.0;
    for (osg::Vec3f const& v : *polygon)
        top = std::max(top, static_cast<double>(v.y()));
    top += 0.01;

    int const count = static_cast<int>(polygon->size());
    for (int i = 0; i + 1 < count; ++i) {
        osg::Vec3f const& start = (*polygon)[i];
        osg::Vec3f const& end = (*polygon)[i + 1];
        if (std::fabs(start.x() - end.x()) < 0.0001)
            continue;
        bool covered = false;
        for (osg::Vec3f const* v : {&start, &end})
            for (double offset : {-0.02, 0.02}) {
                osg::Vec3f const up(static_cast<float>(v->x() + offset), static_cast<float>(top), v->z());
                covered = covered || lineIntersectPolygon3d(polygon, *v, up, 0.0001, 0.0001);
            }
        if (!covered) {
            edges.push_back(i);
            edges.push_back(i + 1);
        }
    }
    return !edges.empty();
}

bool iAlgoUtils::polygonInPolygon(osg::Vec2dArray const& inner, osg::Vec2dArray const& outer)
{
    if (inner.empty())
        return true;
    if (outer.empty())
        return false;
    for (osg::Vec2d const& p : inner)
        if (!pointInPolygon(p, outer))
            return false;
    return true;
}

void iAlgoUtils::matrixAnglesToEuler(osg::Matrixd const& m, double& a, double& b, double& c)
{
    osg::Vec3d translation, scale;
    osg::Quat rotation, scaleOrientation;
    m.decompose(translation, rotation, scale, scaleOrientation);
    double const x = rotation.x(), y = rotation.y(), z = rotation.z(), w = rotation.w();
    a = std::atan2(2.0 * (x * w + z * y), z * z - (y * y + x * x) + w * w);
    // Rounding may carry the sine a hair past 1 at a right angle.
    b = std::asin(std::clamp(-2.0 * (z * x - w * y), -1.0, 1.0));
    c = std::atan2(2.0 * (y * x + z * w), x * x - y * y - z * z + w * w);
}
