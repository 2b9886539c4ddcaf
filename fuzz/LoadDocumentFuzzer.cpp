// Feeds arbitrary bytes to the document reader, then uses what it built:
// walks every object, merges the same bytes in through the file scanner,
// saves the document again and reloads that save. A
// tree with a cycle, a dangling pointer or a double parent shows up here as
// a hang, a sanitizer report or a failed check.
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/reporting/iDBScannerHandler.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

char const* const kLayerNames[] = {"a", "b", "objects"};

// A finding that no sanitizer would report by itself.
[[noreturn]] void failCheck(char const* what)
{
    std::fprintf(stderr, "LoadDocumentFuzzer: %s\n", what);
    std::abort();
}

iLayersManager* manager()
{
    // Never deleted: layers live for the process, as in an application.
    static iLayersManager* instance = [] {
        auto* created = new iLayersManager;
        // A merge is one undo step; snapshots would only fill the disk here.
        created->setUndoRedoEnabled(false);
        return created;
    }();
    return instance;
}

// A file whose total size does not match destroys every layer, so they are
// registered again before each input.
void registerLayers()
{
    for (char const* name : kLayerNames)
        if (!iLayersManager::registerNodeLayerClass("iNodeLayer", name))
            failCheck("layer registration failed");
}

// Loads bytes; a foreign file is the only failure that may leave the
// reader, and then only as the documented literal.
bool load(char const* data, std::size_t size)
{
    iMemoryBuffer buffer(data, size);
    iInStream stream(&buffer);
    try {
        manager()->loadFromStream(stream);
    } catch (char const* what) {
        if (!what || std::strcmp(what, iLayersManager::InvalidFileIdError) != 0)
            failCheck("unexpected text thrown by the reader");
        return false;
    }
    return true;
}

// Reads the bytes as a file to merge and merges what it found; the scanner
// may only fail with its own literal or a stream error.
void merge(char const* data, std::size_t size)
{
    osg::ref_ptr<iNodeLayer> found = new iNodeLayer;
    iMemoryBuffer buffer(data, size);
    iInStream stream(&buffer);
    iDBScannerHandler scanner;
    try {
        scanner.collectObjects(stream, found.get(), "", {});
    } catch (char const* what) {
        if (!what || std::strcmp(what, "Invalid file") != 0)
            failCheck("unexpected text thrown by the scanner");
    } catch (std::exception const&) {
    }
    NodeList objects;
    found->getObjectsList(found->getObjectsRoot(), objects, nullptr);
    NodeList roots;
    for (osg::ref_ptr<osg::Node> const& node : objects)
        if (node->getNumParents() > 0 && node->getParent(0) == found->getObjectsRoot())
            roots.push_back(node);
    scanner.addObjectsToDB(roots);
}

std::string save()
{
    iMemoryBuffer buffer;
    iOutStream stream(&buffer);
    manager()->saveToStream(stream);
    return buffer.str();
}

void walk()
{
    std::vector<iNodeLayer*> layers;
    iLayersManager::getLayersList(layers);
    int worldMatrices = 0;
    for (iNodeLayer* layer : layers) {
        NodeList objects;
        layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
        for (osg::ref_ptr<osg::Node> const& node : objects) {
            iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
            if (!object)
                continue;
            if (node->getNumParents() == 0)
                failCheck("a listed object hangs nowhere");
            for (unsigned int i = 0; i < node->getNumParents(); ++i)
                if (!node->getParent(i))
                    failCheck("null parent");
            if (!layer->isRelative(object))
                failCheck("a listed object is not below its layer");
            // Duplicate ids are possible in a file; some object must answer.
            if (!layer->findObjectByUniqueId(object->getUniqueId()))
                failCheck("an object cannot be found by its id");
            (void)object->get_name().size();
            (void)iNodeGroup::getNodeLayerId(object).size();
            // Goes up through every path to the top; bounded so that a
            // legitimately wide document stays cheap.
            if (iTransformGroup* transform = dynamic_cast<iTransformGroup*>(object))
                if (worldMatrices++ < 64)
                    (void)transform->getWorldMatrix();
        }
        NodeList selected;
        layer->getSelectionList(selected, nullptr);
        for (osg::ref_ptr<osg::Node> const& node : selected)
            if (!layer->isRelative(node.get()))
                failCheck("a selected object is not in its layer");
        for (auto const& entry : layer->getProxySelectors()) {
            (void)entry.second.first.get();
            (void)entry.second.second.get();
        }
    }
    manager()->loop();
}

// The shape of the document: per layer, each object with its class, name,
// id and parent ids, and the number of bound proxies. Left out: matrices,
// because decomposing an arbitrary matrix and composing it again need not
// give the same bits twice; the order of siblings, because an object with
// two parents is written where the walk first meets it and so comes back
// ahead of siblings that its other parent held before it; and the ids and
// names of ghosts, which are fresh at every load.
std::string shape()
{
    std::string out;
    std::vector<iNodeLayer*> layers;
    iLayersManager::getLayersList(layers);
    for (iNodeLayer* layer : layers) {
        // Only bound proxies are written; an entry whose target did not
        // come back is dropped by the next save.
        int proxies = 0;
        for (auto const& entry : layer->getProxySelectors())
            if (entry.second.first.valid() && entry.second.second.valid())
                ++proxies;
        out += "layer " + layer->getModelId() + " proxies " + std::to_string(proxies) + "\n";
        NodeList objects;
        layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
        std::vector<std::string> lines;
        for (osg::ref_ptr<osg::Node> const& node : objects) {
            iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
            if (!object)
                continue;
            std::ostringstream line;
            if (iGhostNode* ghost = object->asGhost()) {
                line << "ghost " << ghost->getOriginalClassName() << " "
                     << std::string(ghost->getData(), static_cast<std::size_t>(ghost->getDataCount()));
            } else {
                line << object->getClassName() << " " << object->get_name() << " " << object->getUniqueId();
                for (unsigned int i = 0; i < object->getNumParents(); ++i) {
                    iNodeGroup* parent = dynamic_cast<iNodeGroup*>(object->getParent(i));
                    line << " "
                         << (!parent ? "top" : parent->asGhost() ? "ghost" : std::to_string(parent->getUniqueId()));
                }
            }
            lines.push_back(line.str());
        }
        std::sort(lines.begin(), lines.end());
        for (std::string const& line : lines)
            out += line + "\n";
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    iLayersManager* documents = manager();
    registerLayers();
    documents->emptyAllLayers();

    load(reinterpret_cast<char const*>(data), size);
    walk();
    merge(reinterpret_cast<char const*>(data), size);
    walk();
    std::string const saved = save();
    documents->emptyAllLayers();

    // Our own output must read back whole: a size mismatch would destroy
    // the registered layers.
    registerLayers();
    if (!load(saved.data(), saved.size()))
        failCheck("a saved document was refused");
    for (char const* name : kLayerNames)
        if (!iLayersManager::getLayer(name))
            failCheck("a saved document did not read back whole");
    walk();

    // Whatever the input, once saved the document keeps its shape through
    // every further save and load.
    std::string const before = shape();
    std::string const savedAgain = save();
    documents->emptyAllLayers();
    load(savedAgain.data(), savedAgain.size());
    if (shape() != before)
        failCheck("a saved document changed shape through a save and a load");
    documents->emptyAllLayers();
    return 0;
}
