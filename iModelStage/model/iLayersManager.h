#ifndef IMODELSTAGE_MODEL_ILAYERSMANAGER_H
#define IMODELSTAGE_MODEL_ILAYERSMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <map>
#include <string>
#include <vector>

class iBaseModel;
class iExceptionManagerInterface;
class iLayerManagerHistory;
class iNodeGroup;
class iNodeLayer;
class iProgressInterface;
class iUndoRedoManager;

// The document: the named layers (all under one scene root), the current
// layer, the file name and modified state, the document file, and the
// anchor of progress, check reports, undo and the layer history.
//
// Layers are registered once by name and live for the process; loading
// refills them. The last manager constructed is the instance; it is not
// created on demand.
class IMODELSTAGE_EXPORT iLayersManager : public iRoot {
    I_CLASS(iLayersManager, iRoot, 1)
public:
    // Identifies the document file.
    static char const* const FileId;
    // Thrown out of load for a file that is not a document.
    static char const* const InvalidFileIdError;

    iLayersManager();
    ~iLayersManager() override;
    iLayersManager(iLayersManager const&) = delete;
    iLayersManager& operator=(iLayersManager const&) = delete;

    static iLayersManager* getInstance();

    static iNodeLayer* getCurrentLayer();
    static bool setCurrentLayer(std::string const& name);
    static bool setCurrentLayer(iNodeLayer* layer);
    // Null for an unknown name and for a layer kept as a ghost.
    static iNodeLayer* getLayer(std::string const& name);
    // Every layer that is not a ghost, in name order.
    static void getLayersList(std::vector<iNodeLayer*>& layers);
    // Creates the layer of that class under that name, or returns the one
    // already registered under the name. The first becomes current.
    static iNodeLayer* registerNodeLayerClass(std::string const& className, std::string const& layerName);
    // The parent of every layer's root.
    static osg::Group* getLayersRoot();

    // The document file. A char const* thrown out of load is the only
    // failure that reaches the caller: a file of another kind.
    bool load(std::string const& fileName);
    // A save that fails leaves the file it was to replace as it was, keeps
    // the modified state and the file name, and still returns true, as
    // callers of the document file expect; getLastSaveError tells why.
    bool save();
    bool saveAs(std::string const& fileName);
    // Why the last save failed; empty after a success.
    std::string const& getLastSaveError() const { return _lastSaveError; }
    void loadFromStream(iInStream& stream);
    void saveToStream(iOutStream& stream);
    // Starts a new document.
    void emptyAllLayers();
    // Destroys every layer; they must be registered again.
    void freeLayerObjects();
    iNodeGroup* findObjectByUniqueId(long id);

    // One tick of every layer.
    void loop();
    bool lockLoop(bool on);
    bool isLoopLocked() const { return _loopLocked; }

    bool dbChanged() const { return _modified; }
    void resetDbState();
    std::string const& getCurrentFileName() const { return _fileName; }
    void setCurrentFileName(std::string const& fileName) { _fileName = fileName; }

    // Never null: a silent default stands in when none is set or progress
    // is off.
    iProgressInterface* getProgressInterface();
    void setProgressInterface(iProgressInterface* progress) { _progress = progress; }
    // Returns the previous value.
    bool setProgressInterfaceEnabled(bool on);

    // Keeps the progress interface disabled while it lives, as snapshots and
    // settings files want; a null manager is allowed.
    class QuietProgress {
    public:
        explicit QuietProgress(iLayersManager* manager) : m_manager(manager)
        {
            if (m_manager)
                m_previous = m_manager->setProgressInterfaceEnabled(false);
        }
        ~QuietProgress()
        {
            if (m_manager)
                m_manager->setProgressInterfaceEnabled(m_previous);
        }
        QuietProgress(QuietProgress const&) = delete;
        QuietProgress& operator=(QuietProgress const&) = delete;

    private:
        iLayersManager* m_manager;
        bool m_previous = true;
    };
    // Never null.
    iExceptionManagerInterface* getExceptionManagerInterface();
    void setExceptionManagerInterface(iExceptionManagerInterface* exceptions) { _exceptions = exceptions; }

    iUndoRedoManager* getUndoRedoManager() const { return _undoManager; }
    bool getUndoRedoEnabled() const { return _undoEnabled; }
    void setUndoRedoEnabled(bool on) { _undoEnabled = on; }
    iLayerManagerHistory* getHistoryManager() const { return _history; }
    // Tools call this before each change: it marks the document modified
    // and keeps a snapshot to go back to.
    void storeForUndo(std::string const& text);
    void cancelUndoStore();
    bool undo(int count, bool storeCurrent);
    bool redo(int count);

    sigslot::signal1<iBaseModel*> sigCurrentLayerChanged;
    sigslot::signal1<iBaseModel*> sigLayerRegistered;
    sigslot::signal0<> sigBeforeEmptyLayers;
    sigslot::signal0<> sigBeginSave;
    sigslot::signal0<> sigEndSave;
    sigslot::signal0<> sigBeginLoad;
    sigslot::signal0<> sigEndLoad;
    sigslot::signal1<bool> sigDbChanged;
    sigslot::signal1<std::string const&> sigFileNameChanged;

protected:
    friend class iLayersManagerLock;


    static void lockCurrentLayer(bool on);
    static bool isCurrentLayerLocked();

    virtual bool undoImplementation(int count, bool storeCurrent);
    virtual bool redoImplementation(int count);
    virtual void storeForUndoImplementation(std::string const& text);
    virtual void cancelUndoStoreImplementation();

private:
    friend class iUndoRedoManager;

    void setModified(bool modified);
    void readLayers(iInStream& stream);
    void discardLoadedLayers(std::vector<osg::ref_ptr<iNodeLayer>> const& ghosts);
    void writeLayer(iOutStream& stream, iNodeLayer* layer);

    iProgressInterface* _progress = nullptr;
    iExceptionManagerInterface* _exceptions = nullptr;
    bool _progressEnabled = true;
    bool _loopLocked = false;
    iLayerManagerHistory* _history = nullptr;
    bool _undoEnabled = true;
    iUndoRedoManager* _undoManager = nullptr;
    std::string _fileName;
    bool _modified = false;
    std::string _lastSaveError;
};

#endif
