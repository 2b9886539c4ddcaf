#include <iModelStage/editing/iEditingManager.h>

#include <iModelStage/editing/iBaseHandle.h>
#include <iModelStage/editing/iGeometryHandler.h>
#include <iModelStage/editing/iGeometryHandlerManager.h>
#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/editing/iPointHandle.h>
#include <iModelStage/geometry/iFrameInstance.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/snapping/iBaseSnap.h>

#include <cstring>
#include <set>

I_REGISTER_CLASS(iEditingManager)

iEditingManager* iEditingManager::s_instance = nullptr;

iEditingManager::iEditingManager()
{
    if (!s_instance)
        s_instance = this;
}

iEditingManager::~iEditingManager()
{
    // The tools and layers must not stay on the editing layer.
    setEditing(false, "");
    if (s_instance == this)
        s_instance = nullptr;
}

iEditingManager* iEditingManager::getInstance()
{
    if (!s_instance)
        new iEditingManager;
    return s_instance;
}

iGeometricsLayer* iEditingManager::getWorkingLayer()
{
    return _interactor ? _interactor->getGeometricsLayer() : nullptr;
}

void iEditingManager::setEditing(bool on, std::string const& handlerClass)
{
    if (_editing == on)
        return;
    _editing = on;
    if (!on) {
        stopEditing();
        return;
    }
    if (startEditing())
        beginEditingState(handlerClass);
}

bool iEditingManager::startEditing()
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (!manager || manager->getCount() != 1)
        return false;
    iInteractor* interactor = manager->getCurrentInteractor();
    if (!interactor || std::strcmp(interactor->getClassName(), "iSelectIA") != 0)
        return false;
    iGeometricsLayer* layer = interactor->getGeometricsLayer();
    if (!layer)
        return false;

    iManipulatorsManager* manipulators = iManipulatorsManager::getInstance();
    _engaged = true;
    _interactor = interactor;
    _interactor->sigDestroyed.connect(this, &iEditingManager::slotInteractorDestroyed);
    _savedLayer = layer;
    _savedManagerLayer = manager->getGeometricsLayer();
    _savedManipulatorsLayer = manipulators->getGeometricsLayer();

    // From now on picking, selection and the transform tools see handles.
    iGeometricsLayer* editing = layer->getEditingLayer();
    manipulators->setGeometricsLayer(editing);
    interactor->setGeometricsLayer(editing);
    manager->setGeometricsLayer(editing);
    editing->sigObjectRemoved.connect(this, &iEditingManager::slotObjectRemoved);
    // The event handler must not switch the tool back to the viewer's layer.
    _savedLocked = interactor->lockGeometricLayer(true);
    return true;
}

void iEditingManager::stopEditing()
{
    if (!_engaged)
        return;
    endEditingState();
    if (_interactor)
        _interactor->lockGeometricLayer(_savedLocked);
    iGeometricsLayer* layer = _savedLayer.get();
    if (layer)
        layer->getEditingLayer()->sigObjectRemoved.disconnect(this);
    if (_interactor)
        _interactor->setGeometricsLayer(layer);
    if (iInteractorManager* manager = iInteractorManager::getInteractorManager())
        manager->setGeometricsLayer(_savedManagerLayer.get());
    iGeometricsLayer* manipulated = _savedManipulatorsLayer.get();
    iManipulatorsManager::getInstance()->setGeometricsLayer(manipulated);
    // The manipulators rebuild for the document's selection.
    if (manipulated)
        manipulated->sigObjectsSelectionChanged();
    forgetSaved();
}

void iEditingManager::forgetSaved()
{
    if (_interactor)
        _interactor->sigDestroyed.disconnect(this);
    _interactor = nullptr;
    _savedLayer = nullptr;
    _savedManagerLayer = nullptr;
    _savedManipulatorsLayer = nullptr;
    _engaged = false;
}

void iEditingManager::slotInteractorDestroyed(iRoot*)
{
    _interactor = nullptr;
}

void iEditingManager::beginEditingState(std::string const& handlerClass)
{
    if (iLayersManager* document = iLayersManager::getInstance()) {
        // Undo, redo and load replace the objects the handles stand on.
        document->sigBeforeEmptyLayers.disconnect(this);
        document->sigBeforeEmptyLayers.connect(this, &iEditingManager::slotLayerStateChanged);
    }
    sigEditingBegin();
    cleanup();
    buildHandles(handlerClass);
}

void iEditingManager::endEditingState()
{
    sigEditingEnd();
    cleanup();
}

void iEditingManager::cleanup()
{
    iBaseSnap::removeExclusionList(_editedObjects);
    _editingData.clear();
    iGeometricsLayer* working = getWorkingLayer();
    // A tool that went away leaves its handles in the editing layer.
    if (!working && _savedLayer.valid())
        working = _savedLayer->getEditingLayer();
    if (working)
        working->removeAllObjects();
    _editedObjects.clear();
}

void iEditingManager::buildHandles(std::string const& handlerClass)
{
    iGeometricsLayer* layer = _savedLayer.get();
    if (!layer)
        return;
    std::set<std::string> classes;
    iRoot::getChildrenClassesList("iGeometricGroup", classes, true);
    layer->getSelectionList(_editedObjects, &classes);
    if (_editedObjects.empty())
        return;
    // A dragged handle must never snap to the object it edits.
    iBaseSnap::addExclusionList(_editedObjects);

    iGeometricsLayer* working = getWorkingLayer();
    std::vector<std::string> handlers;
    for (osg::ref_ptr<osg::Node> const& node : _editedObjects) {
        auto* object = dynamic_cast<iGeometricGroup*>(node.get());
        if (!object)
            continue;
        iGeometryHandlerManager::getHandlerClasses(object->getClassName(), handlers);
        for (std::string const& name : handlers)
            if (name == handlerClass)
                buildObjectHandles(object, name, working);
    }
}

namespace {

iBaseHandle* makeHandle(std::string const& className)
{
    if (iBaseHandle* made = iNewFrameInstance<iBaseHandle>(className.c_str()).release())
        return made;
    return new iPointHandle;
}

} // namespace

void iEditingManager::buildObjectHandles(iGeometricGroup* object, std::string const& handlerClass,
                                         iGeometricsLayer* working)
{
    osg::ref_ptr<iGeometryHandler> handler = iNewFrameInstance<iGeometryHandler>(handlerClass.c_str()).release();
    if (!handler)
        return;
    osg::ref_ptr<osg::Vec3Array> positions = new osg::Vec3Array;
    if (!handler->getHandles(object, *positions))
        return;
    osg::ref_ptr<iEditingData> data = new iEditingData(handler.get(), object);
    osg::Matrixd const world = object->getWorldMatrix();
    for (unsigned int i = 0; i < positions->size(); ++i) {
        int const index = static_cast<int>(i);
        osg::ref_ptr<iBaseHandle> handle = makeHandle(handler->getEditingHandlerClass());
        handle->setFlag(2, handler->canDeleteHandle(object, index));
        handle->setIndex(index);
        handle->setPosition(osg::Vec3f((*positions)[i] * world));
        if (working)
            working->addObject(handle.get(), true);
        data->addHandle(handle.get());
        handler->initHandle(object, handle.get());
    }
    _editingData.push_back(data);
}

void iEditingManager::slotObjectRemoved(osg::Node* node)
{
    // The handle's data hears it and deletes the vertex.
    if (auto* object = dynamic_cast<iRoot*>(node))
        object->sigDestroyed(object);
}

void iEditingManager::slotLayerStateChanged()
{
    setEditing(false, "");
}
