#include <iModelStage/model/iNodeLayer.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iParentLinks.h>
#include <iModelStage/reporting/iProgressHandler.h>

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

I_REGISTER_PERSISTENT_CLASS(iNodeLayer)

namespace {

// A count written as a placeholder and patched once known.
class CountPatch {
public:
    explicit CountPatch(iOutStream& stream) : m_stream(stream), m_position(stream.tellp()) { stream.writeInt(0); }

    void patch(int count)
    {
        std::streampos end = m_stream.tellp();
        m_stream.seekp(m_position);
        m_stream.writeInt(count);
        m_stream.seekp(end);
    }

private:
    iOutStream& m_stream;
    std::streampos m_position;
};

// Only classes of document objects may be created from a file: any other
// class would run constructors that have nothing to do in a layer.
iNodeGroup* createObject(std::string const& className)
{
    if (!iRoot::isClassOf(className.c_str(), "iNodeGroup"))
        return nullptr;
    iRoot* created = iRoot::newClass(className.c_str());
    iNodeGroup* object = dynamic_cast<iNodeGroup*>(created);
    if (!object)
        delete created;
    return object;
}

void readParents(iInStream& stream, std::vector<long>& parents)
{
    int const count = stream.readCount(4);
    for (int i = 0; i < count; ++i)
        parents.push_back(stream.readInt());
}

// Where records are measured before they go out: one buffer per nesting
// level and thread, reused from record to record.
class RecordScratch {
public:
    RecordScratch() : m_level(depth()++)
    {
        std::vector<std::unique_ptr<Entry>>& entries = pool();
        while (entries.size() <= m_level)
            entries.push_back(std::make_unique<Entry>());
        entry().buffer.clear();
        entry().stream.clear();
    }
    ~RecordScratch() { --depth(); }
    RecordScratch(RecordScratch const&) = delete;
    RecordScratch& operator=(RecordScratch const&) = delete;

    iMemoryBuffer& buffer() { return entry().buffer; }
    iOutStream& stream() { return entry().stream; }

private:
    struct Entry {
        iMemoryBuffer buffer;
        iOutStream stream{&buffer};
    };

    static std::vector<std::unique_ptr<Entry>>& pool()
    {
        static thread_local std::vector<std::unique_ptr<Entry>> entries;
        return entries;
    }
    static std::size_t& depth()
    {
        static thread_local std::size_t level = 0;
        return level;
    }
    Entry& entry() { return *pool()[m_level]; }

    std::size_t m_level;
};

struct ReadRecord {
    osg::ref_ptr<iNodeGroup> object;
    std::vector<long> parents;
};

} // namespace

iNodeLayer::iNodeLayer(iNodeLayer const& other, osg::CopyOp const& copyop) : iBaseModel(other, copyop) {}

std::string iNodeLayer::progressText(char const* verb, std::size_t count) const
{
    return getClassAlias() + ": " + iTranslate(verb) + std::to_string(count) + iTranslate(" oggetti...");
}

void iNodeLayer::iWriteNodeGroup(iNodeGroup* object, iOutStream& stream)
{
    // The record is measured in memory, so that the real stream is never
    // sought back per object.
    RecordScratch scratch;
    iMemoryBuffer& buffer = scratch.buffer();
    iOutStream& record = scratch.stream();
    iRoot::writeObject(object, record);
    std::vector<int> parentIds;
    for (unsigned int i = 0; i < object->getNumParents(); ++i)
        if (iNodeGroup* parent = dynamic_cast<iNodeGroup*>(object->getParent(i)))
            parentIds.push_back(static_cast<int>(parent->getUniqueId()));
    record.writeInt(static_cast<int>(parentIds.size()));
    for (int id : parentIds)
        record.writeInt(id);
    stream.writeInt(static_cast<int>(buffer.size()));
    stream.writeRaw(buffer.data(), static_cast<std::streamsize>(buffer.size()));
}

void iNodeLayer::write(iOutStream& stream)
{
    NodeList objects;
    getObjectsList(getObjectsRoot(), objects, nullptr);

    CountPatch objectCount(stream);
    iProgressHandler progress;
    progress.setRefreshInterval(iProgressHandler::calcOptimalRefreshInterval(static_cast<int>(objects.size())));
    progress.setRange(0, static_cast<int>(objects.size()));
    progress.setInfoText(progressText("Scrittura di ", objects.size()));
    progress.begin();

    std::unordered_set<osg::Node*> written;
    int count = 0;
    int step = 0;
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
        if (!object)
            continue;
        // An object with two parents is met twice and written once.
        if (written.count(object)) {
            progress.setValue(++step);
            continue;
        }
        if (!iNodeGroup::isNodeFlagSet(object, 6))
            continue;
        // Objects of other layers only pass through this one.
        if (iNodeGroup::getNodeLayerId(object) != getModelId())
            continue;
        if (iGhostNode* ghost = object->asGhost()) {
            stream.writeString(ghost->getOriginalClassName());
            stream.writeInt(ghost->getDataCount());
            ghost->writeData(stream);
        } else {
            stream.writeString(object->getClassName());
            iWriteNodeGroup(object, stream);
        }
        written.insert(object);
        ++count;
        progress.setValue(++step);
    }
    objectCount.patch(count);

    CountPatch proxyCount(stream);
    int proxies = 0;
    for (auto const& entry : getProxySelectors()) {
        iProxySelector const& proxy = entry.second;
        if (!proxy.first.valid() || !proxy.second.valid())
            continue;
        stream.writeLong(proxy.firstId);
        stream.writeLong(proxy.secondId);
        ++proxies;
    }
    proxyCount.patch(proxies);

    saveLayersSelection(stream);
}

void iNodeLayer::saveLayersSelection(iOutStream& stream)
{
    CountPatch selectedCount(stream);
    NodeList selected;
    getSelectionList(selected, nullptr);
    int count = 0;
    for (osg::ref_ptr<osg::Node> const& node : selected) {
        if (iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get())) {
            stream.writeInt(static_cast<int>(object->getUniqueId()));
            ++count;
        }
    }
    selectedCount.patch(count);
}

void iNodeLayer::loadLayersSelection(iInStream& stream)
{
    int const count = stream.readCount(4);
    for (int i = 0; i < count; ++i)
        if (iNodeGroup* object = findObjectByUniqueId(stream.readInt()))
            addObjectSelection(object);
}

iNodeGroup* iNodeLayer::iReadNodeGroup(char const* className, iInStream& stream, int, int& size,
                                       std::vector<long>& parents)
{
    size = stream.readInt();
    if (size == 0)
        return nullptr;
    osg::ref_ptr<iNodeGroup> object = createObject(className ? className : "");
    if (!object)
        return nullptr;
    iRoot::readObject(object.get(), stream);
    readParents(stream, parents);
    return object.release();
}

void iNodeLayer::read(iInStream& stream, int version)
{
    // Each record takes at least a class name length and a size.
    int const count = stream.readCount(8);
    iProgressHandler progress;
    progress.setRefreshInterval(iProgressHandler::calcOptimalRefreshInterval(count));
    progress.setRange(0, count);
    progress.setInfoText(progressText("Lettura di ", static_cast<std::size_t>(count)));
    progress.begin();

    // Nothing is announced while records are read: objects are only
    // collected, and attached and announced once all are in.
    std::vector<ReadRecord> records;
    std::unordered_map<long, std::size_t> byId;
    for (int i = 0; i < count; ++i) {
        std::string name = stream.readString();
        if (version < 3) {
            // Older files may name another class here; the object's own
            // header has the true one.
            std::streampos position = stream.tellg();
            stream.readInt();
            iRoot::readObjectHeader(stream, name);
            stream.seekg(position);
        }
        ReadRecord record;
        int const size = stream.readInt();
        if (size != 0)
            record.object = createObject(name);
        if (record.object) {
            iRoot::readObject(record.object.get(), stream);
            readParents(stream, record.parents);
        } else {
            // A ghost keeps the record's true parents in its bytes and lands
            // at the top of the layer.
            osg::ref_ptr<iGhostNode> ghost = new iGhostNode;
            ghost->setOriginalClassName(name);
            ghost->readData(stream, size);
            record.object = ghost;
        }
        byId[record.object->getUniqueId()] = records.size();
        records.push_back(std::move(record));
        progress.setValue(i + 1);
    }

    std::vector<std::vector<int>> parentIndices(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        for (long id : records[i].parents) {
            auto it = byId.find(id);
            parentIndices[i].push_back(it == byId.end() ? -1 : static_cast<int>(it->second));
        }
    }
    iParentLinks const links(parentIndices);

    std::vector<std::pair<iNodeGroup*, iNodeGroup*>> pairs;
    std::vector<iNodeGroup*> roots;
    for (std::size_t i = 0; i < records.size(); ++i) {
        iNodeGroup* object = records[i].object.get();
        bool hasParent = false;
        for (std::size_t k = 0; k < records[i].parents.size(); ++k) {
            int const index = parentIndices[i][k];
            if (index >= 0) {
                if (!links.keep(i, k))
                    continue;
                records[static_cast<std::size_t>(index)].object->addChild(object);
                hasParent = true;
            } else if (iNodeGroup* parent = findObjectByUniqueId(records[i].parents[k])) {
                pairs.emplace_back(object, parent);
                hasParent = true;
            }
        }
        if (!hasParent)
            roots.push_back(object);
    }
    for (auto const& pair : pairs)
        addChildObject(pair.second, pair.first, true);
    for (iNodeGroup* root : roots)
        addObject(root, true);

    if (version >= 2) {
        // Each entry is two longs.
        int const proxies = stream.readCount(8);
        for (int i = 0; i < proxies; ++i) {
            int const first = static_cast<int>(stream.readLong());
            int const second = static_cast<int>(stream.readLong());
            iProxySelector entry;
            entry.firstId = first;
            entry.secondId = second;
            _proxySelectors[first] = entry;
        }
    }
    if (version >= 4)
        loadLayersSelection(stream);
}

void iNodeLayer::resolveLinks()
{
    for (auto& entry : _proxySelectors) {
        entry.second.first = findObjectByUniqueId(entry.second.firstId);
        entry.second.second = findObjectByUniqueId(entry.second.secondId);
    }
}
