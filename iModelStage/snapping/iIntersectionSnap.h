#ifndef IMODELSTAGE_SNAPPING_IINTERSECTIONSNAP_H
#define IMODELSTAGE_SNAPPING_IINTERSECTIONSNAP_H

#include <iModelStage/snapping/iPointSnap.h>

// Snaps to the crossings of the segments under the cursor.
class IMODELSTAGE_EXPORT iIntersectionSnap : public iPointSnap {
    I_CLASS(iIntersectionSnap, iPointSnap, 1)
public:
    iIntersectionSnap() = default;

    bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor) override;
    bool collectGeometry(std::list<iSnapGeometry> const& geometries) override;

    // Parameters of the closest points of the lines through two segments;
    // false for a segment of no length or for parallel lines.
    static bool closestPoints(iSnapSegment const& first, iSnapSegment const& second, double& ta, double& tb);

private:
    static std::vector<iSnapSegment>& segments();
};

#endif
