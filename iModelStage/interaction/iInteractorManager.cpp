#include <iModelStage/interaction/iInteractorManager.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/interaction/iInteractorInputHandler.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/snapping/iBaseSnap.h>
#include <iModelStage/viewing/iViewer.h>

#include <cstring>

I_DEFINE_CLASS(iInteractorManager)

iInteractorManager* iInteractorManager::s_instance = nullptr;

namespace {

void applySnapBehaviour(iInteractor* interactor)
{
    iBaseSnap::setOrthoSnapBevahior(static_cast<iBaseSnap::iOrthoSnapBevahior>(interactor->getSnapBevahior()));
}

} // namespace

iInteractorManager::iInteractorManager()
{
    s_instance = this;
}

iInteractorManager::~iInteractorManager()
{
    QVector<iInteractor*> const owned = _stack;
    _stack.clear();
    _current = nullptr;
    for (iInteractor* interactor : owned)
        delete interactor;
    if (s_instance == this)
        s_instance = nullptr;
}

iInteractorManager* iInteractorManager::getInteractorManager()
{
    return s_instance;
}

iGeometricsLayer* iInteractorManager::findLayerFor(iInteractor* interactor)
{
    if (iViewer* viewer = getCurrentViewer(); viewer && !_geometricsLayer.valid()) {
        if (auto* layer = dynamic_cast<iGeometricsLayer*>(viewer->getViewModel()))
            return layer;
    }
    return interactor->getGeometricsLayer();
}

bool iInteractorManager::pushInteractor(iInteractor* interactor, bool replace)
{
    if (!interactor)
        return false;
    iGeometricsLayer* layer = findLayerFor(interactor);
    if (!layer)
        return false;
    iViewer* viewer = getCurrentViewer();
    interactor->setGeometricsLayer(layer);
    interactor->setViewer(viewer);
    interactor->init();
    if (viewer && interactor->getRestoreInputPlane())
        interactor->setPrevIPlane(viewer->getIPlane());
    applySnapBehaviour(interactor);

    // A second zoom window over a running one does not pile up.
    if (_current && interactor->isStacked() &&
        std::strcmp(_current->getClassName(), interactor->getClassName()) == 0) {
        delete interactor;
        return false;
    }
    if (interactor->isImmediate())
        return runImmediate(interactor);

    if (replace && !interactor->isStacked()) {
        cancelCurrentInteractor();
        popInteractor();
    }
    _stack.append(interactor);
    osg::Group* group = layer->getInteractiveLayer();
    if (group && !group->containsNode(interactor->getILayer()))
        group->addChild(interactor->getILayer());

    interactor->sigMessage.connect(this, &iInteractorManager::interactorMessageChanged);
    interactor->sigMoved.connect(this, &iInteractorManager::slotInteractorMoved);
    interactor->sigClicked.connect(this, &iInteractorManager::slotInteractorClicked);
    interactor->sigReleased.connect(this, &iInteractorManager::slotInteractorReleased);
    setCurrentInteractor(interactor);
    sigPushed();
    return true;
}

bool iInteractorManager::runImmediate(iInteractor* interactor)
{
    interactor->sigMessage.connect(this, &iInteractorManager::interactorMessageChanged);
    setCurrentInteractor(interactor);
    interactor->start();
    interactor->end();
    sigPopped();
    // The tool is about to go: the current pointer must not outlive it.
    if (!_stack.isEmpty())
        setCurrentInteractor(_stack.last());
    else
        clearCurrentInteractor();
    delete interactor;
    return true;
}

void iInteractorManager::popInteractor()
{
    if (_stack.isEmpty()) {
        clearCurrentInteractor();
        return;
    }
    iInteractor* top = _stack.last();
    if (top->isPersistent())
        return;
    iGeometricsLayer* layer = top->getGeometricsLayer();
    sigPopped();
    _stack.removeLast();
    if (layer) {
        osg::Group* feedback = top->getILayer();
        feedback->removeChildren(0, feedback->getNumChildren());
        if (osg::Group* group = layer->getInteractiveLayer())
            group->removeChild(feedback);
    }
    iViewer* viewer = top->getViewer();
    if (viewer && top->getRestoreInputPlane())
        viewer->setIPlane(top->getPrevIPlane());
    if (!_stack.isEmpty()) {
        setCurrentInteractor(_stack.last());
        sigPushed();
    } else {
        clearCurrentInteractor();
    }
    delete top;
}

void iInteractorManager::loop()
{
    iInteractor* current = _current;
    if (!current)
        return;
    int const state = current->getState();
    if (state == iInteractor::iIAStateStarted || state == iInteractor::iIAStateWorking) {
        if (current->_needsUpdate) {
            current->doUpdate();
            current->_needsUpdate = false;
        }
        return;
    }
    if (state == iInteractor::iIAStateEnded) {
        if (current->isContinuos()) {
            // Restarted on the same position, so its preview comes back at once.
            iIAPoint const position = current->getCurrentPos();
            current->start();
            current->move(position);
        } else if (current->isPersistent()) {
            current->reset();
        } else {
            popInteractor();
        }
        return;
    }
    if (state == iInteractor::iIAStateClosed || state == iInteractor::iIAStateCancelled)
        popInteractor();
}

void iInteractorManager::cancelCurrentInteractor()
{
    if (!_current)
        return;
    clearInputLine();
    _current->cancel();
}

void iInteractorManager::closeCurrentInteractor()
{
    if (!_current)
        return;
    clearInputLine();
    _current->close();
}

void iInteractorManager::slotCancelAllInteractors()
{
    cancelCurrentInteractor();
}

void iInteractorManager::setLayersManager(iLayersManager* manager)
{
    if (_layersManager)
        _layersManager->sigBeforeEmptyLayers.disconnect(this);
    _layersManager = manager;
    if (manager)
        manager->sigBeforeEmptyLayers.connect(this, &iInteractorManager::slotCancelAllInteractors);
}

iViewer* iInteractorManager::getCurrentViewer() const
{
    return _currentViewer.get();
}

void iInteractorManager::setCurrentViewer(iViewer* viewer)
{
    _currentViewer = viewer;
}

iGeometricsLayer* iInteractorManager::getGeometricsLayer() const
{
    return _geometricsLayer.get();
}

void iInteractorManager::setGeometricsLayer(iGeometricsLayer* layer)
{
    _geometricsLayer = layer;
}

void iInteractorManager::setCurrentInteractor(iInteractor* interactor)
{
    sigCurrentChanging();
    _current = interactor;
    if (!interactor)
        return;
    applySnapBehaviour(interactor);
    sigMessage(interactor->getCurrentMessage(), iInteractor::iIAMessageInfo);
}

void iInteractorManager::clearCurrentInteractor()
{
    sigCurrentChanging();
    _current = nullptr;
}

void iInteractorManager::clearInputLine()
{
    if (_inputHandler)
        _inputHandler->setDefaultData("");
}

void iInteractorManager::interactorMessageChanged(QString message, iInteractor::MessageType type)
{
    sigMessage(message, type);
}

void iInteractorManager::slotInteractorMoved(iIAPoint p)
{
    sigMoved(p);
}

void iInteractorManager::slotInteractorClicked(iIAPoint p)
{
    sigClicked(p);
}

void iInteractorManager::slotInteractorReleased(iIAPoint p)
{
    sigReleased(p);
    clearInputLine();
}
