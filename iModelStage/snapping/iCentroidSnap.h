#ifndef IMODELSTAGE_SNAPPING_ICENTROIDSNAP_H
#define IMODELSTAGE_SNAPPING_ICENTROIDSNAP_H

#include <iModelStage/snapping/iPointSnap.h>

// Snaps to the midpoints of the line and quad edges under the cursor.
class IMODELSTAGE_EXPORT iCentroidSnap : public iPointSnap {
    I_CLASS(iCentroidSnap, iPointSnap, 1)
public:
    iCentroidSnap() = default;

    bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor) override;
    bool collectGeometry(std::list<iSnapGeometry> const& geometries) override;

private:
    static std::vector<osg::Vec3f>& midpoints();
};

#endif
