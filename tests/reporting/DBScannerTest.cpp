#include "model/DocumentBytes.h"

#include <iModelStage/model/iUndoRedoManager.h>
#include <iModelStage/reporting/iDBScanner.h>
#include <iModelStage/reporting/iDBScannerHandler.h>

#include <cstring>

// An object that refers to another by id, as links in a document do.
class iLinkProbe : public iNodeGroup {
    I_CLASS(iLinkProbe, iNodeGroup, 1)
    I_OSG_NODE(iLinkProbe)
public:
    iLinkProbe() = default;
    iLinkProbe(iLinkProbe const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iNodeGroup(other, copyop), target(other.target)
    {
    }
    void updateTargetUid(long oldUid, long newUid) override
    {
        if (target == oldUid)
            target = newUid;
    }
    void read(iInStream& stream, int) { target = stream.readInt(); }
    void write(iOutStream& stream) { stream.writeInt(static_cast<int>(target)); }
    long target = 0;

protected:
    ~iLinkProbe() override = default;
};

I_REGISTER_PERSISTENT_CLASS(iLinkProbe)

class DBScanner : public LayersTest {
protected:
    // Layer "a": P refers to Q, Q holds C, R refers to something outside;
    // layer "b": S. Saved, then a new document with one object of its own.
    void SetUp() override
    {
        LayersTest::SetUp();
        manager->setUndoRedoEnabled(false);
        osg::ref_ptr<iLinkProbe> p = make<iLinkProbe>("P");
        osg::ref_ptr<iNodeGroup> q = make("Q");
        osg::ref_ptr<iLinkProbe> r = make<iLinkProbe>("R");
        p->target = q->getUniqueId();
        r->target = 12345;
        a->addObject(p.get(), false);
        a->addObject(q.get(), false);
        a->addChildObject(q.get(), make("C").get(), false);
        a->addObject(r.get(), false);
        b->addObject(make("S").get(), false);
        for (iNodeGroup* object : {static_cast<iNodeGroup*>(p.get()), q.get(), static_cast<iNodeGroup*>(r.get())})
            oldIds.push_back(object->getUniqueId());
        file = files.path("source");
        ASSERT_TRUE(manager->saveAs(file));
        manager->emptyAllLayers();
        a->addObject(make("own").get(), false);
    }

    NodeList topObjects(iNodeLayer* layer)
    {
        NodeList tops;
        for (unsigned int i = 0; i < layer->getObjectsRoot()->getNumChildren(); ++i)
            tops.push_back(layer->getObjectsRoot()->getChild(i));
        return tops;
    }
    std::vector<std::string> names(iNodeLayer* layer)
    {
        std::vector<std::string> out;
        for (osg::ref_ptr<osg::Node> const& node : topObjects(layer))
            out.push_back(node->getName());
        return out;
    }

    iDBScannerHandler handler;
    std::string file;
    std::vector<long> oldIds;
};

TEST_F(DBScanner, MergesAnotherDocumentWithNewIdsAsOneUndoStep)
{
    iDBScanner scanner(&handler);
    scanner.addFilePath(file);
    scanner.addFilePath(file);
    EXPECT_EQ(scanner.getFilesPaths(), std::vector<std::string>{file});
    EXPECT_TRUE(scanner.isValidFile(file));
    EXPECT_FALSE(scanner.isValidFile(files.write("other", "not a document")));
    EXPECT_FALSE(scanner.isValidFile(""));

    // A filter that names no layer of the file takes nothing, but the file
    // is still walked to its end.
    osg::ref_ptr<iNodeLayer> found = new iNodeLayer;
    scanner.setLayerFilter({"zz"});
    scanner.collectObjects(found.get());
    EXPECT_EQ(found->getObjectsCount(), 0);
    scanner.setLayerFilter({});
    scanner.collectObjects(found.get());
    EXPECT_EQ(names(found.get()), (std::vector<std::string>{"P", "Q", "R", "S"}));

    manager->setUndoRedoEnabled(true);
    manager->storeForUndo("before");
    manager->cancelUndoStore();
    events.take();
    scanner.addObjectsToDB(topObjects(found.get()));
    EXPECT_TRUE(manager->dbChanged());
    EXPECT_EQ(names(a), (std::vector<std::string>{"own", "P", "Q", "R"}));
    EXPECT_EQ(names(b), std::vector<std::string>{"S"});

    auto* p = dynamic_cast<iLinkProbe*>(a->findObjectByName("P"));
    iNodeGroup* q = a->findObjectByName("Q");
    auto* r = dynamic_cast<iLinkProbe*>(a->findObjectByName("R"));
    ASSERT_TRUE(p && q && r);
    ASSERT_NE(a->findObjectByName("C"), nullptr);
    for (long old : oldIds)
        for (iNodeGroup* merged : {static_cast<iNodeGroup*>(p), q, static_cast<iNodeGroup*>(r)})
            EXPECT_NE(merged->getUniqueId(), old);
    EXPECT_EQ(p->target, q->getUniqueId());
    EXPECT_EQ(r->target, 12345);
    EXPECT_EQ(a->findObjectByUniqueId(q->getUniqueId()), q);

    // One step undoes the whole merge.
    ASSERT_TRUE(manager->undo(1, true));
    EXPECT_EQ(names(a), std::vector<std::string>{"own"});
    EXPECT_TRUE(names(b).empty());
    manager->getUndoRedoManager()->flush();
}

TEST_F(DBScanner, DamagedFilesFailWithTheirLiteralAndUnknownLayersAreSkipped)
{
    std::string good = readFile(file);
    // An entry of a layer this program has not registered is passed over
    // by its size.
    std::string const foreign
        = document({{"a", layerBody(kLayerA, {record("iNodeGroup", nodeObject(910001, "x", "a"))})},
                    {"zz", layerBody(kLayerB, {record("iNodeGroup", nodeObject(910002, "y", "zz"))})}},
                   "a");
    osg::ref_ptr<iNodeLayer> found = new iNodeLayer;
    iDBScanner scanner(&handler);
    scanner.collectObjectsFromFile(files.write("foreign", foreign), found.get());
    EXPECT_EQ(names(found.get()), std::vector<std::string>{"x"});

    auto failure = [&](std::string const& bytes) -> std::string {
        osg::ref_ptr<iNodeLayer> into = new iNodeLayer;
        try {
            scanner.collectObjectsFromFile(files.write("damaged", bytes), into.get());
        } catch (char const* what) {
            return what;
        } catch (std::exception const&) {
            return "stream";
        }
        return "";
    };
    std::string wrongTotal = good;
    wrongTotal[0] = static_cast<char>(wrongTotal[0] + 1);
    EXPECT_EQ(failure(wrongTotal), "Invalid file");
    std::string wrongId = good;
    wrongId[10] = 'X';
    EXPECT_EQ(failure(wrongId), "Invalid file");
    EXPECT_EQ(failure(good.substr(0, good.size() / 2)), "stream");
    EXPECT_EQ(failure(good), "");
}
