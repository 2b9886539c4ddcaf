#include <iModelStage/model/iUndoRedoManager.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iSafeFileWriter.h>
#include <iModelStage/model/iLayersManager.h>

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

typedef iUndoRedoManager::iUndoRedoManagerItem Item;
typedef iUndoRedoManager::iUndoRedoManagerState State;

namespace {

int nextUid = 0;
int const nameAttempts = 16;

std::string snapshotDirectory()
{
    std::filesystem::path directory;
    if (char const* temp = std::getenv("TEMP"))
        directory = temp;
    else if (char const* tmp = std::getenv("TMP"))
        directory = tmp;
    else {
        std::error_code error;
        directory = std::filesystem::temp_directory_path(error);
        if (error)
            directory = "/tmp";
    }
    // Absolute, so that the path written after the uid in an index file
    // never starts with a digit.
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(directory, error);
    return (error ? directory : absolute).string();
}

std::string dataPathOf(std::string const& indexPath)
{
    return indexPath + "data";
}

} // namespace

State::iUndoRedoManagerState(bool shared, int uid, std::string const& path) : _shared(shared), _uid(uid), _path(path)
{
}

State::~iUndoRedoManagerState()
{
    if (_shared)
        return;
    // Only the files this manager named are removed, whatever an index
    // file may have come to say.
    std::remove(dataPathOf(_path).c_str());
    std::remove(_path.c_str());
}

Item::iUndoRedoManagerItem(std::string const& name) : _name(name) {}

Item::~iUndoRedoManagerItem()
{
    delete _prevState;
    delete _newState;
}

void Item::setPrevState(std::string const& path, int uid, bool shared)
{
    delete _prevState;
    _prevState = new State(shared, uid, path);
}

void Item::setNewState(std::string const& path, int uid, bool shared)
{
    delete _newState;
    _newState = new State(shared, uid, path);
}

iUndoRedoManager::iUndoRedoManager(iLayersManager* manager) : _manager(manager) {}

iUndoRedoManager::~iUndoRedoManager()
{
    destroy(_undoList);
    destroy(_redoList);
}

int iUndoRedoManager::getNextUid()
{
    return nextUid;
}

void iUndoRedoManager::destroy(std::list<Item*>& items)
{
    for (Item* item : items)
        delete item;
    items.clear();
}

bool iUndoRedoManager::lock(bool on)
{
    bool previous = _locked;
    _locked = on;
    return previous;
}

std::string iUndoRedoManager::composeUndoRedoName()
{
    ++nextUid;
    // The process id keeps the names of two processes apart and the counter
    // those of two snapshots; the random token makes a name impossible to
    // guess, so that nothing can be planted there in a shared folder. Both
    // files are created here, exclusively: the name is ours from now on.
    std::string const stem = snapshotDirectory() + "/iUR" + std::to_string(getpid()) + "-";
    std::string path;
    for (int attempt = 0; attempt < nameAttempts; ++attempt) {
        path = stem + iSafeFileWriter::randomToken() + "-" + std::to_string(nextUid) + ".iur";
        if (!iSafeFileWriter::createExclusive(path))
            continue;
        if (iSafeFileWriter::createExclusive(dataPathOf(path)))
            return path;
        std::remove(path.c_str());
    }
    // Nothing could be created: the write that follows fails and says so.
    return path;
}

bool iUndoRedoManager::writeUndoRedoData(int uid, std::string const& path)
{
    if (!_manager)
        return false;
    std::string const dataPath = dataPathOf(path);
    {
        iSafeFileWriter index;
        if (!index.open(path, false))
            return false;
        std::ostream text(index.buffer());
        text << uid << dataPath;
        if (!text.flush() || !index.commit())
            return false;
    }
    iSafeFileWriter file;
    if (!file.open(dataPath, false))
        return false;
    iOutStream stream(file.buffer());
    bool const previous = lock(true);
    _manager->saveToStream(stream);
    lock(previous);
    // A snapshot that did not reach the disk whole is no snapshot.
    if (!stream.good()) {
        file.abandon();
        return false;
    }
    return file.commit();
}

std::string iUndoRedoManager::indexedDataPath(int uid, std::string const& path)
{
    std::ifstream index(path);
    if (!index)
        return std::string();
    int stored = 0;
    if (!(index >> stored) || stored != uid)
        return std::string();
    std::string dataPath;
    std::getline(index, dataPath);
    // Only the data file this manager named belongs to the snapshot.
    return dataPath == dataPathOf(path) ? dataPath : std::string();
}

bool iUndoRedoManager::isRestorable(iUndoRedoManagerState const* state) const
{
    if (!state)
        return false;
    std::string const dataPath = indexedDataPath(state->getUid(), state->getPath());
    if (dataPath.empty())
        return false;
    std::filebuf file;
    if (!file.open(dataPath, std::ios_base::in | std::ios_base::binary))
        return false;
    // A document file starts with its size and its id.
    try {
        iInStream stream(&file);
        stream.readInt();
        return stream.readString() == iLayersManager::FileId;
    } catch (std::exception const&) {
        return false;
    }
}

bool iUndoRedoManager::readUndoRedoData(int uid, std::string const& path)
{
    if (!_manager)
        return false;
    std::string const dataPath = indexedDataPath(uid, path);
    if (dataPath.empty())
        return false;
    std::filebuf file;
    if (!file.open(dataPath, std::ios_base::in | std::ios_base::binary))
        return false;
    iInStream stream(&file);
    bool const previous = lock(true);
    try {
        _manager->loadFromStream(stream);
    } catch (char const*) {
        // Not a document at all: as bad as a missing snapshot.
        lock(previous);
        return false;
    }
    lock(previous);
    return true;
}

bool iUndoRedoManager::saveForUndo(std::string const& name)
{
    if (!_manager)
        return false;
    // A new step cuts the redo branch, snapshots and all.
    destroy(_redoList);
    std::string const path = composeUndoRedoName();
    int const uid = nextUid;
    Item* item = new Item(name);
    item->setPrevState(path, uid);
    // The document after the step before is the document before this one.
    if (!_undoList.empty())
        _undoList.front()->setNewState(path, uid, true);
    if (!writeUndoRedoData(uid, path)) {
        delete item;
        flush();
        return false;
    }
    _undoList.push_front(item);
    sigUndoListChanged();
    return true;
}

bool iUndoRedoManager::restore(State const* state)
{
    std::string const fileName = _manager->getCurrentFileName();
    bool const modified = _manager->dbChanged();
    {
        sigslot::signal_blocker names(_manager->sigFileNameChanged);
        sigslot::signal_blocker changes(_manager->sigDbChanged);
        _manager->emptyAllLayers();
        _manager->setCurrentFileName(fileName);
        _manager->_modified = modified;
    }
    return state && readUndoRedoData(state->getUid(), state->getPath());
}

bool iUndoRedoManager::undo(int count, bool storeCurrent)
{
    if (!_manager || count < 1 || count > static_cast<int>(_undoList.size()))
        return false;
    // A snapshot that is gone or not ours is found out before the document
    // is touched, so that a failed undo loses nothing.
    if (!isRestorable((*std::next(_undoList.begin(), count - 1))->getPrevState()))
        return false;
    Item* moved = nullptr;
    for (int step = 0; step < count; ++step) {
        moved = _undoList.front();
        if (step == 0 && storeCurrent && !moved->getNewState()) {
            std::string const path = composeUndoRedoName();
            moved->setNewState(path, nextUid);
            if (!writeUndoRedoData(nextUid, path)) {
                flush();
                return false;
            }
        }
        _redoList.push_front(moved);
        _undoList.pop_front();
    }
    if (!restore(moved->getPrevState())) {
        flush();
        return false;
    }
    _manager->sigDbChanged(!_undoList.empty());
    sigUndoListChanged();
    return true;
}

bool iUndoRedoManager::redo(int count)
{
    if (!_manager || count < 1 || count > static_cast<int>(_redoList.size()))
        return false;
    if (!isRestorable((*std::next(_redoList.begin(), count - 1))->getNewState()))
        return false;
    Item* moved = nullptr;
    for (int step = 0; step < count; ++step) {
        moved = _redoList.front();
        _undoList.push_front(moved);
        _redoList.pop_front();
    }
    if (!restore(moved->getNewState())) {
        flush();
        return false;
    }
    _manager->sigDbChanged(true);
    sigUndoListChanged();
    return true;
}

void iUndoRedoManager::removeLastSaved()
{
    if (_undoList.empty())
        return;
    Item* removed = _undoList.front();
    _undoList.pop_front();
    nextUid = std::max(0, nextUid - 1);
    // The step before shared the removed step's snapshot as its "after".
    if (!_undoList.empty()) {
        delete _undoList.front()->_newState;
        _undoList.front()->_newState = nullptr;
    }
    delete removed;
    sigUndoListChanged();
}

void iUndoRedoManager::flush()
{
    if (_locked)
        return;
    nextUid = 0;
    destroy(_undoList);
    destroy(_redoList);
    sigUndoListChanged();
}
