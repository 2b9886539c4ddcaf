#ifndef IMODELSTAGE_INTERACTION_IINTERACTORMANAGER_H
#define IMODELSTAGE_INTERACTION_IINTERACTORMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/interaction/iInteractor.h>

#include <QString>
#include <QVector>

#include <osg/observer_ptr>

class iGeometricsLayer;
class iInteractorInputHandler;
class iLayersManager;
class iViewer;

// The stack of running tools. The top one is current and gets the input;
// a finished tool is taken off at the next loop and deleted. The manager
// owns what lies on its stack, and forwards the current tool's prompts and
// points to the application.
//
// There is one per process: the last one constructed.
class IMODELSTAGE_EXPORT iInteractorManager : public iRoot {
    I_CLASS(iInteractorManager, iRoot, 1)
public:
    iInteractorManager();
    ~iInteractorManager() override;
    iInteractorManager(iInteractorManager const&) = delete;
    iInteractorManager& operator=(iInteractorManager const&) = delete;

    static iInteractorManager* getInteractorManager();

    // Takes ownership on success and when a stacked tool of the same class
    // is refused (it is deleted); without a layer the caller keeps it.
    // replace cancels and pops the current tool first, for a tool that is
    // not stacked.
    bool pushInteractor(iInteractor* interactor, bool replace);
    // A persistent top stays where it is.
    void popInteractor();
    // Once per frame: redraws, restarts and pops the current tool.
    void loop();
    void cancelCurrentInteractor();
    void closeCurrentInteractor();
    // Cancels the current tool only.
    void slotCancelAllInteractors();

    iInteractor* getCurrentInteractor() const { return _current; }
    int getCount() const { return _stack.size(); }

    iLayersManager* getLayersManager() const { return _layersManager; }
    // Cancels the current tool before the document is emptied.
    void setLayersManager(iLayersManager* manager);

    // Cleared when that viewer is destroyed.
    iViewer* getCurrentViewer() const;
    void setCurrentViewer(iViewer* viewer);

    // Not owned.
    iInteractorInputHandler* getInputHandler() const { return _inputHandler; }
    void setInputHandler(iInteractorInputHandler* handler) { _inputHandler = handler; }

    // When set, a push does not take the layer of the current viewer.
    iGeometricsLayer* getGeometricsLayer() const;
    void setGeometricsLayer(iGeometricsLayer* layer);

    sigslot::signal2<QString, iInteractor::MessageType> sigMessage;
    sigslot::signal1<iIAPoint> sigMoved;
    sigslot::signal1<iIAPoint> sigClicked;
    sigslot::signal1<iIAPoint> sigReleased;
    sigslot::signal0<> sigPushed;
    sigslot::signal0<> sigPopped;
    sigslot::signal0<> sigCurrentChanging;

protected:
    void setCurrentInteractor(iInteractor* interactor);

    void interactorMessageChanged(QString message, iInteractor::MessageType type);
    void slotInteractorMoved(iIAPoint p);
    void slotInteractorClicked(iIAPoint p);
    void slotInteractorReleased(iIAPoint p);

private:
    iGeometricsLayer* findLayerFor(iInteractor* interactor);
    bool runImmediate(iInteractor* interactor);
    void clearCurrentInteractor();
    void clearInputLine();

    iInteractor* _current = nullptr;
    QVector<iInteractor*> _stack;
    iLayersManager* _layersManager = nullptr;
    osg::observer_ptr<iViewer> _currentViewer;
    iInteractorInputHandler* _inputHandler = nullptr;
    osg::observer_ptr<iGeometricsLayer> _geometricsLayer;

    static iInteractorManager* s_instance;
};

#endif
