#include <iModelStage/interaction/iInteractor.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/viewing/iViewer.h>

#include <algorithm>

I_REGISTER_CLASS(iInteractor)

iIAPoint iInteractor::s_lastInputPos;

iInteractor::iInteractor() : _iLayer(new iTransformGroup) {}

iInteractor::~iInteractor()
{
    // A tool deleted without a pop must not leave its feedback behind.
    removeILayerFrom(_geometricsLayer.get());
}

iIAPoint const& iInteractor::getLastInputPos()
{
    return s_lastInputPos;
}

void iInteractor::reset()
{
    _currentStep = 0;
    _dragging = false;
    _clicked = false;
    _state = iIAStateIdle;
}

void iInteractor::goBack()
{
    if (_currentStep > 0)
        --_currentStep;
    _currentPos = _startPos;
    if (_currentStep == 0)
        reset();
    _needsUpdate = true;
    emitCurrentMessage();
}

void iInteractor::start()
{
    _state = iIAStateStarted;
    if (!_continuos)
        _currentStep = 0;
    _startPos = _currentPos;
    _dragging = false;
    _clicked = false;
    // Connected anew at every start: a tool restarted many times hears each
    // selection change once per start.
    if (iGeometricsLayer* layer = getGeometricsLayer())
        layer->sigObjectsSelectionChanged.connect(this, &iInteractor::slotLayerSelectionChanged);
    emitCurrentMessage();
    sigChanged();
}

bool iInteractor::move(iIAPoint const& p)
{
    _currentPos = p;
    if (_clicked)
        _dragging = true;
    sigMoved(p);
    sigChanged();
    return false;
}

bool iInteractor::click(iIAPoint const& p)
{
    // Only the first click of a run marks where the tool began.
    if (_state == iIAStateStarted)
        _startPos = p;
    _state = iIAStateWorking;
    _currentPos = p;
    _clicked = true;
    sigClicked(p);
    sigChanged();
    emitCurrentMessage();
    return false;
}

bool iInteractor::release(iIAPoint const& p)
{
    _clicked = false;
    _lastReleasedPos = p;
    ++_currentStep;
    _currentPos = p;
    s_lastInputPos = p;
    sigReleased(p);
    sigChanged();
    if (_currentStep == _numSteps) {
        end();
        return false;
    }
    _needsUpdate = true;
    emitCurrentMessage();
    return false;
}

bool iInteractor::keyPressed(int)
{
    return false;
}

bool iInteractor::keyReleased(int)
{
    return false;
}

void iInteractor::cancel()
{
    emitCurrentMessage();
    if (_persistent)
        reset();
    else
        _state = iIAStateCancelled;
    _needsUpdate = true;
    sigCancelled();
}

void iInteractor::end()
{
    // The closing prompt goes out while the counter still points at it.
    emitCurrentMessage();
    _state = iIAStateEnded;
    _currentStep = 0;
    _dragging = false;
    _needsUpdate = true;
    sigEnded();
}

void iInteractor::close()
{
    emitCurrentMessage();
    _state = iIAStateClosed;
    sigClosed();
}

int iInteractor::getIPlaneConstraint(int)
{
    return 7;
}

bool iInteractor::canAccept()
{
    return true;
}

bool iInteractor::canCancel()
{
    return true;
}

void iInteractor::init() {}

void iInteractor::doUpdate() {}

void iInteractor::setContinuos(bool on)
{
    _continuos = on;
    sigContinuosChanged(on);
    sigChanged();
}

void iInteractor::setLinked(bool on)
{
    _linked = on;
    sigLinkedChanged(on);
    sigChanged();
}

void iInteractor::setILayerFollowIPlane(bool on)
{
    _iLayerFollowIPlane = on;
    slotUpdateIPlaneMatrix();
}

iViewer* iInteractor::getViewer() const
{
    return _viewer.get();
}

void iInteractor::setViewer(iViewer* viewer)
{
    iViewer* old = _viewer.get();
    if (viewer == old)
        return;
    if (old)
        old->sigIPlaneChanged.disconnect(this);
    _viewer = viewer;
    sigViewerChanged(old, viewer);
    if (viewer)
        viewer->sigIPlaneChanged.connect(this, &iInteractor::slotUpdateIPlaneMatrix);
    slotUpdateIPlaneMatrix();
}

osg::Group* iInteractor::getILayer()
{
    return _iLayer.get();
}

iInputPlane* iInteractor::getPrevIPlane()
{
    return _prevIPlane.get();
}

void iInteractor::setPrevIPlane(iInputPlane* plane)
{
    _prevIPlane = plane;
}

iGeometricsLayer* iInteractor::getGeometricsLayer()
{
    if (iGeometricsLayer* held = _geometricsLayer.get())
        return held;
    iGeometricsLayer* found = nullptr;
    if (iViewer* viewer = _viewer.get())
        found = dynamic_cast<iGeometricsLayer*>(viewer->getViewModel());
    if (!found)
        found = dynamic_cast<iGeometricsLayer*>(iLayersManager::getLayer("iGeometricsLayer"));
    _geometricsLayer = found;
    return found;
}

void iInteractor::setGeometricsLayer(iGeometricsLayer* layer)
{
    iGeometricsLayer* old = _geometricsLayer.get();
    if (layer == old)
        return;
    removeILayerFrom(old);
    _geometricsLayer = layer;
    if (layer && layer->getInteractiveLayer())
        layer->getInteractiveLayer()->addChild(_iLayer.get());
}

void iInteractor::removeILayerFrom(iGeometricsLayer* layer)
{
    if (layer && layer->getInteractiveLayer())
        layer->getInteractiveLayer()->removeChild(_iLayer.get());
}

bool iInteractor::lockGeometricLayer(bool lock)
{
    bool const former = _geometryLayerLocked;
    _geometryLayerLocked = lock;
    return former;
}

QString iInteractor::getCurrentMessage() const
{
    if (_steps.empty())
        return QString();
    int const entries = static_cast<int>(_steps.size());
    if (_numSteps == -1 && entries >= 2) {
        bool const running = _state == iIAStateStarted || _state == iIAStateWorking;
        return _steps[running ? 0 : 1].message;
    }
    return _steps[std::max(0, std::min(_currentStep, entries - 1))].message;
}

iInteractor::iInteractorTypes iInteractor::getCurrentStepType() const
{
    if (_steps.empty())
        return iIATypeNone;
    if (_numSteps == -1)
        return _stepDefaultType;
    int const entries = static_cast<int>(_steps.size());
    return _steps[std::max(0, std::min(_currentStep, entries - 1))].type;
}

osg::Matrixd iInteractor::getLocalToWorldMatrix()
{
    iViewer* viewer = _viewer.get();
    iInputPlane* plane = viewer ? viewer->getIPlane() : nullptr;
    return plane ? plane->getWorldMatrix() : osg::Matrixd::identity();
}

osg::Matrixd iInteractor::getWorldToLocalMatrix()
{
    iViewer* viewer = _viewer.get();
    iInputPlane* plane = viewer ? viewer->getIPlane() : nullptr;
    return plane ? plane->getInverseWorldMatrix() : osg::Matrixd::identity();
}

namespace {

osg::Vec3f normalised(osg::Vec3f v)
{
    if (v.length() > 0.0f)
        v.normalize();
    return v;
}

} // namespace

osg::Matrixd iInteractor::computeIPlaneMatrix(osg::Vec3f const& position, osg::Vec3f const& direction)
{
    osg::Vec3f const d = normalised(direction);
    if (d.length() < 1e-5f)
        return osg::Matrixd::translate(position);
    osg::Vec3f n(0.0f, 0.0f, 1.0f);
    iViewer* viewer = _viewer.get();
    if (iInputPlane* plane = viewer ? viewer->getIPlane() : nullptr)
        n = plane->getNormal();
    osg::Vec3f const w = normalised(d ^ n);
    osg::Vec3f const u = normalised(w ^ d);
    osg::Vec3f const e = normalised(d ^ u);
    osg::Matrixd m(d.x(), d.y(), d.z(), 0.0, u.x(), u.y(), u.z(), 0.0, e.x(), e.y(), e.z(), 0.0, position.x(),
                   position.y(), position.z(), 1.0);
    m.preMult(osg::Matrixd::rotate(-osg::PI_2, osg::Vec3d(1.0, 0.0, 0.0)));
    return m;
}

void iInteractor::addStep(QString const& message, iInteractorTypes type, osg::Vec3f const& value)
{
    int const present = static_cast<int>(_steps.size());
    // A tool of k steps holds k + 1 prompts, the last one closing; an
    // open-ended tool holds three.
    if (_numSteps != -1 && present > _numSteps)
        return;
    if (_numSteps == -1 && present > 2)
        return;
    _steps.push_back(iInteractorStep{message, type, value});
}

void iInteractor::setCurrentStep(int step)
{
    _currentStep = step;
    if (step == _numSteps)
        end();
    else
        emitCurrentMessage();
}

void iInteractor::emitMessage(QString const& message, MessageType type)
{
    sigMessage(message, type);
}

void iInteractor::emitCurrentMessage()
{
    emitMessage(getCurrentMessage(), iIAMessageInfo);
}

void iInteractor::storeForUndo(std::string const& text)
{
    if (iLayersManager* manager = iLayersManager::getInstance())
        manager->storeForUndo(text);
}

void iInteractor::cancelUndoStore()
{
    if (iLayersManager* manager = iLayersManager::getInstance())
        manager->cancelUndoStore();
}

bool iInteractor::project3DTo2D(osg::Vec3f const& world, osg::Vec3f& window)
{
    iViewer* viewer = _viewer.get();
    if (!viewer)
        return false;
    osg::Camera* camera = viewer->getCamera();
    if (!camera || !camera->getViewport())
        return false;
    window = world * camera->getViewMatrix() * camera->getProjectionMatrix() *
             camera->getViewport()->computeWindowMatrix();
    return true;
}

void iInteractor::slotLayerSelectionChanged()
{
    sigChanged();
}

void iInteractor::slotUpdateIPlaneMatrix()
{
    iViewer* viewer = _viewer.get();
    if (!viewer)
        return;
    iInputPlane* plane = viewer->getIPlane();
    bool const follow = _iLayerFollowIPlane && plane;
    _iLayer->setMatrix(follow ? plane->getMatrix() : osg::Matrixd::identity());
}
