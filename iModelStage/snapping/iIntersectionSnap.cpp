#include <iModelStage/snapping/iIntersectionSnap.h>

#include <cmath>

I_REGISTER_CLASS(iIntersectionSnap)

namespace {

double const kEpsilon = 1e-6;

bool isNull(osg::Vec3f const& v)
{
    return std::fabs(v.x()) < kEpsilon && std::fabs(v.y()) < kEpsilon && std::fabs(v.z()) < kEpsilon;
}

} // namespace

std::vector<iPointSnap::iSnapSegment>& iIntersectionSnap::segments()
{
    static std::vector<iSnapSegment> cache;
    return cache;
}

bool iIntersectionSnap::collectGeometry(std::list<iSnapGeometry> const& geometries)
{
    segments().clear();
    collectSegments(geometries, true, segments());
    return !segments().empty();
}

bool iIntersectionSnap::closestPoints(iSnapSegment const& first, iSnapSegment const& second, double& ta, double& tb)
{
    osg::Vec3f const a = first.second - first.first;
    osg::Vec3f const b = second.second - second.first;
    if (isNull(a) || isNull(b))
        return false;
    osg::Vec3f const r = first.first - second.first;
    double const aa = a * a, bb = b * b, ab = a * b, ar = a * r, br = b * r;
    double const determinant = aa * bb - ab * ab;
    if (std::fabs(determinant) < kEpsilon)
        return false;
    ta = (ab * br - bb * ar) / determinant;
    tb = (aa * br - ab * ar) / determinant;
    return true;
}

bool iIntersectionSnap::snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor)
{
    std::vector<iSnapSegment> const& cache = segments();
    std::vector<osg::Vec3f> candidates;
    for (std::size_t i = 0; i < cache.size(); ++i) {
        for (std::size_t j = 0; j < cache.size(); ++j) {
            double ta = 0.0, tb = 0.0;
            if (i == j || !closestPoints(cache[i], cache[j], ta, tb))
                continue;
            if (ta < -kEpsilon || ta > 1.000001 || ta < 0.01 || ta > 0.99)
                continue;
            candidates.push_back(cache[i].first + (cache[i].second - cache[i].first) * static_cast<float>(ta));
        }
    }
    if (candidates.empty())
        return false;
    return findPointSnap(viewer, point, cursor, candidates);
}
