#ifndef IMODELSTAGE_INTERACTION_IRUBBERBAND_H
#define IMODELSTAGE_INTERACTION_IRUBBERBAND_H

#include <iModelStage/frame/iExport.h>

#include <osg/Camera>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Vec3f>
#include <osg/Vec4f>
#include <osg/ref_ptr>

class iViewer;

// The translucent rectangle a tool drags over the viewer, drawn in a
// post-render camera in window pixels above everything else.
class IMODELSTAGE_EXPORT iRubberBand {
public:
    // Builds the band at one window position and puts it in the viewer's
    // overlay group.
    void show(iViewer* viewer, osg::Vec3f const& corner, osg::Vec4f const& colour);
    // Spans the band between two window positions; nothing without a band.
    void span(osg::Vec3f const& from, osg::Vec3f const& to);
    // Takes the band out of the viewer's overlay group.
    void hide(iViewer* viewer);
    bool isShownIn(iViewer* viewer) const;

    osg::Geometry* getGeometry() const { return _geometry.get(); }
    osg::Camera* getCamera() const { return _camera.get(); }

private:
    osg::ref_ptr<osg::Geometry> _geometry;
    osg::ref_ptr<osg::Geode> _geode;
    osg::ref_ptr<osg::Camera> _camera;
};

#endif
