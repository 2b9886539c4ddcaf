#include <iModelStage/snapping/iPointSnap.h>

#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/viewing/iViewer.h>

#include <osg/Geometry>
#include <osg/PrimitiveSet>

#include <cmath>
#include <cstdint>

I_REGISTER_CLASS(iPointSnap)

namespace {

float const kRadius = 15.0f;
float const kOverlap = 1.0f;

struct Candidate {
    std::uint32_t index;
    osg::Vec3f window;
    osg::Vec3f world;
    double unused;
};

float roundToPrecision(float c, float precision)
{
    float const scaled = c * precision + (c >= 0.0f ? 0.5f : -0.5f);
    return std::trunc(scaled) / precision;
}

osg::Vec3f transformed(osg::Vec3f const& v, osg::Matrixd const& m)
{
    return osg::Vec3f(osg::Vec3d(v) * m);
}

bool inBox(iOOBBox const& box, osg::Vec3f const& p)
{
    return iOOBBBoxPointIn(const_cast<iOOBBox*>(&box), p);
}

// A segment meets the box when both ends lie in it, or else when the box
// around its ends, a little fattened, meets it.
bool segmentMeetsBox(iOOBBox const& box, osg::Vec3f const& a, osg::Vec3f const& b)
{
    if (inBox(box, a) && inBox(box, b))
        return true;
    iOOBBox test;
    iOOBBSet(test, (a + b) * 0.5f, osg::Vec3f(1, 0, 0), osg::Vec3f(0, 1, 0), osg::Vec3f(0, 0, 1),
             std::fabs(b.x() - a.x()) * 0.5 + 0.001, std::fabs(b.y() - a.y()) * 0.5 + 0.001,
             std::fabs(b.z() - a.z()) * 0.5 + 0.001);
    return iOOBBBoxIntBox(const_cast<iOOBBox*>(&box), &test);
}

void collectPrimitive(osg::PrimitiveSet const& set, std::vector<osg::Vec3f> const& points, bool polygons,
                      iOOBBox const& box, std::vector<iPointSnap::iSnapSegment>& out)
{
    unsigned int const n = set.getNumIndices();
    auto add = [&](unsigned int i, unsigned int j) {
        unsigned int const a = set.index(i), b = set.index(j);
        if (a >= points.size() || b >= points.size())
            return;
        if (segmentMeetsBox(box, points[a], points[b]))
            out.emplace_back(points[a], points[b]);
    };
    switch (set.getMode()) {
    case GL_LINES:
        for (unsigned int i = 0; i + 1 < n; i += 2)
            add(i, i + 1);
        break;
    case GL_QUADS:
        for (unsigned int i = 0; i + 3 < n; i += 4)
            for (unsigned int k = 0; k < 4; ++k)
                add(i + k, i + (k + 1) % 4);
        break;
    case GL_POLYGON:
        if (!polygons || n < 2)
            break;
        for (unsigned int i = 0; i < n; ++i)
            add(i, (i + 1) % n);
        break;
    default:
        break;
    }
}

} // namespace

std::vector<osg::Vec3f>& iPointSnap::vertices()
{
    static std::vector<osg::Vec3f> cache;
    return cache;
}

osg::Matrixd iPointSnap::worldToWindow(iViewer* viewer)
{
    osg::Camera* camera = viewer->getCamera();
    osg::Matrixd m = camera->getViewMatrix() * camera->getProjectionMatrix();
    if (camera->getViewport())
        m.postMult(camera->getViewport()->computeWindowMatrix());
    return m;
}

bool iPointSnap::snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor)
{
    return findPointSnap(viewer, point, cursor, vertices());
}

bool iPointSnap::collectGeometry(std::list<iSnapGeometry> const& geometries)
{
    std::vector<osg::Vec3f>& cache = vertices();
    cache.clear();
    for (iSnapGeometry const& entry : geometries) {
        auto const* array = entry.geometry ? dynamic_cast<osg::Vec3Array const*>(entry.geometry->getVertexArray())
                                           : nullptr;
        if (!array)
            continue;
        for (osg::Vec3f const& v : *array) {
            osg::Vec3f const world = transformed(v, entry.matrix);
            if (inBox(entry.box, world))
                cache.push_back(world);
        }
    }
    return !cache.empty();
}

void iPointSnap::collectSegments(std::list<iSnapGeometry> const& geometries, bool polygons,
                                 std::vector<iSnapSegment>& out)
{
    std::vector<osg::Vec3f> points;
    for (iSnapGeometry const& entry : geometries) {
        auto const* array = entry.geometry ? dynamic_cast<osg::Vec3Array const*>(entry.geometry->getVertexArray())
                                           : nullptr;
        if (!array)
            continue;
        points.clear();
        for (osg::Vec3f const& v : *array)
            points.push_back(transformed(v, entry.matrix));
        for (unsigned int i = 0; i < entry.geometry->getNumPrimitiveSets(); ++i)
            collectPrimitive(*entry.geometry->getPrimitiveSet(i), points, polygons, entry.box, out);
    }
}

bool iPointSnap::findPointSnap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor,
                               std::vector<osg::Vec3f> const& points)
{
    if (!viewer || !viewer->getCamera())
        return false;
    iOrthoSnapBevahior const behaviour = getOrthoSnapBevahior();
    osg::Matrixd const m = worldToWindow(viewer);
    std::vector<Candidate> candidates;
    for (std::uint32_t i = 0; i < points.size(); ++i) {
        osg::Vec3f s = transformed(points[i], m);
        if (std::fabs(s.x() - cursor.x()) > kRadius || std::fabs(s.y() - cursor.y()) > kRadius)
            continue;
        if (behaviour != iOrthoSnapFree)
            s.z() = 0.0f;
        candidates.push_back(Candidate{i, s, points[i], 0.0});
    }
    if (candidates.empty())
        return false;
    osg::Vec3f const at(cursor.x(), cursor.y(), 0.0f);
    Candidate const* best = &candidates.front();
    for (Candidate const& c : candidates)
        if ((c.window - at).length() < (best->window - at).length())
            best = &c;
    if (!((best->window - at).length() < kRadius))
        return false;
    osg::Vec3f result = best->world;
    iInputPlane* plane = viewer->getIPlane();
    bool const onPlane = plane && viewer->getCurrentViewLookup() <= 5 && behaviour != iOrthoSnapFree;
    if (onPlane) {
        double const r = behaviour == iOrthoSnapInputPlane ? plane->pointDistance(osg::Vec3f()) : 0.0;
        for (Candidate const& c : candidates) {
            if ((c.window - best->window).length() > kOverlap)
                continue;
            double const d = behaviour == iOrthoSnapInputPlane ? plane->pointDistance(c.world) : 0.0;
            if (r >= d)
                result = c.world;
        }
    }
    point = result;
    if (onPlane)
        point -= plane->getNormal() * static_cast<float>(plane->pointDistance(point));
    float const p = getPrecision();
    point.set(roundToPrecision(point.x(), p), roundToPrecision(point.y(), p), roundToPrecision(point.z(), p));
    return true;
}
