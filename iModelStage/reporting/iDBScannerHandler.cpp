#include <iModelStage/reporting/iDBScannerHandler.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iForEachNode.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/reporting/iProgressHandler.h>

#include <cstring>
#include <fstream>
#include <map>

I_REGISTER_CLASS(iDBScannerHandler)

namespace {

char const* const invalidFile = "Invalid file";

bool isFileId(std::string const& id)
{
    return id.size() == std::strlen(iLayersManager::FileId) && id == iLayersManager::FileId;
}

// Whether an object of a layer hangs below another object of it: such an
// object goes along with its top object.
bool hasObjectParent(osg::Node* node)
{
    for (unsigned int i = 0; i < node->getNumParents(); ++i)
        if (dynamic_cast<iNodeGroup*>(node->getParent(i)))
            return true;
    return false;
}

// Objects of classes this program does not know are kept only as the bytes
// they came in; a copy of one would hold nothing.
bool isMergeable(osg::Node* node)
{
    iNodeGroup* object = dynamic_cast<iNodeGroup*>(node);
    return object && !object->asGhost();
}

// Reads one layer body into a scratch layer of the registered layer's
// class and hands its top objects of that layer to target.
void takeLayer(iInStream& in, iNodeLayer* registered, iNodeLayer* target)
{
    iRoot* created = iRoot::newClass(registered->getClassName());
    osg::ref_ptr<iNodeLayer> scratch = dynamic_cast<iNodeLayer*>(created);
    if (!scratch) {
        delete created;
        throw invalidFile;
    }
    iRoot::readObject(scratch.get(), in);
    NodeList objects;
    scratch->getObjectsList(scratch->getObjectsRoot(), objects, nullptr);
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        if (!isMergeable(node.get()) || hasObjectParent(node.get()))
            continue;
        if (iNodeGroup::getNodeLayerId(node.get()) != registered->getModelId())
            continue;
        scratch->getObjectsRoot()->removeChild(node.get());
        if (target)
            target->addObject(node.get(), true);
    }
}

// The objects of a merged clone, as the clone's renaming visited them: each
// gets back its source's name and is recorded for its new id.
struct Merged {
    long oldId;
    long newId;
    iNodeGroup* object;
};

void recordClone(osg::Node* clone, std::vector<Merged>& merged)
{
    static std::string const copyPrefix = "Copia di ";
    iForEachNode(clone, [&merged](osg::Node* node) {
        osg::Group* group = node->asGroup();
        if (!group || iBaseModel::isRendererContainer(group))
            return iVisit::SkipChildren;
        if (iNodeGroup* object = dynamic_cast<iNodeGroup*>(group)) {
            std::string const name = object->get_name();
            if (name.compare(0, copyPrefix.size(), copyPrefix) == 0)
                object->set_name(name.substr(copyPrefix.size()));
            merged.push_back({object->getUniqueId(), iRoot::generateUniqueId(0), object});
        }
        return iVisit::Continue;
    });
}

} // namespace

bool iDBScannerHandler::isValidFile(std::string const& path)
{
    if (path.empty())
        return false;
    try {
        std::filebuf file;
        if (!file.open(path, std::ios_base::in | std::ios_base::binary))
            return false;
        iInStream stream(&file);
        stream.readInt();
        return isFileId(stream.readString());
    } catch (...) {
        return false;
    }
}

void iDBScannerHandler::collectObjects(iInStream& in, iNodeLayer* target, std::string const&,
                                       std::set<std::string> const& filter)
{
    in.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    std::streampos const start = in.tellg();
    int const total = in.readInt();
    if (!isFileId(in.readString()))
        throw invalidFile;
    in.readInt();
    in.readInt();
    // Each entry takes at least a name length and a size.
    int const count = in.readCount(8);
    for (int i = 0; i < count; ++i) {
        std::string const name = in.readString();
        int const size = in.readInt();
        // A size that points backwards could make the walk go round.
        if (size < 0)
            throw invalidFile;
        iNodeLayer* registered = iLayersManager::getLayer(name);
        if (!registered || (!filter.empty() && filter.count(name) == 0)) {
            in.seekg(size, std::ios_base::cur);
            continue;
        }
        takeLayer(in, registered, target);
    }
    if (static_cast<long long>(in.tellg() - start) != total)
        throw invalidFile;
}

void iDBScannerHandler::addObjectsToDB(NodeList const& list)
{
    iLayersManager* manager = iLayersManager::getInstance();
    if (list.empty() || !manager)
        return;
    int const count = static_cast<int>(list.size());
    iProgressHandler progress;
    progress.setRefreshInterval(iProgressHandler::calcOptimalRefreshInterval(count));
    progress.setRange(0, count);
    progress.setInfoText(iTranslate("Importazione di ") + std::to_string(count) + iTranslate(" oggetti..."));
    progress.begin();
    // The whole merge is one step to undo.
    manager->storeForUndo(iTranslate("Importa elementi"));

    std::vector<Merged> merged;
    std::map<std::string, iNodeLayer*> touched;
    for (int i = 0; i < count; ++i) {
        osg::Node* node = list[static_cast<std::size_t>(i)].get();
        iNodeLayer* layer = isMergeable(node) ? iLayersManager::getLayer(iNodeGroup::getNodeLayerId(node)) : nullptr;
        if (!layer)
            continue;
        NodeList clones;
        layer->cloneObjects(NodeList{node}, clones, false, false);
        for (osg::ref_ptr<osg::Node> const& clone : clones) {
            recordClone(clone.get(), merged);
            layer->addObject(clone.get(), true);
            touched[layer->getModelId()] = layer;
        }
        progress.setValue(i + 1);
    }
    // References inside the merged set follow to the new ids before any id
    // changes; an object's reference to itself is left as it was.
    for (Merged const& receiver : merged)
        for (Merged const& pair : merged)
            if (&pair != &receiver)
                receiver.object->updateTargetUid(pair.oldId, pair.newId);
    for (Merged const& entry : merged)
        entry.object->setUniqueId(entry.newId);
    for (auto const& entry : touched) {
        entry.second->resolveObjectsLinks();
        entry.second->resolveLinks();
    }
}
