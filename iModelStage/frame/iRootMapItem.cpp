#include <iModelStage/frame/iRoot.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iStreamError.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

typedef iRoot::iRootMapItem Row;
typedef std::vector<Row const*> Chain;

// Guards against a parent cycle in rows entered by a host.
constexpr int kMaxDepth = 256;

// The class table. Rows are entered and removed by static registrars; the
// persistence chain of each class record is cached and rebuilt whenever the
// table changes. Never destroyed, so that registrars of other libraries may
// unregister late.
struct ClassTable {
    std::recursive_mutex mutex;
    // Found by a plain text, without a string made for each look-up.
    std::map<std::string, Row const*, std::less<>> rows;
    std::atomic<unsigned> generation{0};

    struct CachedChain {
        unsigned generation = ~0u;
        std::shared_ptr<Chain const> rows;
    };
    std::unordered_map<iClass const*, CachedChain> chains;

    Row const* find(char const* name)
    {
        if (!name)
            return nullptr;
        auto it = rows.find(std::string_view(name));
        return it == rows.end() ? nullptr : it->second;
    }

    // The registered levels of a class, top-most first.
    std::shared_ptr<Chain const> chainOf(iClass const& cls)
    {
        // Documents hold long runs of objects of one class: the last answer
        // of this thread is checked first, without taking the lock.
        struct Last {
            iClass const* cls = nullptr;
            unsigned generation = ~0u;
            std::shared_ptr<Chain const> rows;
        };
        static thread_local Last last;
        unsigned const now = generation.load(std::memory_order_acquire);
        if (last.cls == &cls && last.generation == now)
            return last.rows;

        std::lock_guard<std::recursive_mutex> lock(mutex);
        CachedChain& cached = chains[&cls];
        if (cached.generation != generation.load(std::memory_order_relaxed) || !cached.rows) {
            auto built = std::make_shared<Chain>();
            int depth = 0;
            for (iClass const* record = &cls; record && depth < kMaxDepth; record = record->getParent(), ++depth)
                if (Row const* row = find(record->getName()))
                    built->push_back(row);
            std::reverse(built->begin(), built->end());
            cached.rows = std::move(built);
            cached.generation = generation.load(std::memory_order_relaxed);
        }
        last = Last{&cls, cached.generation, cached.rows};
        return cached.rows;
    }
};

ClassTable& table()
{
    static ClassTable* instance = new ClassTable;
    return *instance;
}

} // namespace

Row::iRootMapItem(char const* className, char const* parentName, int version, Factory factory, ReadMember read,
                  WriteMember write)
    : m_className(className)
    , m_parentName(parentName)
    , m_version(version)
    , m_factory(factory)
    , m_readMember(read)
    , m_writeMember(write)
{
    enter();
}

Row::iRootMapItem(char const* className, char const* parentName, int version, Factory factory, ReadFunction read,
                  WriteFunction write)
    : m_className(className)
    , m_parentName(parentName)
    , m_version(version)
    , m_factory(factory)
    , m_readFunction(read)
    , m_writeFunction(write)
{
    enter();
}

void Row::enter()
{
    if (!m_className)
        return;
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    t.rows[m_className] = this;
    ++t.generation;
}

Row::~iRootMapItem()
{
    if (!m_className)
        return;
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    auto it = t.rows.find(std::string_view(m_className));
    if (it != t.rows.end() && it->second == this)
        t.rows.erase(it);
    ++t.generation;
}

void Row::read(iRoot* object, iInStream& stream, int version) const
{
    if (m_readFunction)
        m_readFunction(object, stream, version);
    else if (m_readMember)
        (object->*m_readMember)(stream, version);
}

void Row::write(iRoot* object, iOutStream& stream) const
{
    if (m_writeFunction)
        m_writeFunction(object, stream);
    else if (m_writeMember)
        (object->*m_writeMember)(stream);
}

iRoot* iRoot::newClass(char const* className)
{
    Row::Factory factory = nullptr;
    {
        ClassTable& t = table();
        std::lock_guard<std::recursive_mutex> lock(t.mutex);
        Row const* row = t.find(className);
        factory = row ? row->getFactory() : nullptr;
    }
    return factory ? factory() : nullptr;
}

bool iRoot::findClass(char const* className)
{
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    return t.find(className) != nullptr;
}

bool iRoot::isClassOf(char const* className, char const* baseName)
{
    if (!className || !baseName)
        return false;
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    std::string name = className;
    for (int depth = 0; depth < kMaxDepth; ++depth) {
        if (name == baseName)
            return true;
        Row const* row = t.find(name.c_str());
        if (!row || !row->getParentName())
            return false;
        name = row->getParentName();
    }
    return false;
}

bool iRoot::getParentClassName(char const* className, std::string& parent)
{
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    Row const* row = t.find(className);
    if (!row || !row->getParentName() || !*row->getParentName())
        return false;
    parent = row->getParentName();
    return true;
}

int iRoot::getRegisteredClassVersion(char const* className)
{
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    Row const* row = t.find(className);
    return row ? row->getVersion() : 0;
}

bool iRoot::getChildrenClassesList(char const* className, std::set<std::string>& children, bool includeSelf)
{
    if (!className)
        return false;
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    // The root is not a row of the table, yet every class descends from it.
    if (!t.find(className) && std::string(className) != staticGetClassName())
        return false;
    for (auto const& entry : t.rows)
        if (entry.first != className && isClassOf(entry.first.c_str(), className))
            children.insert(entry.first);
    if (includeSelf)
        children.insert(className);
    return true;
}

void iRoot::getClassesList(std::vector<std::string>& classes)
{
    ClassTable& t = table();
    std::lock_guard<std::recursive_mutex> lock(t.mutex);
    for (auto const& entry : t.rows)
        classes.push_back(entry.first);
}

void iRoot::writeObject(iRoot* object, iOutStream& stream)
{
    if (!object)
        throw iStreamError("no object to write");
    std::shared_ptr<Chain const> const levels = table().chainOf(object->getClass());
    Chain const& chain = *levels;
    stream.writeString(object->getClassName());
    stream.writeInt(static_cast<int>(chain.size()));
    for (Row const* row : chain)
        stream.writeInt(row->getVersion());
    stream.writeLong(object->getUniqueId());
    stream.writeString(object->get_name());
    for (Row const* row : chain)
        row->write(object, stream);
}

void iRoot::readObjectHeader(iInStream& stream, std::string& className)
{
    std::vector<int> versions;
    readObjectHeader(stream, className, versions);
}

void iRoot::readObjectHeader(iInStream& stream, std::string& className, std::vector<int>& versions)
{
    className = stream.readString();
    int count = stream.readCount(4);
    versions.clear();
    for (int i = 0; i < count; ++i)
        versions.push_back(stream.readInt());
}

void iRoot::readObject(iRoot* object, iInStream& stream)
{
    if (!object)
        throw iStreamError("no object to read into");
    std::shared_ptr<Chain const> const levels = table().chainOf(object->getClass());
    Chain const& chain = *levels;
    std::string const className = stream.readString();
    int const count = stream.readCount(4);
    // Every version is read before the counts are compared, so that a
    // failing object leaves the stream behind its header.
    int shortVersions[16];
    std::vector<int> longVersions;
    int* versions = shortVersions;
    if (count > 16) {
        longVersions.resize(static_cast<std::size_t>(count));
        versions = longVersions.data();
    }
    for (int i = 0; i < count; ++i)
        versions[i] = stream.readInt();
    if (static_cast<std::size_t>(count) != chain.size())
        throw iStreamError("object header of " + className + " does not match the class " + object->getClassName());
    long const id = stream.readLong();
    std::string name = stream.readString();
    object->setUniqueId(id);
    object->set_name(std::move(name));
    for (std::size_t level = 0; level < chain.size(); ++level)
        chain[level]->read(object, stream, versions[level]);
}
