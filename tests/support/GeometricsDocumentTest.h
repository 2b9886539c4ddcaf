#ifndef IMODELSTAGE_TESTS_SUPPORT_GEOMETRICS_DOCUMENT_TEST_H
#define IMODELSTAGE_TESTS_SUPPORT_GEOMETRICS_DOCUMENT_TEST_H

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iLayersManager.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

// A document with a geometrics layer, for tests of tools that change it:
// its undo snapshots go to a private temporary directory, and $TEMP is
// put back afterwards.
class GeometricsDocumentTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (char const* previous = std::getenv("TEMP"))
            oldTemp = previous, hadTemp = true;
        std::string pattern = testing::TempDir() + "iToolDocumentXXXXXX";
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

    std::string dir;
    std::string oldTemp;
    bool hadTemp = false;
    std::unique_ptr<iLayersManager> document;
    iGeometricsLayer* layer = nullptr;
};

#endif
