#ifndef IMODELSTAGE_INTERACTION_IIAPOINTBUILDER_H
#define IMODELSTAGE_INTERACTION_IIAPOINTBUILDER_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/interaction/iIAPoint.h>

#include <osg/Vec3f>

#include <string>

class iBaseSnap;
class iInteractor;
class iViewer;

// Turns a pointer position over a viewer into the point an interactor
// receives: the cursor ray on the viewer's input plane, then the snaps and
// the ortho constraint when the tool accepts snapping, then the tool's
// plane constraint against its last released point.
//
// The event handler runs the parts one by one, since it shows the first
// point to the manipulators and draws the snap label in between; compute
// runs them all.
class IMODELSTAGE_EXPORT iIAPointBuilder {
public:
    // x, y in window pixels from the bottom left; nx, ny normalised to
    // -1..1 across the viewport.
    iIAPointBuilder(iViewer* viewer, iInteractor* interactor, float x, float y, float nx, float ny);

    // The cursor on the input plane; point is left alone when the ray
    // misses the plane.
    bool intersectIPlane(osg::Vec3f& point) const;
    // Snap, ortho and plane constraints, in that order, on point.
    void constrain(osg::Vec3f& point);
    // The four positions of point.
    iIAPoint makePoint(osg::Vec3f const& point) const;
    // All of the above, starting from the interactor's current position.
    iIAPoint compute();

    // The snap that acted in constrain, or null, with its class alias.
    iBaseSnap* getSnap() const { return _snap; }
    std::string const& getSnapAlias() const { return _snapAlias; }
    // The point before the plane constraint: the snapped one when a snap
    // acted.
    osg::Vec3f const& getRawPoint() const { return _raw; }

private:
    void applySnaps(osg::Vec3f& point);
    void applyOrtho(osg::Vec3f& point);
    void applyPlaneConstraint(osg::Vec3f& point);
    void alongNormal(osg::Vec3f const& last, osg::Vec3f& point);

    iViewer* _viewer;
    iInteractor* _interactor;
    float _x;
    float _y;
    float _nx;
    float _ny;
    osg::Vec3f _raw;
    iBaseSnap* _snap = nullptr;
    std::string _snapAlias;
};

#endif
