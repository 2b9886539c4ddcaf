#ifndef IMODELSTAGE_SNAPPING_IPOINTSNAP_H
#define IMODELSTAGE_SNAPPING_IPOINTSNAP_H

#include <iModelStage/snapping/iBaseSnap.h>

#include <osg/Matrixd>

#include <list>
#include <utility>
#include <vector>

// Snaps to the vertices of the geometry under the cursor, and holds the
// rule by which every point-like kind picks one of its candidates: the
// nearest on screen within 15 pixels, refined against the input plane
// when the ortho behaviour asks for it, rounded by the precision.
class IMODELSTAGE_EXPORT iPointSnap : public iBaseSnap {
    I_CLASS(iPointSnap, iBaseSnap, 1)
public:
    // Two ends of a segment, in world space.
    typedef std::pair<osg::Vec3f, osg::Vec3f> iSnapSegment;

    iPointSnap() = default;

    bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor) override;
    bool collectGeometry(std::list<iSnapGeometry> const& geometries) override;

    // World to window matrix of the viewer's camera: view, projection and,
    // when there is a viewport, its window matrix.
    static osg::Matrixd worldToWindow(iViewer* viewer);

protected:
    bool findPointSnap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor,
                       std::vector<osg::Vec3f> const& points);

    // Segments of the lines and quads (and with polygons, of polygon
    // loops) of the geometries, kept when they meet the pick box.
    static void collectSegments(std::list<iSnapGeometry> const& geometries, bool polygons,
                                std::vector<iSnapSegment>& out);

private:
    static std::vector<osg::Vec3f>& vertices();
};

#endif
