#ifndef IMODELSTAGE_SNAPPING_IBASESNAP_H
#define IMODELSTAGE_SNAPPING_IBASESNAP_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/snapping/iSnapGeometry.h>

#include <osg/Vec2f>
#include <osg/Vec3f>

#include <list>

class iViewer;

// Base of the snap kinds. The geometrics layer's snap registry makes one
// instance of each registered class; a kind keeps what collectGeometry
// hands it and moves the point in snap.
class IMODELSTAGE_EXPORT iBaseSnap : public iRoot {
    I_CLASS(iBaseSnap, iRoot, 1)
public:
    iBaseSnap() = default;
    ~iBaseSnap() override = default;

    // Moves point (world space) to the snapped position and returns true;
    // cursor is in window pixels. The base snaps nothing.
    virtual bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor);
    // Keeps what the kind needs of the geometry under the cursor; true
    // when something usable was found. The base finds nothing.
    virtual bool collectGeometry(std::list<iSnapGeometry> const& geometries);
};

#endif
