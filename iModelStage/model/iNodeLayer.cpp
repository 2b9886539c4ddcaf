#include <iModelStage/model/iNodeLayer.h>

#include <iModelStage/frame/iFastCast.h>
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iPointerTable.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iLoadScope.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iParentLinks.h>
#include <iModelStage/reporting/iProgressHandler.h>

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>

I_REGISTER_PERSISTENT_CLASS(iNodeLayer)

namespace {

// A count written as a placeholder and patched once known.
class CountPatch {
public:
    explicit CountPatch(iOutStream& stream) : m_stream(stream), m_position(stream.tellp()) { stream.writeInt(0); }

    void patch(int count) { m_stream.patchInt(m_position, count); }

private:
    iOutStream& m_stream;
    std::streampos m_position;
};

// Only classes of document objects may be created from a file: any other
// class would run constructors that have nothing to do in a layer. Whether
// a class name qualifies is remembered for the length of one read.
class ObjectFactory {
public:
    iNodeGroup* create(std::string const& className)
    {
        // Records of one class come in long runs.
        if (className != m_lastName) {
            auto it = m_objectClasses.find(className);
            if (it == m_objectClasses.end())
                it = m_objectClasses.emplace(className, iRoot::isClassOf(className.c_str(), "iNodeGroup")).first;
            m_lastName = className;
            m_lastIsObject = it->second;
        }
        if (!m_lastIsObject)
            return nullptr;
        // Every object created here is read at once, stored id first.
        iRoot* created = iRoot::newClassToRead(className.c_str());
        iNodeGroup* object = iFastCast<iNodeGroup>(created);
        if (!object)
            delete created;
        return object;
    }

private:
    std::unordered_map<std::string, bool> m_objectClasses;
    std::string m_lastName;
    bool m_lastIsObject = false;
};

// The object and parent ids of a record whose class name and size are read;
// null, with nothing more read, when the record holds no object this
// library can create.
osg::ref_ptr<iNodeGroup> readRecord(ObjectFactory& factory, std::string const& className, int size,
                                    iInStream& stream, std::vector<long>& parents)
{
    osg::ref_ptr<iNodeGroup> object = size != 0 ? factory.create(className) : nullptr;
    if (!object)
        return nullptr;
    iRoot::readObject(object.get(), stream);
    int const count = stream.readCount(4);
    for (int i = 0; i < count; ++i)
        parents.push_back(stream.readInt());
    return object;
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
    // Most objects have one parent: their ids wait on the stack, not on the
    // heap.
    int shortIds[16];
    std::vector<int> longIds;
    int count = 0;
    for (unsigned int i = 0; i < object->getNumParents(); ++i) {
        iNodeGroup* parent = iNodeGroup::fromNode(object->getParent(i));
        if (!parent)
            continue;
        int const id = static_cast<int>(parent->getUniqueId());
        if (count < 16)
            shortIds[count] = id;
        else
            longIds.push_back(id);
        ++count;
    }
    record.writeInt(count);
    for (int k = 0; k < count; ++k)
        record.writeInt(k < 16 ? shortIds[k] : longIds[static_cast<std::size_t>(k - 16)]);
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

    // Flat, so that remembering an object costs no allocation.
    iPointerTable<bool, 0, 3, 20> written;
    written.reserve(objects.size());
    int count = 0;
    int step = 0;
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        iNodeGroup* object = iNodeGroup::fromNode(node.get());
        if (!object)
            continue;
        // An object with two parents is met twice and written once.
        if (written.contains(object)) {
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
        written.insert(object, true);
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
    ObjectFactory factory;
    return readRecord(factory, className ? className : "", size, stream, parents).release();
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
    // collected, and attached and announced once all are in. The parent ids
    // of record i are parentIds[first[i]] up to parentIds[first[i + 1]].
    ObjectFactory factory;
    std::vector<osg::ref_ptr<iNodeGroup>> objects;
    std::vector<long> parentIds;
    std::vector<std::size_t> first{0};
    // Room for what the count announces, within what a sane file holds: a
    // stream that cannot tell its size cannot vouch for the count.
    std::size_t const expected = std::min<std::size_t>(static_cast<std::size_t>(count), std::size_t(1) << 20);
    objects.reserve(expected);
    parentIds.reserve(expected);
    first.reserve(expected + 1);
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
        int const size = stream.readInt();
        osg::ref_ptr<iNodeGroup> object = readRecord(factory, name, size, stream, parentIds);
        if (!object) {
            // A ghost keeps the record's true parents in its bytes and lands
            // at the top of the layer.
            osg::ref_ptr<iGhostNode> ghost = new iGhostNode;
            ghost->setOriginalClassName(name);
            ghost->readData(stream, size);
            object = ghost;
        }
        objects.push_back(object);
        first.push_back(parentIds.size());
        progress.setValue(i + 1);
    }

    // Ids to records; of two records with one id, the later one answers. A
    // ghost's id is a fresh one, not the file's: no link may reach it, even
    // where a file's id happens to equal it.
    std::vector<std::pair<long, std::size_t>> byId;
    byId.reserve(objects.size());
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (!objects[i]->asGhost())
            byId.emplace_back(objects[i]->getUniqueId(), i);
    // Ids are mostly in file order already.
    if (!std::is_sorted(byId.begin(), byId.end()))
        std::sort(byId.begin(), byId.end());
    // Parents among the records by index; parents already in the layer by
    // pointer, measured as the link budget needs them.
    iLoadScope scope;
    iLoadScope::Layer& loaded = iLoadScope::layer(this);
    std::vector<int> parentIndices(parentIds.size(), -1);
    std::vector<iNodeGroup*> existing(parentIds.size(), nullptr);
    std::vector<iParentLinks::Anchor> anchors(parentIds.size());
    for (std::size_t k = 0; k < parentIds.size(); ++k) {
        auto it = std::upper_bound(byId.begin(), byId.end(), std::make_pair(parentIds[k], objects.size()));
        if (it != byId.begin() && std::prev(it)->first == parentIds[k]) {
            parentIndices[k] = static_cast<int>(std::prev(it)->second);
        } else if ((existing[k] = findObjectByUniqueId(parentIds[k])) && existing[k]->asGhost()) {
            existing[k] = nullptr;
        } else if (existing[k]) {
            anchors[k] = iParentLinks::measure(existing[k], getObjectsRoot(), loaded.known);
        }
    }
    iParentLinks const links(first, parentIndices, anchors, loaded.budget);

    // Each parent's child list is sized once, not grown child by child.
    std::vector<unsigned int> childCounts(objects.size(), 0);
    for (std::size_t k = 0; k < parentIndices.size(); ++k)
        if (parentIndices[k] >= 0 && links.keep(k))
            ++childCounts[static_cast<std::size_t>(parentIndices[k])];
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (childCounts[i] > 1)
            objects[i]->reserveChildren(childCounts[i]);

    std::vector<std::pair<iNodeGroup*, iNodeGroup*>> pairs;
    std::vector<iNodeGroup*> roots;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        iNodeGroup* object = objects[i].get();
        bool hasParent = false;
        for (std::size_t k = first[i]; k < first[i + 1]; ++k) {
            if (!links.keep(k))
                continue;
            if (parentIndices[k] >= 0)
                objects[static_cast<std::size_t>(parentIndices[k])]->addReadChild(object);
            else
                pairs.emplace_back(object, existing[k]);
            hasParent = true;
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
