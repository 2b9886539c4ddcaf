// Writes the seed inputs of the two fuzz targets: documents and settings
// files made by the library itself, and hand-damaged variants of them.
//
//   MakeSeeds <document seed dir> <settings seed dir>
//
// Existing files of the same names are overwritten; nothing else is
// touched. The files are committed, so that the corpus stays stable even
// when object ids or layouts of a later build differ.
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingNodeBase.h>
#include <iModelStage/model/iSettingsManagerBase.h>
#include <iModelStage/model/iTransformGroup.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::string;

[[noreturn]] void die(std::string const& what)
{
    std::fprintf(stderr, "MakeSeeds: %s\n", what.c_str());
    std::exit(1);
}

void store(std::string const& directory, std::string const& name, Bytes const& bytes)
{
    std::string const path = directory + "/" + name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        die("cannot write " + path);
}

Bytes readFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        die("cannot read " + path);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::uint32_t getInt(Bytes const& b, std::size_t at)
{
    if (at + 4 > b.size())
        die("read past the end of a seed");
    return std::uint32_t(std::uint8_t(b[at])) | std::uint32_t(std::uint8_t(b[at + 1])) << 8 |
           std::uint32_t(std::uint8_t(b[at + 2])) << 16 | std::uint32_t(std::uint8_t(b[at + 3])) << 24;
}

void putInt(Bytes& b, std::size_t at, std::int64_t value)
{
    if (at + 4 > b.size())
        die("write past the end of a seed");
    auto const v = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 4; ++i)
        b[at + static_cast<std::size_t>(i)] = static_cast<char>((v >> (8 * i)) & 0xff);
}

Bytes intBytes(std::int64_t value)
{
    Bytes b(4, '\0');
    putInt(b, 0, value);
    return b;
}

Bytes stringBytes(std::string const& text)
{
    return intBytes(static_cast<std::int64_t>(text.size())) + text;
}

// A document file taken apart at its layer entries, and put together again
// with the sizes recomputed.
struct Document {
    struct Layer {
        std::string name;
        Bytes body;
    };
    std::string id;
    std::int64_t version = 2;
    std::int64_t classVersion = 1;
    std::vector<Layer> layers;
    Bytes tail; // behind the measured part: selections of version 1, current layer

    static Document parse(Bytes const& b)
    {
        Document d;
        std::size_t at = 4;
        auto text = [&]() {
            std::uint32_t n = getInt(b, at);
            at += 4;
            if (at + n > b.size())
                die("bad string in a seed");
            std::string s = b.substr(at, n);
            at += n;
            return s;
        };
        auto integer = [&]() {
            std::uint32_t v = getInt(b, at);
            at += 4;
            return static_cast<std::int32_t>(v);
        };
        d.id = text();
        d.version = integer();
        d.classVersion = integer();
        int const count = integer();
        for (int i = 0; i < count; ++i) {
            Layer layer;
            layer.name = text();
            int const size = integer();
            layer.body = b.substr(at, static_cast<std::size_t>(size));
            at += static_cast<std::size_t>(size);
            d.layers.push_back(layer);
        }
        if (at != getInt(b, 0))
            die("a document made by the library does not measure up");
        d.tail = b.substr(at);
        return d;
    }

    Bytes bytes() const
    {
        Bytes b = intBytes(0) + stringBytes(id) + intBytes(version) + intBytes(classVersion) +
                  intBytes(static_cast<std::int64_t>(layers.size()));
        for (Layer const& layer : layers)
            b += stringBytes(layer.name) + intBytes(static_cast<std::int64_t>(layer.body.size())) + layer.body;
        putInt(b, 0, static_cast<std::int64_t>(b.size()));
        return b + tail;
    }

    Layer& layer(std::string const& name)
    {
        for (Layer& l : layers)
            if (l.name == name)
                return l;
        die("no layer " + name + " in a seed");
    }
};

// The offset of the layer version in a layer body: class name "iNodeLayer",
// level count 2, then the versions of iBaseModel and iNodeLayer.
constexpr std::size_t kLayerVersionOffset = 4 + 10 + 4 + 4;

// One object record of a layer body: where its bytes start, how many they
// are, and the object's id.
struct Record {
    std::string className;
    std::size_t dataAt = 0;
    std::size_t size = 0;
    std::uint32_t id = 0;
};

std::vector<Record> parseRecords(Bytes const& body)
{
    std::size_t at = kLayerVersionOffset + 4;
    at += 4;                    // layer id
    at += 4 + getInt(body, at); // layer name
    std::uint32_t const count = getInt(body, at);
    at += 4;
    std::vector<Record> records;
    for (std::uint32_t k = 0; k < count; ++k) {
        Record r;
        std::uint32_t const nameLength = getInt(body, at);
        r.className = body.substr(at + 4, nameLength);
        at += 4 + nameLength;
        r.size = getInt(body, at);
        at += 4;
        r.dataAt = at;
        // The object header: class name, level count, level versions; then
        // the id.
        std::size_t h = at + 4 + getInt(body, at);
        h += 4 + 4 * std::size_t(getInt(body, h));
        r.id = getInt(body, h);
        at += r.size;
        records.push_back(r);
    }
    return records;
}

// The layer body with only the records from `first` up to before `last`.
Bytes keepRecords(Bytes const& body, std::size_t first, std::size_t last)
{
    std::vector<Record> const records = parseRecords(body);
    if (first > last || last > records.size() || records.empty())
        die("bad record range");
    auto begin = [&](std::size_t k) { return records[k].dataAt - 4 - 4 - records[k].className.size(); };
    std::size_t const countAt = begin(0) - 4;
    std::size_t const tailAt = records.back().dataAt + records.back().size;
    Bytes kept = body.substr(0, countAt) + intBytes(static_cast<std::int64_t>(last - first));
    if (first < last)
        kept += body.substr(begin(first), (last < records.size() ? begin(last) : tailAt) - begin(first));
    return kept + body.substr(tailAt);
}

// Points the only parent link of the object with id `object` to `parent`.
void setOnlyParent(Bytes& body, long object, long parent)
{
    for (Record const& r : parseRecords(body)) {
        if (r.id != static_cast<std::uint32_t>(object))
            continue;
        std::size_t const end = r.dataAt + r.size;
        if (getInt(body, end - 8) != 1)
            die("record does not have exactly one parent");
        putInt(body, end - 4, parent);
        return;
    }
    die("no record of that id in a seed");
}

iLayersManager& manager()
{
    static iLayersManager* instance = new iLayersManager;
    return *instance;
}

// Starts a new document with the named layers; the fuzz target registers
// "a", "b" and "objects", so any other name becomes a ghost layer there.
void freshDocument(std::vector<char const*> const& names)
{
    manager().emptyAllLayers();
    manager().freeLayerObjects();
    for (char const* name : names)
        if (!iLayersManager::registerNodeLayerClass("iNodeLayer", name))
            die("cannot register a layer");
}

iNodeLayer& layer(char const* name)
{
    iNodeLayer* l = iLayersManager::getLayer(name);
    if (!l)
        die(std::string("no layer ") + name);
    return *l;
}

iTransformGroup* transform(char const* name, float x, float y, float z)
{
    iTransformGroup* t = new iTransformGroup;
    t->set_name(name);
    t->setPosition(osg::Vec3f(x, y, z));
    return t;
}

Bytes saveDocument()
{
    iMemoryBuffer buffer;
    iOutStream stream(&buffer);
    manager().saveToStream(stream);
    return buffer.str();
}

// root -> (child -> (grandchild -> great-grandchild, grandchild2), child2),
// plus a plain group; returns the objects in the order of the comment.
std::vector<iNodeGroup*> buildNested(iNodeLayer& l)
{
    iTransformGroup* root = transform("root", 1, 2, 3);
    iTransformGroup* child = transform("child", -4, 0.5f, 8);
    iTransformGroup* grandchild = transform("grandchild", 0, 0, -1);
    iTransformGroup* grandchild2 = transform("grandchild2", 1e6f, -1e-3f, 0);
    iTransformGroup* child2 = transform("child2", 7, 7, 7);
    iTransformGroup* greatGrandchild = transform("great-grandchild", 0.25f, 0.5f, 0.75f);
    iNodeGroup* group = new iNodeGroup;
    group->set_name("group");
    l.addObject(root, true);
    l.addChildObject(root, child, true);
    l.addChildObject(child, grandchild, true);
    l.addChildObject(child, grandchild2, true);
    l.addChildObject(root, child2, true);
    l.addChildObject(grandchild, greatGrandchild, true);
    l.addObject(group, true);
    return {root, child, grandchild, grandchild2, child2, group, greatGrandchild};
}

void makeDocuments(std::string const& dir)
{
    std::vector<char const*> const known = {"a", "b", "objects"};

    freshDocument(known);
    Bytes const empty = saveDocument();
    store(dir, "empty.doc", empty);

    freshDocument(known);
    std::vector<iNodeGroup*> nested = buildNested(layer("objects"));
    layer("a").addObject(transform("alone", 0, 0, 0), true);
    iLayersManager::setCurrentLayer("objects");
    Bytes const nestedDoc = saveDocument();
    store(dir, "nested.doc", nestedDoc);

    // Two parents: the second grandchild hangs under child2 too.
    static_cast<osg::Group*>(nested[4])->addChild(nested[3]);
    store(dir, "two-parents.doc", saveDocument());

    freshDocument(known);
    nested = buildNested(layer("objects"));
    layer("objects").addProxySelector(nested[2], nested[1]);
    layer("objects").addProxySelector(nested[5], nested[0]);
    store(dir, "proxies.doc", saveDocument());

    freshDocument(known);
    nested = buildNested(layer("b"));
    layer("b").addObjectSelection(nested[4]);
    layer("b").addObjectSelection(nested[0]);
    layer("b").addObjectSelection(nested[3]);
    iLayersManager::setCurrentLayer("b");
    Bytes const selection = saveDocument();
    store(dir, "selection.doc", selection);

    // A layer and an object class that the reader does not know.
    freshDocument({"a", "b", "objects", "future"});
    nested = buildNested(layer("future"));
    layer("future").addObjectSelection(nested[1]);
    buildNested(layer("a"));
    osg::ref_ptr<iGhostNode> ghost = new iGhostNode;
    ghost->setOriginalClassName("iFutureSolid");
    {
        Bytes const record = intBytes(0) + stringBytes("ghost payload") + intBytes(0);
        iMemoryBuffer source(record);
        iInStream in(&source);
        ghost->readData(in, static_cast<int>(record.size()));
    }
    layer("a").addObject(ghost.get(), true);
    iNodeGroup* hidden = transform("not-written", 0, 1, 0);
    layer("a").addObject(hidden, true);
    layer("a").addChildObject(hidden, transform("orphan", 5, 5, 5), true);
    iNodeGroup::setNodeFlag(hidden, 6, false);
    iLayersManager::setCurrentLayer("future");
    Bytes const ghosts = saveDocument();
    store(dir, "ghosts.doc", ghosts);

    // Everything at once, in one layer.
    freshDocument(known);
    nested = buildNested(layer("objects"));
    static_cast<osg::Group*>(nested[4])->addChild(nested[3]);
    layer("objects").addProxySelector(nested[2], nested[1]);
    layer("objects").addObjectSelection(nested[5]);
    layer("objects").addObjectSelection(nested[2]);
    buildNested(layer("a"));
    iLayersManager::setCurrentLayer("a");
    Bytes const everything = saveDocument();
    store(dir, "everything.doc", everything);

    // Older layer versions: 3 has no selection, 2 neither, 1 no proxies
    // either; file version 1 carries the selections behind the layers.
    {
        Document d = Document::parse(nestedDoc);
        for (Document::Layer& l : d.layers) {
            putInt(l.body, kLayerVersionOffset, 3);
            l.body.resize(l.body.size() - 4); // empty selection
        }
        store(dir, "layer-v3.doc", d.bytes());
        for (Document::Layer& l : d.layers)
            putInt(l.body, kLayerVersionOffset, 2);
        store(dir, "layer-v2.doc", d.bytes());
        for (Document::Layer& l : d.layers) {
            putInt(l.body, kLayerVersionOffset, 1);
            l.body.resize(l.body.size() - 4); // no proxies
        }
        store(dir, "layer-v1.doc", d.bytes());
    }
    {
        Document d = Document::parse(selection);
        // Move layer b's selection behind the layers: the ids are the last
        // four ints of b's body, after its count.
        Document::Layer& b = d.layer("b");
        Bytes const block = b.body.substr(b.body.size() - 16);
        for (Document::Layer& l : d.layers) {
            putInt(l.body, kLayerVersionOffset, 3);
            l.body.resize(l.body.size() - (l.name == "b" ? 16 : 4));
        }
        d.version = 1;
        // One block per layer read, in reading (name) order: a, b, objects.
        d.tail = intBytes(0) + block + intBytes(0) + d.tail;
        store(dir, "file-v1-selection.doc", d.bytes());
    }

    // Damaged variants.
    store(dir, "bad-id.doc", [&] {
        Bytes b = nestedDoc;
        b[4 + 4 + 33] = '9'; // a digit of the date part
        return b;
    }());
    store(dir, "truncated-header.doc", nestedDoc.substr(0, 30));
    store(dir, "truncated-half.doc", everything.substr(0, everything.size() / 2));
    store(dir, "truncated-tail.doc", everything.substr(0, everything.size() - 3));
    store(dir, "total-size-off.doc", [&] {
        Bytes b = nestedDoc;
        putInt(b, 0, static_cast<std::int64_t>(getInt(b, 0)) + 1);
        return b;
    }());
    store(dir, "extra-bytes.doc", nestedDoc + Bytes("trailing garbage"));
    store(dir, "huge-layer-count.doc", [&] {
        Bytes b = nestedDoc;
        putInt(b, 4 + 4 + 39 + 8, 0x7fffffff);
        return b;
    }());
    store(dir, "negative-layer-count.doc", [&] {
        Bytes b = nestedDoc;
        putInt(b, 4 + 4 + 39 + 8, -5);
        return b;
    }());
    {
        Document d = Document::parse(nestedDoc);
        Bytes b = d.bytes();
        // The first layer entry's name length, then its size.
        std::size_t const first = 4 + 4 + 39 + 12;
        Bytes huge = b;
        putInt(huge, first, 0x7ffffff0);
        store(dir, "huge-name-length.doc", huge);
        Bytes negative = b;
        putInt(negative, first + 4 + d.layers[0].name.size(), -1);
        store(dir, "negative-layer-size.doc", negative);
    }
    {
        Document d = Document::parse(nestedDoc);
        Document::Layer& l = d.layer("objects");
        // Behind the layer version: the layer's id, then its name.
        std::size_t const nameAt = kLayerVersionOffset + 8;
        std::size_t const objectCount = nameAt + 4 + getInt(l.body, nameAt);
        Document huge = d;
        putInt(huge.layer("objects").body, objectCount, 0x7fffffff);
        store(dir, "huge-object-count.doc", huge.bytes());
        Document negative = d;
        putInt(negative.layer("objects").body, objectCount, -1);
        store(dir, "negative-object-count.doc", negative.bytes());
        // The first record's size.
        std::size_t const firstRecord = objectCount + 4;
        std::size_t const sizeAt = firstRecord + 4 + getInt(l.body, firstRecord);
        Document negativeSize = d;
        putInt(negativeSize.layer("objects").body, sizeAt, -100);
        store(dir, "negative-record-size.doc", negativeSize.bytes());
        Document zeroSize = d;
        putInt(zeroSize.layer("objects").body, sizeAt, 0);
        store(dir, "zero-record-size.doc", zeroSize.bytes());
        Document hugeSize = d;
        putInt(hugeSize.layer("objects").body, sizeAt, 0x7fffffff);
        store(dir, "huge-record-size.doc", hugeSize.bytes());
        // A proxy count with no entries behind it.
        Document proxies = d;
        Bytes& body = proxies.layer("objects").body;
        putInt(body, body.size() - 8, 0x10000000);
        store(dir, "huge-proxy-count.doc", proxies.bytes());
        // Selected ids that are nowhere.
        Document ghostsSelected = d;
        Bytes& selected = ghostsSelected.layer("objects").body;
        selected.resize(selected.size() - 4);
        selected += intBytes(3) + intBytes(123456) + intBytes(-1) + intBytes(0);
        store(dir, "unknown-selected-ids.doc", ghostsSelected.bytes());
    }
    {
        // Parent links that no tree can have. nested[1] is child (under
        // root), nested[2] grandchild (under child), nested[6]
        // great-grandchild (under grandchild).
        freshDocument(known);
        nested = buildNested(layer("objects"));
        Bytes const plain = saveDocument();
        Document self = Document::parse(plain);
        setOnlyParent(self.layer("objects").body, nested[1]->getUniqueId(), nested[1]->getUniqueId());
        store(dir, "self-parent.doc", self.bytes());
        Document two = Document::parse(plain);
        setOnlyParent(two.layer("objects").body, nested[1]->getUniqueId(), nested[2]->getUniqueId());
        store(dir, "cycle-of-two.doc", two.bytes());
        Document three = Document::parse(plain);
        setOnlyParent(three.layer("objects").body, nested[1]->getUniqueId(), nested[6]->getUniqueId());
        store(dir, "cycle-of-three.doc", three.bytes());
        // A parent id that is nowhere: the object becomes a root.
        Document lost = Document::parse(plain);
        setOnlyParent(lost.layer("objects").body, nested[2]->getUniqueId(), 0x7ffffff0);
        store(dir, "unknown-parent.doc", lost.bytes());
        // One layer in two entries: the second one's objects hang under
        // objects that the first entry put in the layer.
        Document merged = Document::parse(plain);
        Document::Layer second = merged.layer("objects");
        merged.layer("objects").body = keepRecords(second.body, 0, 2);
        second.body = keepRecords(second.body, 2, parseRecords(second.body).size());
        merged.layers.push_back(second);
        store(dir, "layer-in-two-entries.doc", merged.bytes());
    }
}

// A settings file taken apart: the id, then a layer body without object
// header, whose records are kept whole (class name, size, bytes).
struct Settings {
    std::string id;
    std::vector<Bytes> records;
    Bytes rest; // proxies and selection

    static Settings parse(Bytes const& b)
    {
        Settings s;
        std::size_t at = 0;
        std::uint32_t const idLength = getInt(b, at);
        s.id = b.substr(4, idLength);
        at += 4 + idLength;
        std::uint32_t const count = getInt(b, at);
        at += 4;
        for (std::uint32_t k = 0; k < count; ++k) {
            std::size_t const begin = at;
            at += 4 + getInt(b, at);
            at += 4 + getInt(b, at);
            s.records.push_back(b.substr(begin, at - begin));
        }
        s.rest = b.substr(at);
        return s;
    }

    Bytes bytes() const
    {
        Bytes b = stringBytes(id) + intBytes(static_cast<std::int64_t>(records.size()));
        for (Bytes const& r : records)
            b += r;
        return b + rest;
    }
};

// The record's id, as its parent list would name it.
std::uint32_t recordId(Bytes const& record)
{
    std::size_t at = 4 + getInt(record, 0); // class name
    at += 4;                                // size
    at += 4 + getInt(record, at);           // header class name
    at += 4 + 4 * std::size_t(getInt(record, at));
    return getInt(record, at);
}

Bytes renamed(Bytes const& record, std::string const& className)
{
    std::uint32_t const length = getInt(record, 0);
    return stringBytes(className) + record.substr(4 + length);
}

// Gives a record without parents the single parent `parent`.
Bytes withParent(Bytes const& record, std::uint32_t parent)
{
    Bytes r = record;
    if (getInt(r, r.size() - 4) != 0)
        die("record already has parents");
    std::size_t const sizeAt = 4 + getInt(r, 0);
    putInt(r, sizeAt, static_cast<std::int64_t>(getInt(r, sizeAt)) + 4);
    putInt(r, r.size() - 4, 1);
    return r + intBytes(parent);
}

void makeSettings(std::string const& dir, std::string const& scratch)
{
    iNodeLayer* settings = iSettingsManagerBase::getSettingsLayer();
    iNodeGroup* colour = settings->findObjectByName("iModelStage_viewerbg");
    if (!colour)
        die("no colour setting");
    auto written = [&] {
        if (!iSettingsManagerBase::write(scratch.c_str()))
            die("cannot write settings");
        return readFile(scratch);
    };

    Bytes const defaults = written();
    store(dir, "default.settings", defaults);
    colour->setPropertyValue<iColor4>("iModelStage_viewerbg", iColor4(1.0f, 0.0f, 0.5f, 0.25f));
    Bytes const changed = written();
    store(dir, "colour.settings", changed);
    iSettingsManagerBase::restoreDefaultValues();

    Settings const base = Settings::parse(changed);
    if (base.records.size() != 1)
        die("expected one setting");
    Bytes const& record = base.records[0];
    std::string const unknownClass = "iColor4iModelStage_gridlineview";

    Settings unknown = base;
    unknown.records.push_back(renamed(record, unknownClass));
    store(dir, "unknown-setting.settings", unknown.bytes());

    Settings onlyUnknown = base;
    onlyUnknown.records = {renamed(record, unknownClass)};
    store(dir, "only-unknown-setting.settings", onlyUnknown.bytes());

    Settings twice = Settings::parse(defaults);
    twice.records.push_back(record);
    store(dir, "same-name-twice.settings", twice.bytes());

    Settings nestedSetting = Settings::parse(defaults);
    nestedSetting.records.push_back(withParent(record, recordId(nestedSetting.records[0])));
    store(dir, "nested-setting.settings", nestedSetting.bytes());

    Settings selfParent = base;
    selfParent.records[0] = withParent(record, recordId(record));
    store(dir, "self-parent.settings", selfParent.bytes());

    Settings emptyLayer = base;
    emptyLayer.records.clear();
    store(dir, "no-settings.settings", emptyLayer.bytes());

    // A document object is no setting and is left out.
    {
        freshDocument({"objects"});
        layer("objects").addObject(transform("stray", 1, 1, 1), true);
        Document d = Document::parse(saveDocument());
        Bytes const& body = d.layer("objects").body;
        std::vector<Record> const records = parseRecords(body);
        Record const& r = records.at(0);
        Bytes const stray = stringBytes(r.className) + intBytes(static_cast<std::int64_t>(r.size)) +
                            body.substr(r.dataAt, r.size);
        Settings withStray = base;
        withStray.records.insert(withStray.records.begin(), stray);
        store(dir, "document-object.settings", withStray.bytes());
    }

    Settings badId = base;
    badId.id = "iSettingsManager::12122012";
    store(dir, "bad-id.settings", badId.bytes());
    store(dir, "id-only.settings", stringBytes(base.id));
    store(dir, "truncated.settings", changed.substr(0, changed.size() * 2 / 3));
    store(dir, "truncated-id.settings", changed.substr(0, 10));
    {
        Bytes b = changed;
        putInt(b, 4 + base.id.size(), 0x7fffffff);
        store(dir, "huge-count.settings", b);
        putInt(b, 4 + base.id.size(), -3);
        store(dir, "negative-count.settings", b);
    }
    {
        Bytes b = changed;
        putInt(b, 0, 0x7fffffff);
        store(dir, "huge-id-length.settings", b);
        putInt(b, 0, -1);
        store(dir, "negative-id-length.settings", b);
    }
    {
        Settings negative = base;
        std::size_t const sizeAt = 4 + getInt(record, 0);
        putInt(negative.records[0], sizeAt, -8);
        store(dir, "negative-record-size.settings", negative.bytes());
        Settings zero = base;
        putInt(zero.records[0], sizeAt, 0);
        store(dir, "zero-record-size.settings", zero.bytes());
    }
    std::remove(scratch.c_str());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <document seed dir> <settings seed dir>\n", argv[0]);
        return 2;
    }
    makeDocuments(argv[1]);
    makeSettings(argv[2], std::string(argv[2]) + "/.scratch");
    return 0;
}
