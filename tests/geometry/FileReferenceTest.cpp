#include "geometry/FileReferenceTestSupport.h"

#include <iModelStage/geometry/iFileReferenceGroupRenderer.h>
#include <iModelStage/geometry/iImportExportManager.h>

#include <osgDB/ReadFile>

#include <algorithm>

I_REGISTER_CLASS(iTestGeometricImporter)

int iTestGeometricImporter::alive = 0;
int iTestGeometricImporter::aliveAtImport = -1;
std::string iTestGeometricImporter::exported;

// Leaks of the scene graph's readers, not of this library, kept out of the
// leak checker's report: the native reader's options on a damaged file, the
// 3ds reader's context, and start-up state of the Inventor plug-in's
// library, which the format listing loads.
extern "C" char const* __lsan_default_suppressions()
{
    return "leak:ReaderWriterOSG2\nleak:osgdb_osg.so\nleak:osgdb_3ds.so\nleak:libCoin.so\n";
}

namespace {

void registerImporter()
{
    static bool const once = iImportExportManager::registerNewImportExportCallback("iTestGeometricImporter");
    (void)once;
}

// A document with the geometrics layer that file references load through.
class FileReference : public LayersTest {
protected:
    void SetUp() override
    {
        LayersTest::SetUp();
        registerImporter();
        geometrics = iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer");
        reference = make<iFileReferenceGroup>("reference");
        geometrics->addObject(reference.get(), true);
    }
    // What the renderer holds after a rebuild.
    osg::Group* rendered()
    {
        reference->forceGeometryUpdate();
        osg::Group* container = containerOf(reference.get());
        return container ? rendererAt<iFileReferenceGroupRenderer>(container, 0) : nullptr;
    }
    bool inTree(osg::Node* node)
    {
        NodeList objects;
        geometrics->getObjectsList(geometrics->getObjectsRoot(), objects, nullptr);
        return std::find(objects.begin(), objects.end(), node) != objects.end();
    }

    iNodeLayer* geometrics = nullptr;
    osg::ref_ptr<iFileReferenceGroup> reference;
};

} // namespace

TEST_F(FileReference, PlacesTheModelAndScalesIt)
{
    EXPECT_TRUE(reference->get_movetoorig());
    EXPECT_EQ(reference->get_scaleunit(), 1.0);
    reference->set_filename(writeTwoPointModel(files, "model.osgt"));
    ASSERT_TRUE(reference->isValid());
    iTransformGroup* wrapper = reference->getReferencedNode();
    EXPECT_EQ(wrapper->getPosition(), osg::Vec3f(-1, -1, -1));
    EXPECT_EQ(wrapper->getScale(), osg::Vec3f(1, 1, 1));
    EXPECT_EQ(wrapper->get_name(), "Geometria");
    EXPECT_FALSE(wrapper->isFlagSet(6));

    // The lower corner stays at the origin whatever the scale was before.
    reference->set_scaleunit(2.0);
    EXPECT_EQ(wrapper->getPosition(), osg::Vec3f(-2, -2, -2));
    EXPECT_EQ(wrapper->getScale(), osg::Vec3f(2, 2, 2));
    reference->set_scaleunit(0.5);
    EXPECT_EQ(wrapper->getPosition(), osg::Vec3f(-0.5f, -0.5f, -0.5f));
    reference->set_movetoorig(false);
    EXPECT_EQ(wrapper->getPosition(), osg::Vec3f(0, 0, 0));
    EXPECT_EQ(wrapper->getScale(), osg::Vec3f(0.5f, 0.5f, 0.5f));

    // A plain model is drawn by the renderer and is not in the tree.
    EXPECT_FALSE(inTree(wrapper));
    osg::Group* renderer = rendered();
    ASSERT_TRUE(renderer);
    ASSERT_EQ(renderer->getNumChildren(), 1u);
    EXPECT_EQ(renderer->getChild(0), wrapper);
    // Each rebuild starts again from nothing.
    renderer = rendered();
    EXPECT_EQ(renderer->getNumChildren(), 1u);
}

TEST_F(FileReference, GeometricImportLivesInTheTree)
{
    std::string const name = files.path("part.tgeo");
    reference->set_filename(name);
    EXPECT_EQ(iTestGeometricImporter::alive, 0);
    EXPECT_EQ(iTestGeometricImporter::aliveAtImport, 1);
    ASSERT_TRUE(reference->isValid());
    osg::ref_ptr<iTransformGroup> wrapper = reference->getReferencedNode();
    EXPECT_LT(reference->getChildIndex(wrapper.get()), reference->getNumChildren());
    EXPECT_TRUE(inTree(wrapper.get()));
    ASSERT_EQ(wrapper->getNumChildren(), 1u);
    EXPECT_EQ(dynamic_cast<iGeometricGroup*>(wrapper->getChild(0))->get_name(), name);
    osg::Group* renderer = rendered();
    ASSERT_TRUE(renderer);
    EXPECT_EQ(renderer->getNumChildren(), 0u);

    // The next load takes the old content out of the tree.
    reference->set_filename(writeTwoPointModel(files, "model.osgt"));
    EXPECT_FALSE(inTree(wrapper.get()));
    EXPECT_EQ(wrapper->getNumParents(), 0u);
    ASSERT_TRUE(reference->isValid());
    EXPECT_NE(reference->getReferencedNode(), wrapper.get());
}

TEST_F(FileReference, UnreadableFilesLeaveTheObjectInvalid)
{
    reference->set_filename(writeTwoPointModel(files, "model.osgt"));
    ASSERT_TRUE(reference->isValid());
    osg::observer_ptr<iTransformGroup> old = reference->getReferencedNode();

    std::string const missing = files.path("missing.osgt");
    reference->set_filename(missing);
    EXPECT_FALSE(reference->isValid());
    EXPECT_EQ(reference->get_filename(), missing);
    EXPECT_FALSE(old.valid());
    ASSERT_TRUE(rendered());
    EXPECT_EQ(rendered()->getNumChildren(), 0u);

    // Garbage under the extensions of installed readers.
    std::string garbage;
    for (int i = 0; i < 4096; ++i)
        garbage += char((i * 7919 + 13) % 251);
    for (char const* extension : {"osgt", "osgb", "obj", "3ds", "ive", "ply", "osg", "lwo"}) {
        std::string const path = files.write(std::string("damaged.") + extension, garbage);
        reference->set_filename(path);
        EXPECT_FALSE(reference->isValid()) << extension;
        EXPECT_EQ(reference->get_filename(), path);
    }
    // Binary STL takes any bytes as triangles: what counts is that the
    // garbage is read without harm.
    reference->set_filename(files.write("damaged.stl", garbage));
    reference->set_filename("");
    EXPECT_FALSE(reference->isValid());
}

TEST_F(FileReference, RecordKeepsTheNameAndLoadsOnlyAtLinkResolution)
{
    std::string const path = writeTwoPointModel(files, "model.osgt");
    osg::ref_ptr<iFileReferenceGroup> written = new iFileReferenceGroup;
    written->set_movetoorig(false);
    written->set_scaleunit(0.25);
    written->set_filename(path);
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    written->write(out);
    EXPECT_EQ(buffer.str(), str(path) + std::string(1, '\0') + f64(0.25));

    osg::ref_ptr<iFileReferenceGroup> back = new iFileReferenceGroup;
    geometrics->addObject(back.get(), true);
    iMemoryBuffer in(buffer.str());
    iInStream stream(&in);
    back->read(stream, 2);
    EXPECT_EQ(back->get_filename(), path);
    EXPECT_EQ(back->get_scaleunit(), 0.25);
    EXPECT_FALSE(back->isValid());
    back->resolveLinks();
    ASSERT_TRUE(back->isValid());
    EXPECT_EQ(back->getReferencedNode()->getPosition(), osg::Vec3f(0, 0, 0));
    EXPECT_EQ(back->getReferencedNode()->getScale(), osg::Vec3f(0.25f, 0.25f, 0.25f));
    // The blocked signals are open again.
    back->set_scaleunit(1.0);
    EXPECT_EQ(back->getReferencedNode()->getScale(), osg::Vec3f(1, 1, 1));

    // A first version has the name alone.
    osg::ref_ptr<iFileReferenceGroup> old = new iFileReferenceGroup;
    iMemoryBuffer first(str("old.obj"));
    iInStream firstStream(&first);
    old->read(firstStream, 1);
    EXPECT_EQ(firstStream.bytesLeft(), 0);
    EXPECT_EQ(old->get_filename(), "old.obj");
    EXPECT_TRUE(old->get_movetoorig());
    EXPECT_EQ(old->get_scaleunit(), 1.0);
}

TEST(ImportExportManager, CallbacksAnswerBeforeThePlugins)
{
    registerImporter();
    EXPECT_FALSE(iImportExportManager::registerNewImportExportCallback("iTestGeometricImporter"));
    EXPECT_TRUE(iImportExportManager::registerNewImportExportCallback("iNoSuchImporterClass"));
    EXPECT_FALSE(iImportExportManager::registerNewImportExportCallback("iNoSuchImporterClass"));

    osg::ref_ptr<osg::Node> imported = iImportExportManager::importFromFile("a.tgeo");
    EXPECT_TRUE(dynamic_cast<iGeometricGroup*>(imported.get()));
    EXPECT_EQ(iTestGeometricImporter::alive, 0);

    TempFiles files;
    osg::ref_ptr<osg::Node> model = twoPointModel();
    EXPECT_TRUE(iImportExportManager::exportToFile(model.get(), files.path("out.tgeo")));
    EXPECT_EQ(iTestGeometricImporter::exported, files.path("out.tgeo"));
    std::string const path = files.path("out.osgt");
    EXPECT_TRUE(iImportExportManager::exportToFile(model.get(), path));
    osg::ref_ptr<osg::Node> back = iImportExportManager::importFromFile(path);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->asGeode());
    EXPECT_FALSE(iImportExportManager::exportToFile(nullptr, files.path("none.osgt")));
}

TEST(ImportExportManager, ListsCallbacksThenEveryInstalledPlugin)
{
    registerImporter();
    std::vector<std::string> const entries = iImportExportManager::getHandledFileExtensions();
    ASSERT_FALSE(entries.empty());
    EXPECT_EQ(entries.front(), "Test geometry (*.tgeo)");
    auto has = [&entries](std::string const& extension) {
        return std::any_of(entries.begin(), entries.end(), [&](std::string const& entry) {
            return entry.size() > extension.size() &&
                   entry.compare(entry.size() - extension.size(), extension.size(), extension) == 0;
        });
    };
    for (char const* extension : {"(*.obj)", "(*.stl)", "(*.osgb)", "(*.osgt)", "(*.3ds)"})
        EXPECT_TRUE(has(extension)) << extension;
}
