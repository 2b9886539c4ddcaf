#ifndef IMODELSTAGE_EDITING_IEDITINGMANAGER_H
#define IMODELSTAGE_EDITING_IEDITINGMANAGER_H

#include <iModelStage/editing/iEditingData.h>
#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/NodeList.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <string>
#include <vector>

class iBaseHandle;
class iGeometricGroup;
class iGeometricsLayer;
class iInteractor;

// Switches handle editing on and off. While on, the pick tool, the tool
// manager and the manipulators work on the editing layer of the document
// layer, where a handle stands on every vertex of the objects that were
// selected. The handles are ordinary objects there, moved and deleted by
// the ordinary tools; their data feeds each change back into the objects.
// Emptying the document (undo, redo, load) ends editing.
class IMODELSTAGE_EXPORT iEditingManager : public iRoot {
    I_CLASS(iEditingManager, iRoot, 1)
public:
    iEditingManager();
    ~iEditingManager() override;
    iEditingManager(iEditingManager const&) = delete;
    iEditingManager& operator=(iEditingManager const&) = delete;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    // Created on first use.
    static iEditingManager* getInstance();

    sigslot::signal0<> sigEditingBegin;
    sigslot::signal0<> sigEditingEnd;

    bool getEditing() const { return _editing; }
    // Editing needs the pick tool alone on the tool stack. The flag is kept
    // even when it cannot start: switch it off before trying again.
    void setEditing(bool on, std::string const& handlerClass);
    // The layer of the editing tool, or null.
    iGeometricsLayer* getWorkingLayer();

    NodeList const& getEditedObjects() const { return _editedObjects; }
    std::vector<osg::ref_ptr<iEditingData>> const& getEditingData() const { return _editingData; }

protected:
    void beginEditingState(std::string const& handlerClass);
    void endEditingState();
    void buildHandles(std::string const& handlerClass);
    void cleanup();
    void slotLayerStateChanged();
    void slotObjectRemoved(osg::Node* node);

private:
    bool startEditing();
    void stopEditing();
    void buildObjectHandles(iGeometricGroup* object, std::string const& handlerClass, iGeometricsLayer* working);
    void forgetSaved();
    void slotInteractorDestroyed(iRoot* source);

    bool _editing = false;
    // Set while the layers below are switched to the editing layer.
    bool _engaged = false;
    iInteractor* _interactor = nullptr;
    osg::observer_ptr<iGeometricsLayer> _savedLayer;
    osg::observer_ptr<iGeometricsLayer> _savedManagerLayer;
    osg::observer_ptr<iGeometricsLayer> _savedManipulatorsLayer;
    std::vector<osg::ref_ptr<iEditingData>> _editingData;
    NodeList _editedObjects;
    bool _savedLocked = false;

    static iEditingManager* s_instance;
};

#endif
