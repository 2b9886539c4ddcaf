#include "model/DocumentBytes.h"

#include <iModelStage/model/iGhostNode.h>

// A persistent class of the test's own, so that a record can be written
// while its class exists and re-read under a name that does not.
class iGhostProbe : public iNodeGroup {
    I_CLASS(iGhostProbe, iNodeGroup, 1)
    I_OSG_NODE(iGhostProbe)
public:
    iGhostProbe() = default;
    iGhostProbe(iGhostProbe const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iNodeGroup(other, copyop), value(other.value)
    {
    }
    void read(iInStream& stream, int) { value = stream.readInt(); }
    void write(iOutStream& stream) { stream.writeInt(value); }
    int value = 0;

protected:
    ~iGhostProbe() override = default;
};

I_REGISTER_PERSISTENT_CLASS(iGhostProbe)

namespace {

std::string replaceAll(std::string text, std::string const& from, std::string const& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// Failures then show which byte differs.
std::string hex(std::string const& bytes)
{
    std::string out;
    for (unsigned char c : bytes)
        out += "0123456789abcdef"[c >> 4], out += "0123456789abcdef"[c & 15], out += ' ';
    return out;
}

} // namespace

class DocumentFile : public LayersTest {};
class NodeLayer : public LayersTest {};
class GhostNode : public LayersTest {};
class GhostLayer : public LayersTest {};

TEST_F(DocumentFile, HandBuiltLayoutIsWrittenAndReadBack)
{
    a->setUniqueId(kLayerA);
    b->setUniqueId(kLayerB);
    osg::ref_ptr<iTransformGroup> p = make<iTransformGroup>("P");
    osg::ref_ptr<iNodeGroup> c = make("C");
    p->setUniqueId(900001);
    c->setUniqueId(900002);
    p->setPosition(osg::Vec3f(1, 2, 3));
    a->addObject(p.get(), false);
    a->addChildObject(p.get(), c.get(), false);
    a->addProxySelector(c.get(), p.get());
    a->addObjectSelection(p.get());
    ASSERT_TRUE(iLayersManager::setCurrentLayer("a"));
    EXPECT_EQ(hex(save()), hex(smallDocument()));

    // Read back from a stream, and from a file whose bytes behind the
    // current layer name are not read.
    for (bool fromFile : {false, true}) {
        SCOPED_TRACE(fromFile ? "file" : "stream");
        a->setUniqueId(1);
        ASSERT_TRUE(iLayersManager::setCurrentLayer("b"));
        if (fromFile)
            EXPECT_TRUE(manager->load(files.write("trailing", smallDocument() + "trailing junk")));
        else
            load(smallDocument());
        EXPECT_EQ(a->getUniqueId(), kLayerA);
        auto* readP = dynamic_cast<iTransformGroup*>(a->findObjectByUniqueId(900001));
        iNodeGroup* readC = a->findObjectByUniqueId(900002);
        ASSERT_TRUE(readP && readC);
        EXPECT_NE(readP, p.get());
        EXPECT_EQ(readP->get_name(), "P");
        EXPECT_EQ(readP->getPosition(), osg::Vec3f(1, 2, 3));
        ASSERT_EQ(readC->getNumParents(), 1u);
        EXPECT_EQ(readC->getParent(0), readP);
        EXPECT_EQ(a->getProxySelector(readC), readP);
        EXPECT_EQ(selectionOf(a), NodeList{readP});
        EXPECT_EQ(iLayersManager::getCurrentLayer(), a);
        EXPECT_EQ(hex(save()), hex(smallDocument()));
    }
}

TEST_F(DocumentFile, WrongIdIsThrownAsLiteralWithoutEndLoadAndMissingFileLoadsEmpty)
{
    a->addObject(make("before").get(), false);
    std::string thrown;
    try {
        manager->load(files.write("wrongid", replaceAll(smallDocument(), "240608", "240609")));
    } catch (char const* text) {
        thrown = text;
    }
    EXPECT_EQ(thrown, "i_invalid_ff_id");
    EXPECT_EQ(events.take(), (Log{"empty", "db:0", "file", "beginLoad"}));
    EXPECT_EQ(a->findObjectByName("before"), nullptr);
    EXPECT_EQ(manager->getCurrentFileName(), "");

    a->addObject(make("before").get(), false);
    std::string const absent = files.path("absent");
    EXPECT_TRUE(manager->load(absent));
    EXPECT_EQ(events.take(), (Log{"empty", "db:0", "file", "beginLoad", "endLoad", "file:" + absent, "db:0"}));
    EXPECT_EQ(a->findObjectByName("before"), nullptr);
    EXPECT_EQ(manager->getCurrentFileName(), absent);
}

TEST_F(DocumentFile, DamagedFileLoadsAsFarAsItGoes)
{
    auto endLoads = [this] {
        Log const log = events.take();
        return std::count(log.begin(), log.end(), "endLoad");
    };
    // One level where the class has two: the header is refused right after
    // it is read, which leaves the stream at the next entry.
    std::string const good = layerBody(kLayerB, {record("iNodeGroup", nodeObject(900010, "inB", "b"))});
    load(document({{"a", header("iNodeLayer", {4})}, {"b", good}}, "a"));
    EXPECT_EQ(a->getObjectsRoot()->getNumChildren(), 0u);
    EXPECT_NE(b->findObjectByUniqueId(900010), nullptr);
    EXPECT_EQ(iLayersManager::getCurrentLayer(), a);

    EXPECT_EQ(endLoads(), 1);

    // Cut inside the current layer name: all layers are in, the name is not.
    std::string doc = smallDocument();
    iLayersManager::setCurrentLayer("b");
    EXPECT_TRUE(manager->load(files.write("cutname", doc.substr(0, doc.size() - 1))));
    EXPECT_EQ(endLoads(), 1);
    EXPECT_NE(a->findObjectByUniqueId(900002), nullptr);
    EXPECT_EQ(iLayersManager::getCurrentLayer(), b);

    // Cut inside the first record of "a": nothing of it is attached.
    EXPECT_TRUE(manager->load(files.write("cutrecord", doc.substr(0, doc.find("iTransformGroup") + 40))));
    EXPECT_EQ(endLoads(), 1);
    ASSERT_EQ(iLayersManager::getLayer("a"), a);
    EXPECT_EQ(a->getObjectsRoot()->getNumChildren(), 0u);

    // A total size that is off by one drops the whole document, but the
    // layers the host registered stay, empty, where the host holds them:
    // only the ghost layers of the file go.
    int const total = static_cast<int>(doc.size()) - 5; // behind the layers: the string "a"
    doc.replace(0, 4, i32(total + 1));
    std::string const unknown = layerBody(kLayerB, {record("iNodeGroup", nodeObject(900011, "x", "zz"))});
    std::string damaged = document({{"a", layerBody(kLayerA, {record("iNodeGroup", nodeObject(900012, "y", "a"))})},
                                    {"zz", unknown}},
                                   "a");
    damaged.replace(0, 4, i32(static_cast<int>(damaged.size()) - 5 - 1));
    for (std::string const& file : {doc, damaged}) {
        EXPECT_TRUE(manager->load(files.write("badtotal", file)));
        EXPECT_EQ(endLoads(), 1);
        std::vector<iNodeLayer*> layers;
        iLayersManager::getLayersList(layers);
        EXPECT_EQ(layers, (std::vector<iNodeLayer*>{a, b}));
        EXPECT_EQ(iLayersManager::getLayer("a"), a);
        EXPECT_EQ(a->getObjectsRoot()->getNumChildren(), 0u);
        EXPECT_EQ(a->getObjectsCount(), 0);
        EXPECT_EQ(iLayersManager::getCurrentLayer(), a);
        a->addObject(make("usable").get(), false);
        EXPECT_NE(a->findObjectByName("usable"), nullptr);
    }
    // The ghost layer of the damaged file is not written back.
    ASSERT_TRUE(manager->saveAs(files.path("after")));
    std::ifstream after(files.path("after"), std::ios::binary);
    std::string const saved((std::istreambuf_iterator<char>(after)), std::istreambuf_iterator<char>());
    EXPECT_EQ(saved.find("zz"), std::string::npos);
}

TEST_F(DocumentFile, VersionOneFileReadsSelectionBehindTheLayers)
{
    // Layer version 2: the leading record name is not trusted, the
    // object's own header names the class.
    std::string const bodyA = layerBody(kLayerA,
                                        {record("iWrongName", nodeObject(900020, "old", "a")),
                                         record("iNodeGroup", nodeObject(900021, "old2", "a"), {900020})},
                                        {}, {}, 2);
    std::string const bodyB = layerBody(kLayerB, {record("iNodeGroup", nodeObject(900022, "inB", "b"))}, {}, {}, 2);
    load(document({{"a", bodyA}, {"b", bodyB}}, "a", 1, ints({900021}) + ints({900022})));

    iNodeGroup* old = a->findObjectByName("old");
    iNodeGroup* old2 = a->findObjectByName("old2");
    ASSERT_TRUE(old && old2);
    EXPECT_STREQ(old->getClassName(), "iNodeGroup");
    EXPECT_EQ(old2->getParent(0), old);
    EXPECT_EQ(selectionOf(a), NodeList{old2});
    EXPECT_EQ(selectionOf(b), NodeList{b->findObjectByUniqueId(900022)});
    EXPECT_EQ(iLayersManager::getCurrentLayer(), a);
}

TEST_F(NodeLayer, SaveLoadSaveGivesIdenticalBytes)
{
    osg::ref_ptr<iTransformGroup> p = make<iTransformGroup>("P");
    p->setPosition(osg::Vec3f(4, 5, 6));
    osg::ref_ptr<iNodeGroup> c = make("C"), twice = make("twoParents"), q = make("Q"), hidden = make("hidden");
    a->addObject(p.get(), false);
    a->addChildObject(p.get(), c.get(), false);
    a->addChildObject(p.get(), twice.get(), false);
    a->addObject(q.get(), false);
    a->addChildObject(q.get(), twice.get(), false);
    a->addChildObject(q.get(), hidden.get(), false);
    iNodeGroup::setNodeFlag(hidden.get(), 0, false);
    a->addProxySelector(c.get(), q.get());
    a->addObjectSelection(hidden.get());
    a->addObjectSelection(p.get());
    b->addObject(make("inB").get(), false);
    iLayersManager::setCurrentLayer("a");

    std::string const first = save();
    EXPECT_EQ(replaceAll(first, "twoParents", "").size(), first.size() - 10); // written once
    load(first);
    EXPECT_EQ(hex(save()), hex(first));

    iNodeGroup* loaded = a->findObjectByName("twoParents");
    iNodeGroup* hid = a->findObjectByName("hidden");
    ASSERT_TRUE(loaded && hid);
    ASSERT_EQ(loaded->getNumParents(), 2u);
    EXPECT_EQ(loaded->getParent(0)->getName(), "P");
    EXPECT_EQ(loaded->getParent(1)->getName(), "Q");
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(hid, 0));
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(hid, 1));
    EXPECT_EQ(a->getProxySelector(a->findObjectByName("C")), a->findObjectByName("Q"));
    NodeList const selected = selectionOf(a);
    ASSERT_EQ(selected.size(), 2u);
    EXPECT_EQ(selected[0].get(), hid);
    EXPECT_EQ(selected[1]->getName(), "P");
    EXPECT_NE(b->findObjectByName("inB"), nullptr);
}

TEST_F(NodeLayer, NonPersistentObjectIsLeftOutAndItsChildrenLoadAsRoots)
{
    osg::ref_ptr<iNodeGroup> transient = make("transient"), kept = make("kept"), grandchild = make("grandchild");
    a->addObject(transient.get(), false);
    a->addChildObject(transient.get(), kept.get(), false);
    a->addChildObject(kept.get(), grandchild.get(), false);
    iNodeGroup::setNodeFlag(transient.get(), 6, false);
    // An object of another layer only passes through this one.
    osg::ref_ptr<iNodeGroup> visitor = make("visitor");
    visitor->setLayerId("b");
    a->addObject(visitor.get(), false);

    std::string const bytes = save();
    EXPECT_EQ(bytes.find("transient"), std::string::npos);
    EXPECT_EQ(bytes.find("visitor"), std::string::npos);
    load(bytes);
    EXPECT_EQ(a->findObjectByName("transient"), nullptr);
    iNodeGroup* k = a->findObjectByName("kept");
    iNodeGroup* g = a->findObjectByName("grandchild");
    ASSERT_TRUE(k && g);
    ASSERT_EQ(k->getNumParents(), 1u);
    EXPECT_EQ(k->getParent(0), a->getObjectsRoot());
    EXPECT_TRUE(iNodeGroup::isNodeFlagSet(k, 6));
    EXPECT_EQ(g->getParent(0), k);
}

TEST_F(GhostNode, RecordOfUnknownClassIsKeptByteForByteAndComesBack)
{
    osg::ref_ptr<iNodeGroup> holder = make("holder");
    osg::ref_ptr<iGhostProbe> probe = make<iGhostProbe>("probe");
    probe->value = 77;
    a->addObject(holder.get(), false);
    a->addChildObject(holder.get(), probe.get(), false);
    iLayersManager::setCurrentLayer("a");
    // Same length, so every size in the file stays right.
    std::string const renamed = replaceAll(save(), "iGhostProbe", "iGhostProbZ");

    load(renamed);
    EXPECT_EQ(a->findObjectByName("probe"), nullptr);
    NodeList ghosts = ghostsOf(a);
    ASSERT_EQ(ghosts.size(), 1u);
    auto* ghost = static_cast<iGhostNode*>(ghosts[0].get());
    EXPECT_EQ(ghost->getOriginalClassName(), "iGhostProbZ");
    EXPECT_GT(ghost->getDataCount(), 0);
    EXPECT_EQ(ghost->getParent(0), a->getObjectsRoot());
    std::string const resaved = save();
    EXPECT_EQ(hex(resaved), hex(renamed));

    load(replaceAll(resaved, "iGhostProbZ", "iGhostProbe"));
    auto* back = dynamic_cast<iGhostProbe*>(a->findObjectByName("probe"));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->value, 77);
    EXPECT_EQ(back->getParent(0)->getName(), "holder");
    EXPECT_TRUE(ghostsOf(a).empty());
}

TEST_F(GhostNode, RecordOfSizeZeroIsWrittenBackWithSizeZero)
{
    std::string const doc =
        document({{"a", layerBody(kLayerA, {str("iNodeGroup") + i32(0)})}, {"b", layerBody(kLayerB, {})}}, "a");
    load(doc);
    NodeList ghosts = ghostsOf(a);
    ASSERT_EQ(ghosts.size(), 1u);
    auto* ghost = static_cast<iGhostNode*>(ghosts[0].get());
    EXPECT_EQ(ghost->getDataCount(), 0);
    EXPECT_EQ(ghost->getOriginalClassName(), "iNodeGroup");
    EXPECT_EQ(hex(save()), hex(doc));
}

TEST_F(GhostLayer, UnknownLayerIsHiddenAndWrittenBackUnchanged)
{
    std::string const opaque = str("whatever") + i32(7) + std::string("\0\xff", 2);
    std::string const doc =
        document({{"a", layerBody(kLayerA, {})}, {"b", layerBody(kLayerB, {})}, {"zz", opaque}}, "a");
    for (int round = 0; round < 2; ++round) {
        load(doc);
        EXPECT_EQ(iLayersManager::getLayer("zz"), nullptr);
        std::vector<iNodeLayer*> layers;
        iLayersManager::getLayersList(layers);
        EXPECT_EQ(layers, (std::vector<iNodeLayer*>{a, b}));
        EXPECT_EQ(hex(save()), hex(doc));
    }

    // A current layer naming the ghost is refused, and signalled as null.
    events.take();
    load(document({{"a", layerBody(kLayerA, {})}, {"zz", "raw"}}, "zz"));
    EXPECT_EQ(iLayersManager::getCurrentLayer(), a);
    EXPECT_EQ(events.take(), (Log{"empty", "db:0", "file", "beginLoad", "layer:null", "endLoad"}));
}
