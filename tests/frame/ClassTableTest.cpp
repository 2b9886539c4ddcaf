#include <iModelStage/frame/iRoot.h>

#include <gtest/gtest.h>

#include <string>

namespace {

struct ClassRow {
    char const* name;
    char const* parent;
    int version;
};

// Every class the library registers when it loads, with its parent and the
// version its objects are written with.
ClassRow const kLibraryClasses[] = {
    {"iBaseHandle", "iGeometricGroup", 1},
    {"iBaseManipulator", "iTransformGroup", 1},
    {"iBaseModel", "iRoot", 1},
    {"iBaseQuote", "iGeometricGroup", 2},
    {"iBaseSnap", "iRoot", 1},
    {"iBaseView", "iRoot", 1},
    {"iCentroidSnap", "iPointSnap", 1},
    {"iCreateLeaderIA", "iInteractor", 1},
    {"iCreateLinearQuoteIA", "iInteractor", 1},
    {"iCreatePointQuoteIA", "iInteractor", 1},
    {"iDBScannerHandler", "iRoot", 1},
    {"iDropCallback", "iRoot", 1},
    {"iEditingData", "iRoot", 1},
    {"iEditingManager", "iRoot", 1},
    {"iExceptionBlock", "iRoot", 1},
    {"iExceptionManagerInterface", "iRoot", 1},
    {"iExceptionManager", "iRoot", 1},
    {"iFileReferenceGroup", "iGeometricGroup", 2},
    {"iFileReferenceGroupRenderer", "iGeometryRenderer", 1},
    {"iCircleEntity", "iGeometricEntity", 1},
    {"iEntityGroup", "iRoot", 1},
    {"iGeometricEntity", "iRoot", 1},
    {"iLineEntity", "iGeometricEntity", 1},
    {"iPointEntity", "iGeometricEntity", 1},
    {"iPolygonEntity", "iGeometricEntity", 1},
    {"iQuadEntity", "iGeometricEntity", 1},
    {"iQuoteEntity", "iGeometricEntity", 1},
    {"iTextEntity", "iGeometricEntity", 1},
    {"iTriangleEntity", "iGeometricEntity", 1},
    {"iGeometricGroup", "iTransformGroup", 3},
    {"iGeometricGroupCallback", "iRoot", 1},
    {"iGeometricsLayer", "iNodeLayer", 1},
    {"iGeometryEvaluatorObject", "iRoot", 1},
    {"iGeometryHandler", "iRoot", 1},
    {"iGeometryHandlerManager", "iRoot", 1},
    {"iGeometryRenderer", "iRoot", 1},
    {"iGeometryRendererManager", "iRoot", 1},
    {"iGhostLayer", "iNodeLayer", 1},
    {"iGhostNode", "iNodeGroup", 1},
    {"iGridGroup", "iGeometricGroup", 1},
    {"iGridSnap", "iBaseSnap", 1},
    {"iGridsLayer", "iGeometricsLayer", 1},
    {"iImageGroup", "iNodeGroup", 1},
    {"iImagesLayer", "iNodeLayer", 1},
    {"iImmediateInteractor", "iInteractor", 1},
    {"iImportExportCallBack", "iRoot", 1},
    {"iImportExportManager", "iRoot", 1},
    {"iInputPlane", "iTransformGroup", 1},
    {"iInputPlanesLayer", "iNodeLayer", 1},
    {"iInteractor", "iRoot", 1},
    {"iIntersectionSnap", "iPointSnap", 1},
    {"iLayersManager", "iRoot", 1},
    {"iLeader", "iBaseQuote", 1},
    {"iLinearQuote", "iBaseQuote", 2},
    {"iManipulatorsManager", "iRoot", 1},
    {"iMaterialGroup", "iNodeGroup", 1},
    {"iMaterialsLayer", "iNodeLayer", 1},
    {"iMirrorIA", "iTransformIA", 1},
    {"iModelSearchOptimizer", "iRoot", 1},
    {"iNearestSnap", "iPointSnap", 1},
    {"iNodeGroup", "iRoot", 1},
    {"iNodeLayer", "iBaseModel", 4},
    {"iPanIA", "iStackedInteractor", 1},
    {"iPointHandle", "iBaseHandle", 1},
    {"iPointHandleRenderer", "iGeometryRenderer", 1},
    {"iPointQuote", "iBaseQuote", 1},
    {"iPointSnap", "iBaseSnap", 1},
    {"iRotateIA", "iTransformIA", 1},
    {"iRotateViewIA", "iStackedInteractor", 1},
    {"iScaleIA", "iTransformIA", 1},
    {"iSearcher", "iRoot", 1},
    {"iSelectIA", "iInteractor", 1},
    {"iSelectWindowIA", "iStackedInteractor", 1},
    {"iSettingNodeBase", "iNodeGroup", 1},
    {"iStackedInteractor", "iInteractor", 1},
    {"iTransformGroup", "iNodeGroup", 1},
    {"iTransformIA", "iInteractor", 1},
    {"iTranslate1DIA", "iTransformIA", 1},
    {"iTranslate2DIA", "iTransformIA", 1},
    {"iTranslateIA", "iTransformIA", 1},
    {"iUCVec3fRadToGrad", "iUnitConverterItem", 1},
    {"iUnitConverterItem", "iRoot", 1},
    {"iUnitConverterManager", "iRoot", 1},
    {"iColor4iModelStage_viewerbgview", "iSettingNodeBase", 1},
    {"iViewerManager", "iRoot", 1},
    {"iViewer", "iBaseView", 1},
    {"iViewerShotIA", "iInteractor", 1},
    {"iZoomAllIA", "iImmediateInteractor", 1},
    {"iZoomInIA", "iStackedInteractor", 1},
    {"iZoomInteractiveIA", "iStackedInteractor", 1},
    {"iZoomOutIA", "iStackedInteractor", 1},
    {"iZoomSelectedIA", "iImmediateInteractor", 1},
    {"iZoomWindowIA", "iStackedInteractor", 1},
};

} // namespace

TEST(ClassTable, EveryLibraryClassIsRegisteredWithItsParentAndVersion)
{
    EXPECT_EQ(sizeof(kLibraryClasses) / sizeof(kLibraryClasses[0]), 93u);
    for (ClassRow const& row : kLibraryClasses) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(iRoot::findClass(row.name));
        std::string parent;
        EXPECT_TRUE(iRoot::getParentClassName(row.name, parent));
        EXPECT_EQ(parent, row.parent);
        EXPECT_EQ(iRoot::getRegisteredClassVersion(row.name), row.version);
        EXPECT_TRUE(iRoot::isClassOf(row.name, "iRoot"));
    }
    EXPECT_EQ(iRoot::getRegisteredClassVersion("iNoSuchClass"), 0);
    EXPECT_EQ(iRoot::getRegisteredClassVersion(nullptr), 0);
}
