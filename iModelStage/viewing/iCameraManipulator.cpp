#include <iModelStage/viewing/iCameraManipulator.h>

#include <iModelStage/viewing/iViewer.h>

#include <osg/ApplicationUsage>
#include <osg/Matrixd>
#include <osg/Notify>

#include <algorithm>
#include <cmath>

namespace {

using Event = osgGA::GUIEventAdapter;

// Ctrl as the widgets set it: both side bits.
constexpr int kZoomModifiers = Event::MODKEY_LEFT_CTRL | Event::MODKEY_RIGHT_CTRL;
constexpr int kSpaceKey = 32;
// A last release this soon after the last motion may throw.
constexpr double kThrowDelay = 0.02;
constexpr float kMinimumTrackballSize = 0.1f;
constexpr float kMaximumTrackballSize = 1.0f;

void warnTrackballSize(float size, char const* limit, float clamped)
{
    osg::notify(osg::WARN) << "Warning: " << "iCameraManipulator::setTrackballSize(float)" << " of " << size << limit
                           << clamped << "." << std::endl;
}

iViewer* viewerOf(osgGA::GUIActionAdapter& aa)
{
    return dynamic_cast<iViewer*>(&aa);
}

} // namespace

iCameraManipulator::iCameraManipulator() = default;

iCameraManipulator::~iCameraManipulator() = default;

void iCameraManipulator::getUsage(osg::ApplicationUsage& usage) const
{
    usage.addKeyboardMouseBinding("Trackball: Space", "Reset the viewing position to home");
    usage.addKeyboardMouseBinding("Trackball: +", "When in stereo, increase the fusion distance");
    usage.addKeyboardMouseBinding("Trackball: -", "When in stereo, reduce the fusion distance");
}

void iCameraManipulator::setByMatrix(osg::Matrixd const& matrix)
{
    _center = osg::Vec3d(0.0, 0.0, -_distance) * matrix;
    _rotation = matrix.getRotate();
}

void iCameraManipulator::setByInverseMatrix(osg::Matrixd const& matrix)
{
    setByMatrix(osg::Matrixd::inverse(matrix));
}

osg::Matrixd iCameraManipulator::getMatrix() const
{
    return osg::Matrixd::translate(0.0, 0.0, _distance) * osg::Matrixd::rotate(_rotation) *
           osg::Matrixd::translate(_center);
}

osg::Matrixd iCameraManipulator::getInverseMatrix() const
{
    return osg::Matrixd::translate(-_center) * osg::Matrixd::rotate(_rotation.inverse()) *
           osg::Matrixd::translate(0.0, 0.0, -_distance);
}

void iCameraManipulator::setNode(osg::Node* node)
{
    _node = node;
    if (_node.valid())
        _modelScale = _node->getBound().radius();
    if (getAutoComputeHomePosition())
        computeHomePosition();
}

void iCameraManipulator::home(double /*currentTime*/)
{
    if (getAutoComputeHomePosition())
        computeHomePosition();
    computePosition(osg::Vec3f(_homeEye), osg::Vec3f(_homeCenter), osg::Vec3f(_homeUp));
    _thrown = false;
}

void iCameraManipulator::home(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa)
{
    home(ea.getTime());
    aa.requestRedraw();
    aa.requestContinuousUpdate(false);
}

void iCameraManipulator::init(osgGA::GUIEventAdapter const& /*ea*/, osgGA::GUIActionAdapter& aa)
{
    _viewer = viewerOf(aa);
    flushMouseEventStack();
}

void iCameraManipulator::setTrackballSize(float size)
{
    _trackballSize = size;
    if (size < kMinimumTrackballSize) {
        warnTrackballSize(size, " is below permitted minimum, clamping to ", kMinimumTrackballSize);
        _trackballSize = kMinimumTrackballSize;
    } else if (size > kMaximumTrackballSize) {
        warnTrackballSize(size, " is above permitted maximum, clamping to ", kMaximumTrackballSize);
        _trackballSize = kMaximumTrackballSize;
    }
}

void iCameraManipulator::computePosition(osg::Vec3f const& eye, osg::Vec3f const& center, osg::Vec3f const& up)
{
    osg::Vec3f const lv = center - eye;
    float const length = lv.length();
    osg::Vec3f f = lv;
    if (length > 0.0f)
        f.normalize();
    osg::Vec3f s = f ^ up;
    if (s.length() > 0.0f)
        s.normalize();
    osg::Vec3f u = s ^ f;
    if (u.length() > 0.0f)
        u.normalize();

    osg::Matrixd const rotation(s.x(), u.x(), -f.x(), 0.0, //
                                s.y(), u.y(), -f.y(), 0.0, //
                                s.z(), u.z(), -f.z(), 0.0, //
                                0.0, 0.0, 0.0, 1.0);
    _center = center;
    _distance = length;
    _rotation = rotation.getRotate().inverse();
}

bool iCameraManipulator::handle(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa)
{
    Event::EventType const type = ea.getEventType();
    if (type == Event::FRAME) {
        // Other handlers still see the frame.
        if (_thrown && calcMovement())
            aa.requestRedraw();
        return false;
    }
    if (ea.getHandled())
        return false;

    switch (type) {
    case Event::PUSH:
    case Event::DRAG:
        if (type == Event::PUSH)
            flushMouseEventStack();
        return restartFrom(ea, aa);
    case Event::RELEASE:
        return handleRelease(ea, aa);
    case Event::KEYDOWN:
        if (ea.getKey() != kSpaceKey)
            return false;
        flushMouseEventStack();
        _thrown = false;
        home(ea, aa);
        return true;
    default:
        return false;
    }
}

bool iCameraManipulator::restartFrom(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa)
{
    addMouseEvent(ea);
    if (calcMovement())
        aa.requestRedraw();
    aa.requestContinuousUpdate(false);
    _thrown = false;
    return true;
}

bool iCameraManipulator::handleRelease(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa)
{
    if (ea.getButtonMask() == 0) {
        bool const recent = _currentEvent.valid() && ea.getTime() - _currentEvent->getTime() <= kThrowDelay;
        if (!recent)
            flushMouseEventStack();
        if (isMouseMoving()) {
            // The last motion goes on at every frame.
            if (!calcMovement())
                return true;
            aa.requestRedraw();
            aa.requestContinuousUpdate(true);
            _thrown = true;
            return true;
        }
    }
    flushMouseEventStack();
    return restartFrom(ea, aa);
}

void iCameraManipulator::flushMouseEventStack()
{
    _previousEvent = nullptr;
    _currentEvent = nullptr;
}

void iCameraManipulator::addMouseEvent(osgGA::GUIEventAdapter const& ea)
{
    _previousEvent = _currentEvent;
    _currentEvent = &ea;
}

bool iCameraManipulator::isMouseMoving() const
{
    if (!_previousEvent.valid() || !_currentEvent.valid())
        return false;
    float const dx = _currentEvent->getXnormalized() - _previousEvent->getXnormalized();
    float const dy = _currentEvent->getYnormalized() - _previousEvent->getYnormalized();
    float const distance = std::sqrt(dx * dx + dy * dy);
    float const dt = static_cast<float>(_currentEvent->getTime() - _previousEvent->getTime());
    return distance > dt * 0.1f;
}

bool iCameraManipulator::calcMovement()
{
    if (!_previousEvent.valid() || !_currentEvent.valid())
        return false;

    float const dx = _currentEvent->getXnormalized() - _previousEvent->getXnormalized();
    float const dy = _currentEvent->getYnormalized() - _previousEvent->getYnormalized();
    float const distance = std::sqrt(dx * dx + dy * dy);
    // A jump this large is a glitch of the pointer, not a motion.
    if (distance > 0.5f || distance == 0.0f)
        return false;

    // The buttons of the motion's start decide its kind.
    unsigned int const buttons = _previousEvent->getButtonMask();
    int const modifiers = static_cast<int>(_previousEvent->getModKeyMask());
    if (buttons == Event::RIGHT_MOUSE_BUTTON && modifiers == kZoomModifiers)
        return lookupAbove(6) && zoom(dy);
    if (buttons == Event::RIGHT_MOUSE_BUTTON) {
        if (!lookupAbove(5))
            return false;
        rotate();
        return true;
    }
    if (buttons == Event::MIDDLE_MOUSE_BUTTON) {
        if (!lookupAbove(5))
            return false;
        pan(dx, dy);
        return true;
    }
    return false;
}

bool iCameraManipulator::zoom(float dy)
{
    float const scale = 1.0f + dy;
    float const fd = static_cast<float>(_distance);
    if (static_cast<double>(scale * fd) > _minimumZoomScale * _modelScale) {
        _distance *= scale;
        return true;
    }
    // Too close to shrink further: step forward along the view instead.
    osg::Vec3f const direction = _rotation * osg::Vec3f(0.0f, 0.0f, -1.0f);
    osg::Vec3f const step = direction * (-fd) * dy;
    _center += osg::Vec3d(step);
    return true;
}

void iCameraManipulator::rotate()
{
    osg::Vec3f axis;
    float angle = 0.0f;
    trackball(axis, angle, _previousEvent->getXnormalized(), _previousEvent->getYnormalized(),
              _currentEvent->getXnormalized(), _currentEvent->getYnormalized());
    _rotation = _rotation * osg::Quat(angle, axis);
}

void iCameraManipulator::pan(float dx, float dy)
{
    float const scale = static_cast<float>(_distance * -0.30000001192092896);
    osg::Vec3d const step(dx * scale, dy * scale, 0.0f);
    _center += _rotation * step;
}

void iCameraManipulator::trackball(osg::Vec3f& axis, float& angle, float p1x, float p1y, float p2x,
                                   float p2y) const
{
    osg::Matrixd const rotation(_rotation);
    osg::Vec3f const uv = osg::Vec3f(0.0f, 1.0f, 0.0f) * rotation;
    osg::Vec3f const sv = osg::Vec3f(1.0f, 0.0f, 0.0f) * rotation;
    osg::Vec3f const lv = osg::Vec3f(0.0f, 0.0f, -1.0f) * rotation;

    osg::Vec3f const p1 = sv * p1x + uv * p1y - lv * tb_project_to_sphere(_trackballSize, p1x, p1y);
    osg::Vec3f const p2 = sv * p2x + uv * p2y - lv * tb_project_to_sphere(_trackballSize, p2x, p2y);

    axis = p2 ^ p1;
    axis.normalize();

    double const t = std::clamp((p2 - p1).length() / (2.0 * _trackballSize), -1.0, 1.0);
    angle = static_cast<float>(std::asin(t));
}

float iCameraManipulator::tb_project_to_sphere(float r, float x, float y) const
{
    float const d = std::sqrt(x * x + y * y);
    if (r * 0.7071067811865476 > d)
        return std::sqrt(r * r - d * d);
    // Outside the sphere's core the point lies on a hyperbola.
    float const t = static_cast<float>(r / 1.4142135623730951);
    return t * t / d;
}

bool iCameraManipulator::lookupAbove(int lookup) const
{
    return _viewer.isNull() || _viewer->getCurrentViewLookup() > lookup;
}
