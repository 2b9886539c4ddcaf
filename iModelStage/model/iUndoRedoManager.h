#ifndef IMODELSTAGE_MODEL_IUNDOREDOMANAGER_H
#define IMODELSTAGE_MODEL_IUNDOREDOMANAGER_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/sigslot.h>

#include <list>
#include <string>

class iLayersManager;

// Undo and redo by whole-document snapshots. Before each user change the
// document is written to a pair of temporary files (an index naming the
// data file, and the data: one complete document file); undo empties the
// layers and reads the wanted snapshot back. The document after one step
// is the document before the next, so neighbouring steps share one
// snapshot. A snapshot that is missing or not this manager's is found out
// before the document is touched, and the step is refused; any other
// failure to write or read a snapshot gives up the whole history.
//
// Snapshot files have names that cannot be guessed, are created
// exclusively and are replaced, never written through, so that a shared
// temporary folder cannot be used to make the manager write elsewhere.
class IMODELSTAGE_EXPORT iUndoRedoManager {
public:
    // One snapshot on disk. Unless shared, it deletes its files when it goes.
    class IMODELSTAGE_EXPORT iUndoRedoManagerState {
    public:
        ~iUndoRedoManagerState();
        iUndoRedoManagerState(iUndoRedoManagerState const&) = delete;
        iUndoRedoManagerState& operator=(iUndoRedoManagerState const&) = delete;

        bool isShared() const { return _shared; }
        int getUid() const { return _uid; }
        std::string const& getPath() const { return _path; }

    protected:
        friend class iUndoRedoManager;
        iUndoRedoManagerState(bool shared, int uid, std::string const& path);

    private:
        bool _shared;
        int _uid;
        std::string _path;
    };

    // One user step: the document before it and, once known, after it.
    class IMODELSTAGE_EXPORT iUndoRedoManagerItem {
    public:
        ~iUndoRedoManagerItem();
        iUndoRedoManagerItem(iUndoRedoManagerItem const&) = delete;
        iUndoRedoManagerItem& operator=(iUndoRedoManagerItem const&) = delete;

        std::string const& getName() const { return _name; }
        iUndoRedoManagerState const* getPrevState() const { return _prevState; }
        iUndoRedoManagerState const* getNewState() const { return _newState; }
        void setPrevState(std::string const& path, int uid, bool shared = false);
        void setNewState(std::string const& path, int uid, bool shared = false);

    protected:
        friend class iUndoRedoManager;
        explicit iUndoRedoManagerItem(std::string const& name);

    private:
        std::string _name;
        iUndoRedoManagerState* _prevState = nullptr;
        iUndoRedoManagerState* _newState = nullptr;
    };

    explicit iUndoRedoManager(iLayersManager* manager);
    ~iUndoRedoManager();
    iUndoRedoManager(iUndoRedoManager const&) = delete;
    iUndoRedoManager& operator=(iUndoRedoManager const&) = delete;

    sigslot::signal0<> sigUndoListChanged;

    bool saveForUndo(std::string const& name);
    bool undo(int count, bool storeCurrent);
    bool redo(int count);
    void removeLastSaved();
    // Drops both lists and their files. Does nothing while a snapshot is
    // being written or read.
    void flush();
    bool canUndo() const { return !_undoList.empty(); }
    bool canRedo() const { return !_redoList.empty(); }
    std::list<iUndoRedoManagerItem*> const& getUndoList() const { return _undoList; }
    std::list<iUndoRedoManagerItem*> const& getRedoList() const { return _redoList; }
    // Returns the previous value.
    bool lock(bool on);

    // The number of snapshots named so far, shared by all managers.
    static int getNextUid();

protected:
    // A fresh index file name; counts one more snapshot.
    std::string composeUndoRedoName();
    bool writeUndoRedoData(int uid, std::string const& path);
    bool readUndoRedoData(int uid, std::string const& path);

private:
    // The data file that the index file at path names for uid, when both
    // belong to this snapshot; empty otherwise.
    static std::string indexedDataPath(int uid, std::string const& path);
    // Whether the snapshot is there, is ours and holds a document.
    bool isRestorable(iUndoRedoManagerState const* state) const;
    bool restore(iUndoRedoManagerState const* state);
    static void destroy(std::list<iUndoRedoManagerItem*>& items);

    std::list<iUndoRedoManagerItem*> _undoList;
    std::list<iUndoRedoManagerItem*> _redoList;
    iLayersManager* _manager;
    bool _locked = false;
};

#endif
