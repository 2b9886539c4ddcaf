#ifndef IMODELSTAGE_TESTS_DIMENSIONING_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_DIMENSIONING_TEST_SUPPORT_H

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iIAPoint.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iUndoRedoManager.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

// A point as the event handler gives it with no viewer: local and global
// positions agree.
inline iIAPoint pointAt(float x, float y, float z = 0.0f)
{
    osg::Vec3f const p(x, y, z);
    return iIAPoint(osg::Vec3f(), osg::Vec3f(x, y, 0.0f), p, p);
}

// A document with a geometrics layer, its undo snapshots in a private
// temporary directory.
class DocumentTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (char const* previous = std::getenv("TEMP"))
            oldTemp = previous, hadTemp = true;
        std::string pattern = testing::TempDir() + "iDimensioningXXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        setenv("TEMP", dir.c_str(), 1);
        document = std::make_unique<iLayersManager>();
        document->freeLayerObjects();
        layer = dynamic_cast<iGeometricsLayer*>(
            iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer"));
        ASSERT_NE(layer, nullptr);
    }
    void TearDown() override
    {
        document->freeLayerObjects();
        document.reset();
        std::filesystem::remove_all(dir);
        if (hadTemp)
            setenv("TEMP", oldTemp.c_str(), 1);
        else
            unsetenv("TEMP");
    }
    unsigned int objectCount() const { return layer->getObjectsRoot()->getNumChildren(); }
    osg::Node* firstObject() const { return objectCount() ? layer->getObjectsRoot()->getChild(0) : nullptr; }
    std::size_t undoSteps() const { return document->getUndoRedoManager()->getUndoList().size(); }

    std::string dir;
    std::string oldTemp;
    bool hadTemp = false;
    std::unique_ptr<iLayersManager> document;
    iGeometricsLayer* layer = nullptr;
};

#endif
