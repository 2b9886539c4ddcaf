#ifndef IMODELSTAGE_SNAPPING_INEARESTSNAP_H
#define IMODELSTAGE_SNAPPING_INEARESTSNAP_H

#include <iModelStage/snapping/iPointSnap.h>

// Snaps to the foot of the cursor on the segments under it, away from
// their ends, which belong to the vertex snap.
class IMODELSTAGE_EXPORT iNearestSnap : public iPointSnap {
    I_CLASS(iNearestSnap, iPointSnap, 1)
public:
    iNearestSnap() = default;

    bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor) override;
    bool collectGeometry(std::list<iSnapGeometry> const& geometries) override;

private:
    static std::vector<iSnapSegment>& segments();
};

#endif
