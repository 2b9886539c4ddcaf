#ifndef IMODELSTAGE_SNAPPING_IGRIDSNAP_H
#define IMODELSTAGE_SNAPPING_IGRIDSNAP_H

#include <iModelStage/snapping/iBaseSnap.h>

// Snaps the point to the nearest node of the viewer's grid, laid out on
// the input plane. It needs no geometry under the cursor.
class IMODELSTAGE_EXPORT iGridSnap : public iBaseSnap {
    I_CLASS(iGridSnap, iBaseSnap, 1)
public:
    iGridSnap();

    bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor) override;
    bool collectGeometry(std::list<iSnapGeometry> const& geometries) override;
};

#endif
