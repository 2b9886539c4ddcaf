#include "geometry/FileReferenceTestSupport.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iGridsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/geometry/iInputPlanesLayer.h>

namespace {

template <class T>
T* firstIn(iNodeLayer* layer)
{
    NodeList objects;
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    for (osg::ref_ptr<osg::Node> const& node : objects)
        if (T* typed = dynamic_cast<T*>(node.get()))
            return typed;
    return nullptr;
}

// A document with a grid, an input plane and two file references, one to a
// plain model and one that a callback answers with a geometric group.
class GeometryDocument : public LayersTest {
protected:
    void SetUp() override
    {
        LayersTest::SetUp();
        iImportExportManager::registerNewImportExportCallback("iTestGeometricImporter");
        geometrics = iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer");
        grids = iLayersManager::registerNodeLayerClass("iGridsLayer", "grids");
        planes = iLayersManager::registerNodeLayerClass("iInputPlanesLayer", "planes");
    }
    // The layer's next frame.
    void frame(iNodeLayer* layer) { layer->beginFrame(); }

    iNodeLayer* geometrics = nullptr;
    iNodeLayer* grids = nullptr;
    iNodeLayer* planes = nullptr;
};

} // namespace

TEST_F(GeometryDocument, GridsLayerMakesGridsAndRebuildsThemOncePerFrame)
{
    ASSERT_TRUE(dynamic_cast<iGridsLayer*>(grids));
    osg::ref_ptr<osg::Node> made = grids->newInstantiableObject("iGridGroup");
    EXPECT_TRUE(dynamic_cast<iGridGroup*>(made.get()));

    osg::ref_ptr<iGridGroup> grid = make<iGridGroup>("grid");
    grids->addObject(grid.get(), true);
    frame(grids);
    ASSERT_EQ(grid->getNumChildren(), 3u);
    osg::ref_ptr<osg::Node> lines = grid->getChild(1);
    grid->set_nhs(5);
    grid->set_nvs(5);
    EXPECT_EQ(grid->getChild(1), lines.get());
    frame(grids);
    EXPECT_NE(grid->getChild(1), lines.get());
    EXPECT_EQ(static_cast<osg::Geometry*>(grid->getChild(1)->asGeode()->getDrawable(0))
                  ->getVertexArray()
                  ->getNumElements(),
              40u);
    lines = grid->getChild(1);
    frame(grids);
    EXPECT_EQ(grid->getChild(1), lines.get());
}

TEST_F(GeometryDocument, SurvivesSaveAndLoad)
{
    osg::ref_ptr<iGridGroup> grid = make<iGridGroup>("grid");
    grid->set_hstep(2.0);
    grid->set_nvs(4);
    grid->set_axisvisible(false);
    grids->addObject(grid.get(), true);

    osg::ref_ptr<iInputPlane> plane = make<iInputPlane>("plane");
    plane->setMatrix(osg::Matrixd::rotate(osg::PI_2, osg::X_AXIS) * osg::Matrixd::translate(0, 0, 3));
    planes->addObject(plane.get(), true);

    std::string const model = writeTwoPointModel(files, "model.osgt");
    osg::ref_ptr<iFileReferenceGroup> reference = make<iFileReferenceGroup>("reference");
    geometrics->addObject(reference.get(), true);
    reference->set_scaleunit(2.0);
    reference->set_filename(model);
    ASSERT_TRUE(reference->isValid());

    osg::ref_ptr<iFileReferenceGroup> part = make<iFileReferenceGroup>("part");
    geometrics->addObject(part.get(), true);
    std::string const partName = files.path("part.tgeo");
    part->set_filename(partName);
    ASSERT_TRUE(part->isValid());

    std::string const bytes = save();
    osg::Vec3f const normal = plane->getNormal();
    grid = nullptr;
    plane = nullptr;
    reference = nullptr;
    part = nullptr;
    load(bytes);

    iGridGroup* loadedGrid = firstIn<iGridGroup>(grids);
    ASSERT_TRUE(loadedGrid);
    EXPECT_EQ(loadedGrid->get_name(), "grid");
    EXPECT_EQ(loadedGrid->get_hstep(), 2.0);
    EXPECT_EQ(loadedGrid->get_nvs(), 4);
    EXPECT_FALSE(loadedGrid->get_axisvisible());
    EXPECT_FALSE(loadedGrid->isFlagSet(1));
    // Rebuilt once more at the next frame, then left alone.
    ASSERT_EQ(loadedGrid->getNumChildren(), 3u);
    osg::ref_ptr<osg::Node> lines = loadedGrid->getChild(1);
    frame(grids);
    EXPECT_NE(loadedGrid->getChild(1), lines.get());
    EXPECT_EQ(loadedGrid->getChild(2)->getNodeMask(), 0u);
    lines = loadedGrid->getChild(1);
    frame(grids);
    EXPECT_EQ(loadedGrid->getChild(1), lines.get());

    iInputPlane* loadedPlane = firstIn<iInputPlane>(planes);
    ASSERT_TRUE(loadedPlane);
    EXPECT_NEAR((loadedPlane->getNormal() - normal).length(), 0.0f, 1e-6f);
    EXPECT_NEAR(loadedPlane->getPosition().z(), 3.0f, 1e-6f);

    // Each reference loaded its file again when the links were resolved,
    // and the wrappers were not written: one geometric group, in its new
    // wrapper, is all the tree holds of the part.
    NodeList references;
    std::set<std::string> referenceClass{"iFileReferenceGroup"};
    geometrics->getObjectsList(geometrics->getObjectsRoot(), references, &referenceClass);
    ASSERT_EQ(references.size(), 2u);
    for (osg::ref_ptr<osg::Node> const& node : references) {
        auto* loaded = static_cast<iFileReferenceGroup*>(node.get());
        ASSERT_TRUE(loaded->isValid()) << loaded->get_name();
        if (loaded->get_name() == "reference") {
            EXPECT_EQ(loaded->get_filename(), model);
            EXPECT_EQ(loaded->getReferencedNode()->getPosition(), osg::Vec3f(-2, -2, -2));
            EXPECT_EQ(loaded->getReferencedNode()->getScale(), osg::Vec3f(2, 2, 2));
        } else {
            EXPECT_EQ(loaded->get_filename(), partName);
            EXPECT_EQ(loaded->getReferencedNode()->getParent(0), loaded);
        }
    }
    NodeList groups;
    std::set<std::string> groupClass{"iGeometricGroup"};
    geometrics->getObjectsList(geometrics->getObjectsRoot(), groups, &groupClass);
    EXPECT_EQ(groups.size(), 1u);
}
