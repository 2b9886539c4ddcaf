#include <iModelStage/model/iLayersManager.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iSafeFileWriter.h>
#include <iModelStage/model/iGhostLayer.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iLayerManagerHistory.h>
#include <iModelStage/model/iLoadScope.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iUndoRedoManager.h>
#include <iModelStage/reporting/iExceptionManagerInterface.h>
#include <iModelStage/reporting/iProgressInterface.h>

#include <QCursor>
#include <QGuiApplication>

#include <cstring>
#include <fstream>

I_REGISTER_CLASS(iLayersManager)

char const* const iLayersManager::FileId = "iModelStage::iLayersManager::id::240608";
char const* const iLayersManager::InvalidFileIdError = "i_invalid_ff_id";

namespace {

// The process-wide part of the document. Never destroyed, so that layers
// outlive any static that still points into them at exit.
struct Registry {
    std::map<std::string, osg::ref_ptr<iNodeLayer>> layers;
    osg::observer_ptr<iNodeLayer> current;
    osg::ref_ptr<osg::Group> layersRoot;
    bool currentLocked = false;
    iLayersManager* instance = nullptr;
};

Registry& registry()
{
    static Registry* instance = new Registry;
    return *instance;
}

std::vector<osg::ref_ptr<iNodeLayer>> allLayers()
{
    std::vector<osg::ref_ptr<iNodeLayer>> layers;
    for (auto const& entry : registry().layers)
        layers.push_back(entry.second);
    return layers;
}

// Undo and redo show a wait cursor, but only where there is a screen to
// show it on: a console host can undo too.
class WaitCursor {
public:
    WaitCursor() : m_shown(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr)
    {
        if (m_shown)
            QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    }
    ~WaitCursor()
    {
        if (m_shown)
            QGuiApplication::restoreOverrideCursor();
    }
    WaitCursor(WaitCursor const&) = delete;
    WaitCursor& operator=(WaitCursor const&) = delete;

private:
    bool m_shown;
};

} // namespace

iLayersManager::iLayersManager()
{
    getLayersRoot();
    registry().instance = this;
    _history = new iLayerManagerHistory(this);
    _undoManager = new iUndoRedoManager(this);
}

iLayersManager::~iLayersManager()
{
    freeLayerObjects();
    delete _history;
    _history = nullptr;
    _undoManager->flush();
    delete _undoManager;
    _undoManager = nullptr;
    if (registry().instance == this)
        registry().instance = nullptr;
}

iLayersManager* iLayersManager::getInstance()
{
    return registry().instance;
}

osg::Group* iLayersManager::getLayersRoot()
{
    Registry& r = registry();
    if (!r.layersRoot) {
        r.layersRoot = new osg::Group;
        r.layersRoot->setName("iObjectsLayerRoot");
    }
    return r.layersRoot.get();
}

iNodeLayer* iLayersManager::getCurrentLayer()
{
    return registry().current.get();
}

void iLayersManager::lockCurrentLayer(bool on)
{
    registry().currentLocked = on;
}

bool iLayersManager::isCurrentLayerLocked()
{
    return registry().currentLocked;
}

bool iLayersManager::setCurrentLayer(std::string const& name)
{
    Registry& r = registry();
    if (r.currentLocked)
        return false;
    auto it = r.layers.find(name);
    if (it == r.layers.end() || it->second->isGhost()) {
        // Listeners are told null, though the current layer stays.
        if (r.instance)
            r.instance->sigCurrentLayerChanged(nullptr);
        return false;
    }
    return setCurrentLayer(it->second.get());
}

bool iLayersManager::setCurrentLayer(iNodeLayer* layer)
{
    Registry& r = registry();
    if (r.currentLocked)
        return false;
    r.current = layer;
    if (r.instance)
        r.instance->sigCurrentLayerChanged(r.current.get());
    return true;
}

iNodeLayer* iLayersManager::getLayer(std::string const& name)
{
    Registry& r = registry();
    auto it = r.layers.find(name);
    if (it == r.layers.end() || it->second->isGhost())
        return nullptr;
    return it->second.get();
}

void iLayersManager::getLayersList(std::vector<iNodeLayer*>& layers)
{
    for (auto const& entry : registry().layers)
        if (!entry.second->isGhost())
            layers.push_back(entry.second.get());
}

iNodeLayer* iLayersManager::registerNodeLayerClass(std::string const& className, std::string const& layerName)
{
    Registry& r = registry();
    auto it = r.layers.find(layerName);
    if (it != r.layers.end())
        return it->second.get();
    iRoot* created = iRoot::newClass(className.c_str());
    osg::ref_ptr<iNodeLayer> layer = dynamic_cast<iNodeLayer*>(created);
    if (!layer) {
        delete created;
        return nullptr;
    }
    if (!layerName.empty())
        layer->setModelId(layerName);
    r.layers[layerName] = layer;
    getLayersRoot()->addChild(layer->getRoot());
    if (r.instance)
        r.instance->sigLayerRegistered(layer.get());
    if (r.layers.size() == 1)
        setCurrentLayer(layerName);
    return layer.get();
}

iNodeGroup* iLayersManager::findObjectByUniqueId(long id)
{
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
        if (!layer->isGhost())
            if (iNodeGroup* object = layer->findObjectByUniqueId(id))
                return object;
    return nullptr;
}

void iLayersManager::loop()
{
    if (_loopLocked)
        return;
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
        if (!layer->isGhost())
            layer->loopImplementation();
}

bool iLayersManager::lockLoop(bool on)
{
    bool previous = _loopLocked;
    _loopLocked = on;
    return previous;
}

void iLayersManager::setModified(bool modified)
{
    _modified = modified;
    sigDbChanged(modified);
}

void iLayersManager::resetDbState()
{
    setModified(false);
}

void iLayersManager::emptyAllLayers()
{
    sigBeforeEmptyLayers();
    Registry& r = registry();
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers()) {
        if (!layer->isGhost()) {
            layer->removeAllObjects();
            continue;
        }
        auto it = r.layers.find(layer->getModelId());
        if (it != r.layers.end() && it->second == layer)
            r.layers.erase(it);
    }
    setModified(false);
    _fileName.clear();
    sigFileNameChanged(_fileName);
}

void iLayersManager::freeLayerObjects()
{
    Registry& r = registry();
    for (auto const& entry : r.layers)
        if (r.layersRoot)
            r.layersRoot->removeChild(entry.second->getRoot());
    r.layers.clear();
}

void iLayersManager::discardLoadedLayers(std::vector<osg::ref_ptr<iNodeLayer>> const& ghosts)
{
    // Registered layers stay: a host keeps pointers to them for the life of
    // the process. They are only emptied; the ghosts of this file go.
    Registry& r = registry();
    for (osg::ref_ptr<iNodeLayer> const& ghost : ghosts) {
        auto it = r.layers.find(ghost->getModelId());
        if (it != r.layers.end() && it->second == ghost)
            r.layers.erase(it);
    }
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
        if (!layer->isGhost())
            layer->removeAllObjects();
}

bool iLayersManager::load(std::string const& fileName)
{
    if (fileName.empty())
        return false;
    _undoManager->flush();
    emptyAllLayers();
    std::filebuf file;
    iInStream stream(&file);
    if (!file.open(fileName, std::ios_base::in | std::ios_base::binary))
        stream.setstate(std::ios_base::failbit);
    try {
        loadFromStream(stream);
    } catch (char const*) {
        file.close();
        throw;
    }
    _fileName = fileName;
    sigFileNameChanged(_fileName);
    setModified(false);
    return true;
}

void iLayersManager::loadFromStream(iInStream& stream)
{
    sigBeginLoad();
    try {
        stream.exceptions(std::ios_base::failbit);
        readLayers(stream);
    } catch (std::exception const&) {
        // A damaged or short document loads as far as it goes.
    }
    sigEndLoad();
}

void iLayersManager::readLayers(iInStream& stream)
{
    Registry& r = registry();
    std::streampos const start = stream.tellg();
    int const total = stream.readInt();
    std::string const id = stream.readString();
    if (id.size() != std::strlen(FileId) || id != FileId)
        throw InvalidFileIdError;
    int const version = stream.readInt();
    stream.readInt();
    // Each entry takes at least a name length and a size.
    int const count = stream.readCount(8);

    // Entries that name one layer again merge into it, under one budget.
    iLoadScope scope;
    std::vector<osg::ref_ptr<iNodeLayer>> read;
    std::vector<osg::ref_ptr<iNodeLayer>> ghosts;
    for (int i = 0; i < count; ++i) {
        std::string const name = stream.readString();
        int const size = stream.readInt();
        if (iNodeLayer* layer = getLayer(name)) {
            // A layer that fails stays as far as it got; the next entry is
            // read from wherever the stream stopped.
            try {
                iRoot::readObject(layer, stream);
                read.push_back(layer);
            } catch (std::exception const&) {
            }
            continue;
        }
        osg::ref_ptr<iGhostLayer> ghost = new iGhostLayer;
        ghost->setModelId(name);
        r.layers[name] = ghost;
        ghosts.push_back(ghost);
        osg::ref_ptr<iGhostNode> node = new iGhostNode;
        ghost->addObject(node.get(), true);
        node->readData(stream, size);
    }

    // Only the layers are measured: a file that does not end its layers
    // where it says is damaged as a whole, and nothing of it is kept.
    if (static_cast<long long>(stream.tellg() - start) != total) {
        discardLoadedLayers(ghosts);
        read.clear();
    }
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
        layer->resolveObjectsLinks();
    for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
        layer->resolveLinks();
    if (version == 1) {
        for (osg::ref_ptr<iNodeLayer> const& layer : read) {
            try {
                layer->loadLayersSelection(stream);
            } catch (std::exception const&) {
            }
        }
    }
    std::string const current = stream.readString();
    if (!current.empty())
        setCurrentLayer(current);
}

bool iLayersManager::saveAs(std::string const& fileName)
{
    if (fileName.empty())
        return false;
    // The document goes to a new file that replaces the old one only once
    // it is whole: a full disk or a bad path never costs the last good save.
    iSafeFileWriter file;
    iOutStream stream(file.open(fileName) ? file.buffer() : nullptr);
    if (!stream.rdbuf())
        stream.setstate(std::ios_base::badbit);
    try {
        saveToStream(stream);
    } catch (...) {
        // Reported below, by the state of the stream.
    }
    if (stream.good())
        file.commit();
    else
        file.abandon();
    _lastSaveError = file.error();
    if (!_lastSaveError.empty()) {
        // The document is as unsaved as before; listeners hear so.
        setModified(_modified);
        return true;
    }
    if (_fileName != fileName) {
        _fileName = fileName;
        sigFileNameChanged(_fileName);
    }
    setModified(false);
    return true;
}

bool iLayersManager::save()
{
    return saveAs(_fileName);
}

void iLayersManager::saveToStream(iOutStream& stream)
{
    sigBeginSave();
    try {
        stream.exceptions(std::ios_base::failbit);
        std::streampos const start = stream.tellp();
        stream.writeInt(0);
        stream.writeString(FileId);
        stream.writeInt(2);
        stream.writeInt(getClassVersion());
        stream.writeInt(static_cast<int>(registry().layers.size()));
        for (osg::ref_ptr<iNodeLayer> const& layer : allLayers())
            writeLayer(stream, layer.get());
        stream.patchInt(start, static_cast<int>(stream.tellp() - start));
        iNodeLayer* current = getCurrentLayer();
        stream.writeString(current ? current->getModelId() : std::string());
    } catch (std::exception const&) {
        // A failed save shows only in the stream.
    }
    sigEndSave();
}

void iLayersManager::writeLayer(iOutStream& stream, iNodeLayer* layer)
{
    stream.writeString(layer->getModelId());
    std::streampos const sizePosition = stream.tellp();
    stream.writeInt(0);
    std::streampos const bodyStart = stream.tellp();
    try {
        if (!layer->isGhost()) {
            iRoot::writeObject(layer, stream);
        } else {
            NodeList ghosts;
            std::set<std::string> classes{iGhostNode::staticGetClassName()};
            layer->getObjectsList(layer->getObjectsRoot(), ghosts, &classes);
            if (!ghosts.empty())
                static_cast<iGhostNode*>(ghosts.front().get())->writeData(stream);
        }
    } catch (std::exception const&) {
        // The size is patched all the same.
    }
    stream.patchInt(sizePosition, static_cast<int>(stream.tellp() - bodyStart));
}

iProgressInterface* iLayersManager::getProgressInterface()
{
    static iProgressInterface silent;
    return _progressEnabled && _progress ? _progress : &silent;
}

bool iLayersManager::setProgressInterfaceEnabled(bool on)
{
    bool previous = _progressEnabled;
    _progressEnabled = on;
    return previous;
}

iExceptionManagerInterface* iLayersManager::getExceptionManagerInterface()
{
    static iExceptionManagerInterface fallback;
    return _exceptions ? _exceptions : &fallback;
}

void iLayersManager::storeForUndo(std::string const& text)
{
    setModified(true);
    if (_undoEnabled)
        storeForUndoImplementation(text);
}

void iLayersManager::cancelUndoStore()
{
    setModified(false);
    if (_undoEnabled)
        cancelUndoStoreImplementation();
}

bool iLayersManager::undo(int count, bool storeCurrent)
{
    return _undoEnabled && undoImplementation(count, storeCurrent);
}

bool iLayersManager::redo(int count)
{
    return _undoEnabled && redoImplementation(count);
}

bool iLayersManager::undoImplementation(int count, bool storeCurrent)
{
    QuietProgress quiet(this);
    WaitCursor wait;
    return _undoManager->undo(count, storeCurrent);
}

bool iLayersManager::redoImplementation(int count)
{
    QuietProgress quiet(this);
    WaitCursor wait;
    return _undoManager->redo(count);
}

void iLayersManager::storeForUndoImplementation(std::string const& text)
{
    QuietProgress quiet(this);
    _undoManager->saveForUndo(text);
}

void iLayersManager::cancelUndoStoreImplementation()
{
    QuietProgress quiet(this);
    _undoManager->removeLastSaved();
}
