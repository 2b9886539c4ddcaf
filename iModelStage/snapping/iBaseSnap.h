#ifndef IMODELSTAGE_SNAPPING_IBASESNAP_H
#define IMODELSTAGE_SNAPPING_IBASESNAP_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/snapping/iSnapGeometry.h>

#include <osg/Node>
#include <osg/Vec2f>
#include <osg/Vec3f>
#include <osg/ref_ptr>

#include <list>
#include <set>
#include <vector>

class iGeometricsLayer;
class iViewer;

// Base of the snap kinds. The geometrics layer's snap registry makes one
// instance of each registered class; a kind keeps what collectGeometry
// hands it and moves the point in snap.
//
// snapMulti runs the active snaps of an event in list order over one
// shared hit pass, each on the point the one before left: the last snap
// that succeeds decides both the point and the result.
class IMODELSTAGE_EXPORT iBaseSnap : public iRoot {
    I_CLASS(iBaseSnap, iRoot, 1)
public:
    // How overlapping candidates are resolved; any value other than the
    // first two behaves as iOrthoSnapProject. Unsigned underneath, so that
    // an interactor's unsigned setting can be passed through as it is.
    enum iOrthoSnapBevahior : unsigned int { iOrthoSnapFree = 0, iOrthoSnapInputPlane = 1, iOrthoSnapProject = 2 };

    iBaseSnap() = default;
    ~iBaseSnap() override = default;

    // Moves point (world space) to the snapped position and returns true;
    // cursor is in window pixels. The base snaps nothing.
    virtual bool snap(iViewer* viewer, osg::Vec3f& point, osg::Vec2f const& cursor);
    // Keeps what the kind needs of the geometry under the cursor; true
    // when something usable was found. The base finds nothing.
    virtual bool collectGeometry(std::list<iSnapGeometry> const& geometries);

    iGeometricsLayer* getGeometricsLayer() const { return _layer; }
    void setGeometricsLayer(iGeometricsLayer* layer) { _layer = layer; }
    bool getActive() const { return _active; }
    void setActive(bool on) { _active = on; }
    bool getNeedGeometry() const { return _needGeometry; }
    void setNeedGeometry(bool on) { _needGeometry = on; }

    // Snapped coordinates are rounded to multiples of 1 / precision. A
    // value that is not a positive finite number is refused.
    static float getPrecision();
    static void setPrecision(float precision);
    static iOrthoSnapBevahior getOrthoSnapBevahior();
    static void setOrthoSnapBevahior(iOrthoSnapBevahior behaviour);

    // Nodes the snaps ignore, and every drawable of an ignored object.
    static void addExclusionList(std::vector<osg::ref_ptr<osg::Node>> const& nodes);
    static void removeExclusionList(std::vector<osg::ref_ptr<osg::Node>> const& nodes);
    static void clearExclusionList();
    static std::set<osg::ref_ptr<osg::Node>> const& getExclusionList();

    // Runs the active snaps of the list on point; returns the last one that
    // succeeded, or null. One hit pass, 15 pixels wide, serves them all,
    // and none runs when no active snap needs geometry.
    static iBaseSnap* snapMulti(std::vector<iBaseSnap*> const& snaps, iGeometricsLayer* layer, iViewer* viewer,
                                osg::Vec3f& point, osg::Vec2f const& cursor);
    // Appends the snappable drawables of layer within tolerance pixels of
    // the window position (x, y), each with the pick box: a thin box along
    // the line of sight, tolerance wide in world units.
    static void hitGeometries(iGeometricsLayer* layer, iViewer* viewer, float x, float y, float tolerance,
                              std::list<iSnapGeometry>& out);

private:
    iGeometricsLayer* _layer = nullptr;
    bool _active = true;
    bool _needGeometry = true;
};

#endif
