#include <iModelStage/snapping/iCentroidSnap.h>

I_REGISTER_CLASS(iCentroidSnap)

std::vector<osg::Vec3f>& iCentroidSnap::midpoints()
{
    static std::vector<osg::Vec3f> cache;
    return cache;
}

bool iCentroidSnap::snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor)
{
    if (midpoints().empty())
        return false;
    return findPointSnap(viewer, point, cursor, midpoints());
}

bool iCentroidSnap::collectGeometry(std::list<iSnapGeometry> const& geometries)
{
    std::vector<iSnapSegment> segments;
    collectSegments(geometries, false, segments);
    std::vector<osg::Vec3f>& cache = midpoints();
    cache.clear();
    for (iSnapSegment const& s : segments)
        cache.push_back((s.first + s.second) * 0.5f);
    return !cache.empty();
}
