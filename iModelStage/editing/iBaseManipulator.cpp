#include <iModelStage/editing/iBaseManipulator.h>

#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/snapping/iBaseSnap.h>

#include <osg/Quat>

I_REGISTER_CLASS(iBaseManipulator)

// Out of line: observing a layer needs the layer's whole type, which the
// header only names.
void iBaseManipulator::setGeometricsLayer(iGeometricsLayer* layer)
{
    _layer = layer;
}

iBaseManipulator::iBaseManipulator()
{
    // Snapping passes over the gizmo.
    setFlag(4, false);
}

iBaseManipulator::iBaseManipulator(iBaseManipulator const& other, osg::CopyOp const& copyop)
    : iTransformGroup(other, copyop), _active(other._active), _enabled(other._enabled)
{
}

iBaseManipulator::~iBaseManipulator()
{
    disconnectFirstTarget();
}

void iBaseManipulator::buildGeometry() {}

iInteractor* iBaseManipulator::execute(iIAPoint const&, unsigned int)
{
    return nullptr;
}

bool iBaseManipulator::isActive()
{
    return _active;
}

void iBaseManipulator::setActive(bool on)
{
    _active = on;
}

namespace {

iTransformGroup* firstTarget(NodeList const* targets)
{
    if (!targets || targets->empty())
        return nullptr;
    return dynamic_cast<iTransformGroup*>(targets->front().get());
}

} // namespace

void iBaseManipulator::slotTargetMatrixChanged(iTransformGroup*)
{
    iTransformGroup* target = firstTarget(_targets);
    if (!target)
        return;
    osg::Vec3d translation;
    osg::Quat rotation;
    osg::Vec3d scale;
    osg::Quat scaleOrientation;
    target->getWorldMatrix().decompose(translation, rotation, scale, scaleOrientation);
    // Without the scale the gizmo keeps its size on screen.
    setMatrix(osg::Matrixd::rotate(rotation) * osg::Matrixd::translate(translation));
}

void iBaseManipulator::disconnectFirstTarget()
{
    if (iTransformGroup* target = firstTarget(_targets))
        target->sigMatrixChanged.disconnect(this);
}

void iBaseManipulator::connectFirstTarget()
{
    if (iTransformGroup* target = firstTarget(_targets))
        target->sigMatrixChanged.connect(this, &iBaseManipulator::slotTargetMatrixChanged);
}

void iBaseManipulator::slotSetTargets(NodeList* targets)
{
    disconnectFirstTarget();
    _targets = targets;
    connectFirstTarget();
    slotTargetMatrixChanged(firstTarget(_targets));
}

void iBaseManipulator::addManipulator(iBaseManipulator* child)
{
    if (!child)
        return;
    _children.push_back(child);
    addChild(child);
    child->sigExecuted.connect(this, &iBaseManipulator::slotChildExecuted);
    child->sigStopped.connect(this, &iBaseManipulator::slotChildStopped);
    child->sigInteractorStateChanged.connect(this, &iBaseManipulator::slotChildInteractorStateChanged);
}

// A child's work is reported by the parent, so that listeners of the top
// gizmo hear every part of it; the argument names the part that works.
void iBaseManipulator::slotChildExecuted(iBaseManipulator* child)
{
    sigExecuted(child);
}

void iBaseManipulator::slotChildStopped(iBaseManipulator* child)
{
    sigStopped(child);
}

void iBaseManipulator::slotChildInteractorStateChanged(iBaseManipulator*)
{
    interactorStateChanged();
}

void iBaseManipulator::interactorStateChanged()
{
    sigInteractorStateChanged(this);
}

void iBaseManipulator::showCurrentManipulator(bool on)
{
    iManipulatorsManager* manager = iManipulatorsManager::getInstance();
    iBaseManipulator* current = manager->getCurrentManipulator();
    if (!current)
        return;
    if (iGeometricsLayer* layer = manager->getGeometricsLayer())
        layer->setNodeFlag(current, 0, on);
    else
        current->setFlag(0, on);
}

void iBaseManipulator::borrowTargets()
{
    // A part of a gizmo works on what its parent gizmo works on.
    osg::Group* parent = getNumParents() > 0 ? getParent(0) : nullptr;
    while (parent && !_targets) {
        if (auto* owner = dynamic_cast<iBaseManipulator*>(parent))
            _targets = owner->getTargets();
        parent = parent->getNumParents() > 0 ? parent->getParent(0) : nullptr;
    }
}

bool iBaseManipulator::start(iIAPoint const& point, unsigned int keyMods)
{
    if (!_enabled)
        return false;
    showCurrentManipulator(false);
    if (!_targets)
        borrowTargets();
    if (_targets)
        iBaseSnap::addExclusionList(*_targets);
    setGeometricsLayer(iManipulatorsManager::getInstance()->getGeometricsLayer());

    iInteractor* tool = execute(point, keyMods);
    if (!tool) {
        showCurrentManipulator(true);
        if (_targets)
            iBaseSnap::removeExclusionList(*_targets);
        return false;
    }
    sigExecuted(this);
    _inProgress = true;
    tool->sigCancelled.connect(this, &iBaseManipulator::stop);
    tool->sigEnded.connect(this, &iBaseManipulator::stop);
    tool->sigClosed.connect(this, &iBaseManipulator::stop);
    tool->sigChanged.connect(this, &iBaseManipulator::interactorStateChanged);
    return true;
}

void iBaseManipulator::stop()
{
    // One run stops once, whichever way its tool finishes.
    if (!_inProgress)
        return;
    if (_targets)
        iBaseSnap::removeExclusionList(*_targets);
    _inProgress = false;
    // The manager may drop this gizmo below; keep it alive to the end.
    osg::ref_ptr<iBaseManipulator> const keep(this);
    sigStopped(this);
    showCurrentManipulator(true);
    iManipulatorsManager::getInstance()->slotLayerSelectionChanged();
}
