#include <iModelStage/snapping/iNearestSnap.h>

#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iNearestSnap)

namespace {

// Feet closer than this to an end of a segment, in pixels, give nothing.
float const kEndMargin = 5.0f;

} // namespace

std::vector<iPointSnap::iSnapSegment>& iNearestSnap::segments()
{
    static std::vector<iSnapSegment> cache;
    return cache;
}

bool iNearestSnap::collectGeometry(std::list<iSnapGeometry> const& geometries)
{
    segments().clear();
    collectSegments(geometries, true, segments());
    return !segments().empty();
}

bool iNearestSnap::snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor)
{
    if (!viewer || !viewer->getCamera())
        return false;
    osg::Matrixd const m = worldToWindow(viewer);
    osg::Matrixd const inverse = osg::Matrixd::inverse(m);
    std::vector<osg::Vec3f> candidates;
    for (iSnapSegment const& segment : segments()) {
        osg::Vec3f const& a = segment.first;
        osg::Vec3f const& b = segment.second;
        osg::Vec3f const sa(osg::Vec3d(a) * m);
        osg::Vec3f const sb(osg::Vec3d(b) * m);
        osg::Vec3f dir = sb - sa;
        float const length = dir.length();
        if (length > 0.0f)
            dir /= length;
        float const t = osg::Vec3f(cursor.x() - sa.x(), cursor.y() - sa.y(), 0.0f - sa.z()) * dir;
        if (t < kEndMargin || t > length - kEndMargin)
            continue;
        osg::Vec3f const w(osg::Vec3d(sa + dir * t) * inverse);
        float const s = (w - a).length() / (b - a).length();
        candidates.push_back(a + (b - a) * s);
    }
    if (candidates.empty())
        return false;
    return findPointSnap(viewer, point, cursor, candidates);
}
