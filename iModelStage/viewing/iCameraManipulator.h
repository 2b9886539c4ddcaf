#ifndef IMODELSTAGE_VIEWING_ICAMERAMANIPULATOR_H
#define IMODELSTAGE_VIEWING_ICAMERAMANIPULATOR_H

#include <iModelStage/frame/iExport.h>

#include <osg/Node>
#include <osg/Quat>
#include <osg/Vec3d>
#include <osg/Vec3f>
#include <osg/ref_ptr>
#include <osgGA/CameraManipulator>
#include <osgGA/GUIEventAdapter>

#include <QPointer>

class iViewer;

// The orbit camera of the free perspective lookup: a centre, a distance and
// a rotation, moved as a trackball. The right button rotates (Ctrl zooms),
// the middle button pans, space goes home; a drag released while the
// pointer still moves keeps turning each frame.
//
// In a viewer each motion asks for a lookup: rotation and pan need the
// axonometric view or a later one, zoom only the free lookup or later.
// Without a viewer every motion works.
class IMODELSTAGE_EXPORT iCameraManipulator : public osgGA::CameraManipulator {
public:
    iCameraManipulator();

    char const* className() const override { return "iCameraManipulator"; }

    void getUsage(osg::ApplicationUsage& usage) const override;
    bool handle(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa) override;

    void setByMatrix(osg::Matrixd const& matrix) override;
    void setByInverseMatrix(osg::Matrixd const& matrix) override;
    osg::Matrixd getMatrix() const override;
    osg::Matrixd getInverseMatrix() const override;
    float getFusionDistanceValue() const override { return static_cast<float>(_distance); }

    void setNode(osg::Node* node) override;
    osg::Node const* getNode() const override { return _node.get(); }
    osg::Node* getNode() override { return _node.get(); }

    void home(double currentTime) override;
    void home(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa) override;
    // Remembers the action adapter as the viewer, when it is one.
    void init(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa) override;

    void setCenter(osg::Vec3d const& center) { _center = center; }
    osg::Vec3d getCenter() const { return _center; }
    void setRotation(osg::Quat const& rotation) { _rotation = rotation; }
    osg::Quat getRotation() const { return _rotation; }
    void setDistance(double distance) { _distance = distance; }
    double getDistance() const { return _distance; }
    // Kept within 0.1 to 1.0; a value outside is clamped with a warning.
    void setTrackballSize(float size);
    float getTrackballSize() const { return _trackballSize; }
    // Zoom stops shrinking the distance at this fraction of the model's
    // radius and moves the centre forward instead.
    void setMinimumZoomScale(double scale) { _minimumZoomScale = scale; }
    double getMinimumZoomScale() const { return _minimumZoomScale; }

    // Places the camera at eye looking at center, up as told.
    void computePosition(osg::Vec3f const& eye, osg::Vec3f const& center, osg::Vec3f const& up);

protected:
    ~iCameraManipulator() override;

    void flushMouseEventStack();
    void addMouseEvent(osgGA::GUIEventAdapter const& ea);
    bool isMouseMoving() const;
    // One step of the motion between the two remembered events; true when
    // the camera moved.
    bool calcMovement();
    // The rotation axis and angle that carry the point (p1x, p1y) to
    // (p2x, p2y) over the trackball's sphere.
    void trackball(osg::Vec3f& axis, float& angle, float p1x, float p1y, float p2x, float p2y) const;
    float tb_project_to_sphere(float r, float x, float y) const;

private:
    bool handleRelease(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa);
    // Remembers only ea and moves; the end of a push, drag or slow release.
    bool restartFrom(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa);
    bool zoom(float dy);
    void rotate();
    void pan(float dx, float dy);
    // Without a viewer any lookup goes.
    bool lookupAbove(int lookup) const;

    osg::ref_ptr<osgGA::GUIEventAdapter const> _previousEvent;
    osg::ref_ptr<osgGA::GUIEventAdapter const> _currentEvent;
    osg::ref_ptr<osg::Node> _node;
    double _modelScale = 0.01f;
    double _minimumZoomScale = 0.05f;
    bool _thrown = false;
    osg::Vec3d _center;
    osg::Quat _rotation;
    double _distance = 1.0;
    float _trackballSize = 0.5f;
    // Cleared when the viewer goes before the manipulator.
    QPointer<iViewer> _viewer;
};

#endif
