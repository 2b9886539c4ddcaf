#include "app/wbApplication.h"
#include "app/wbDocument.h"
#include "app/wbDocumentFile.h"
#include "app/wbFileMenu.h"
#include "app/wbObjectTree.h"

#include <iModelStage/dimensioning/iLinearQuote.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iTransformGroup.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace {

// Little-endian fields of the document container, written by hand.
struct Bytes {
    std::string data;
    Bytes& i32(std::int32_t v)
    {
        for (int k = 0; k < 4; ++k)
            data.push_back(static_cast<char>((static_cast<std::uint32_t>(v) >> (8 * k)) & 0xff));
        return *this;
    }
    Bytes& str(std::string const& s)
    {
        i32(static_cast<std::int32_t>(s.size()));
        data += s;
        return *this;
    }
};

std::string const documentId = "iModelStage::iLayersManager::id::240608";

// A document with one layer entry of the given body; total as the file
// should say unless given.
std::string container(std::string const& body, int total = -1, int version = 2)
{
    Bytes layers;
    layers.i32(version).i32(1).i32(1).str("iGeometricsLayer").i32(static_cast<int>(body.size()));
    layers.data += body;
    Bytes head;
    int const size = 4 + 4 + static_cast<int>(documentId.size()) + static_cast<int>(layers.data.size());
    head.i32(total < 0 ? size : total).str(documentId);
    return head.data + layers.data + Bytes().str("iGeometricsLayer").data;
}

class WorkbenchDocumentFile : public testing::Test {
protected:
    QString write(char const* name, std::string const& bytes)
    {
        QString const path = dir.filePath(name);
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        return path;
    }
    QTemporaryDir dir;
};

TEST_F(WorkbenchDocumentFile, WalksTheContainerAndNamesWhatIsWrong)
{
    std::string const good = container("abcdef");
    EXPECT_EQ(wbDocumentFile::check(write("good", good)), wbDocumentFile::Fine);
    EXPECT_EQ(wbDocumentFile::check(write("v1", container("abc", -1, 1))), wbDocumentFile::Fine);

    EXPECT_EQ(wbDocumentFile::check(dir.filePath("none")), wbDocumentFile::Missing);
    EXPECT_EQ(wbDocumentFile::check(dir.path()), wbDocumentFile::Unreadable);
    EXPECT_EQ(wbDocumentFile::check(write("tiny", "ab")), wbDocumentFile::NotADocument);
    EXPECT_EQ(wbDocumentFile::check(write("text", "just some words that are no document")),
              wbDocumentFile::NotADocument);
    std::string otherId = good;
    otherId[8] = 'X';
    EXPECT_EQ(wbDocumentFile::check(write("otherId", otherId)), wbDocumentFile::NotADocument);

    // Cut inside the layer body, inside the closing name, or saying a
    // wrong total: each would empty or destroy the document on loading.
    EXPECT_EQ(wbDocumentFile::check(write("cutBody", good.substr(0, good.size() - 22))), wbDocumentFile::Damaged);
    EXPECT_EQ(wbDocumentFile::check(write("cutName", good.substr(0, good.size() - 3))), wbDocumentFile::Damaged);
    EXPECT_EQ(wbDocumentFile::check(write("total", container("abcdef", 70))), wbDocumentFile::Damaged);
    EXPECT_EQ(wbDocumentFile::check(write("version", container("abc", -1, 7))), wbDocumentFile::Damaged);
    std::string hugeEntry = good;
    std::memcpy(&hugeEntry[4 + 4 + documentId.size() + 12 + 4 + 16], "\xff\xff\xff\x7f", 4);
    EXPECT_EQ(wbDocumentFile::check(write("huge", hugeEntry)), wbDocumentFile::Damaged);

    for (auto problem : {wbDocumentFile::Missing, wbDocumentFile::Unreadable, wbDocumentFile::NotADocument,
                         wbDocumentFile::Damaged})
        EXPECT_TRUE(wbDocumentFile::describe(problem, "/x/drawing.ims").contains("drawing.ims"));
    EXPECT_TRUE(wbDocumentFile::describe(wbDocumentFile::Fine, "a").isEmpty());
}

// A document with objects, its undo snapshots in a private directory.
class WorkbenchDocument : public testing::Test {
protected:
    void SetUp() override
    {
        wbApplication::initialise();
        ASSERT_TRUE(dir.isValid());
        qputenv("TEMP", QFile::encodeName(dir.path()));
        document = std::make_unique<wbDocument>();
        ASSERT_NE(wbDocument::geometrics(), nullptr);
    }
    void TearDown() override
    {
        document.reset();
        qunsetenv("TEMP");
    }
    iTransformGroup* add(char const* name, osg::Vec3f const& at)
    {
        osg::ref_ptr<iTransformGroup> object = new iTransformGroup;
        object->set_name(name);
        object->setPosition(at);
        document->manager()->storeForUndo(std::string("Add ") + name);
        wbDocument::geometrics()->addObject(object.get(), true);
        return object.get();
    }
    iTransformGroup* find(char const* name)
    {
        iGeometricsLayer* layer = wbDocument::geometrics();
        return layer ? dynamic_cast<iTransformGroup*>(layer->findObjectByName(name)) : nullptr;
    }
    QString path(char const* name) const { return dir.filePath(name); }

    QTemporaryDir dir;
    std::unique_ptr<wbDocument> document;
};

TEST_F(WorkbenchDocument, RefusedFilesLeaveTheOpenDocumentAsItWas)
{
    add("kept", {1, 2, 3});
    ASSERT_TRUE(document->saveAs(path("drawing.ims")).isEmpty());
    add("unsaved", {4, 5, 6});

    QFile::copy(path("drawing.ims"), path("cut.ims"));
    QFile cut(path("cut.ims"));
    ASSERT_TRUE(cut.resize(cut.size() - 10));
    QFile text(path("notes.ims"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("these are notes, not a drawing");
    text.close();

    for (char const* name : {"cut.ims", "notes.ims", "missing.ims"}) {
        QString const error = document->open(path(name));
        EXPECT_TRUE(error.contains(name)) << error.toStdString();
        ASSERT_NE(find("kept"), nullptr) << name;
        ASSERT_NE(find("unsaved"), nullptr) << name;
        EXPECT_EQ(find("unsaved")->getPosition(), osg::Vec3f(4, 5, 6));
        EXPECT_EQ(document->fileName(), path("drawing.ims"));
        EXPECT_TRUE(document->isModified());
    }

    // The good file still opens.
    EXPECT_TRUE(document->open(path("drawing.ims")).isEmpty());
    EXPECT_NE(find("kept"), nullptr);
    EXPECT_EQ(find("unsaved"), nullptr);
    EXPECT_FALSE(document->isModified());
}

TEST_F(WorkbenchDocument, AnUnwritablePlaceIsReportedAndTheDocumentStays)
{
    add("kept", {1, 0, 0});
    QString const nowhere = path("no/such/folder/drawing.ims");
    QString const error = document->saveAs(nowhere);
    EXPECT_TRUE(error.contains(nowhere)) << error.toStdString();
    EXPECT_NE(find("kept"), nullptr);
    EXPECT_FALSE(QFile::exists(nowhere));

    EXPECT_FALSE(document->save().isEmpty()) << "no file name yet";
    EXPECT_TRUE(document->saveAs(path("ok.ims")).isEmpty());
    EXPECT_TRUE(document->save().isEmpty());
}

TEST_F(WorkbenchDocument, MergeBringsAnotherDocumentsObjectsAsOneUndoStep)
{
    add("theirs", {7, 0, 0});
    ASSERT_TRUE(document->saveAs(path("other.ims")).isEmpty());
    document->newDocument();
    EXPECT_EQ(find("theirs"), nullptr);
    add("mine", {0, 1, 0});

    EXPECT_TRUE(document->merge({path("other.ims")}).isEmpty());
    ASSERT_NE(find("theirs"), nullptr);
    EXPECT_EQ(find("theirs")->getPosition(), osg::Vec3f(7, 0, 0));
    EXPECT_NE(find("mine"), nullptr);

    EXPECT_TRUE(document->manager()->undo(1, true));
    EXPECT_EQ(find("theirs"), nullptr);
    EXPECT_NE(find("mine"), nullptr);

    EXPECT_FALSE(document->merge({path("missing.ims")}).isEmpty());
    EXPECT_FALSE(document->importModel(path("missing.obj")).isEmpty());
    QFile junk(path("junk.zzz"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("junk");
    junk.close();
    EXPECT_FALSE(document->importModel(path("junk.zzz")).isEmpty());
    EXPECT_NE(find("mine"), nullptr);
}

TEST_F(WorkbenchDocument, SampleDimensionsLieAlongTheirEdgesAndTheTreeNamesEveryClass)
{
    ASSERT_TRUE(document->open(wbFileMenu::samplePath()).isEmpty());
    auto* width = dynamic_cast<iLinearQuote*>(find("width"));
    auto* depth = dynamic_cast<iLinearQuote*>(find("depth"));
    ASSERT_NE(width, nullptr);
    ASSERT_NE(depth, nullptr);
    // Each stands in the plan, its own x along the edge it measures.
    osg::Matrixd const w = width->getMatrix();
    osg::Matrixd const d = depth->getMatrix();
    EXPECT_NEAR(w(0, 0), 1.0, 1e-6);
    EXPECT_NEAR(d(0, 1), 1.0, 1e-6);
    EXPECT_EQ(width->getNormal(), osg::Vec3f(0, 0, 1));
    EXPECT_EQ(depth->getEndPoint() - depth->getStartPoint(), osg::Vec3f(0, 5, 0));
    // Read in the plan: a visible size, outside the plinth it measures.
    EXPECT_GE(width->get_charsize(), 0.3);
    EXPECT_LT(width->get_offset() * w(1, 1), 0.0);

    EXPECT_EQ(wbObjectTree::classLabel(*width), "Quota lineare");
    EXPECT_EQ(wbObjectTree::classLabel(*find("plinth")), "Parallelepipedo");
    osg::ref_ptr<iTransformGroup> plain = new iTransformGroup;
    EXPECT_EQ(wbObjectTree::classLabel(*plain), "TransformGroup");
}

} // namespace
