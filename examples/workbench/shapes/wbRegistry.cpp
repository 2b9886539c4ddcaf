#include "shapes/wbRegistry.h"

#include "shapes/wbShapeDropCallback.h"

#include <iModelStage/editing/iGeometryHandlerManager.h>
#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/frame/iRoot.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/geometry/iImportExportManager.h>
#include <iModelStage/reporting/iExceptionManager.h>

#include <string>

char const* const wbChecksKey = "Geometrie";

namespace {

struct PropertyInfoRow {
    char const* className;
    char const* property;
    char const* label;
    char const* category;
    char const* hint;
};

PropertyInfoRow const PropertyInfo[] = {
    {"wbBox", "sizex", "Larghezza", "Dimensioni", "Dimensione lungo l'asse X locale"},
    {"wbBox", "sizey", "Profondita'", "Dimensioni", "Dimensione lungo l'asse Y locale"},
    {"wbBox", "sizez", "Altezza", "Dimensioni", "Dimensione lungo l'asse Z locale"},
    {"wbPolyline", "closed", "Chiusa", "Geometria", "Unisce l'ultimo vertice al primo"},
    {"wbCylinder", "radius", "Raggio", "Dimensioni", "Raggio della base"},
    {"wbCylinder", "height", "Altezza", "Dimensioni", "Altezza lungo l'asse Z locale"},
    {"wbCylinder", "segments", "Segmenti", "Rendering", "Numero di lati con cui si disegna la circonferenza"},
    {"wbLabel", "text", "Testo", "Generale", "Testo dell'etichetta"},
    {"wbLabel", "height", "Altezza caratteri", "Generale", "Altezza dei caratteri"},
    {"wbCreateBoxIA", "height", "Altezza", "Dimensioni", "Altezza usata se non se ne indica un'altra"},
    {"wbCreateCylinderIA", "height", "Altezza", "Dimensioni", "Altezza usata se non se ne indica un'altra"},
    {"wbCreateCylinderIA", "segments", "Segmenti", "Rendering", "Numero di lati con cui si disegna la circonferenza"},
    {"wbCreatePolylineIA", "closed", "Chiusa", "Geometria", "Unisce l'ultimo vertice al primo"},
    {"wbCreateLabelIA", "text", "Testo", "Generale", "Testo dell'etichetta"},
    {"wbCreateLabelIA", "height", "Altezza caratteri", "Generale", "Altezza dei caratteri"},
};

struct NamePair {
    char const* first;
    char const* second;
};

NamePair const Aliases[] = {
    {"wbBox", "Parallelepipedo"},
    {"wbPolyline", "Polilinea"},
    {"wbCylinder", "Cilindro"},
    {"wbLabel", "Etichetta"},
    {"wbCreateBoxIA", "Crea parallelepipedo"},
    {"wbCreatePolylineIA", "Crea polilinea"},
    {"wbCreateCylinderIA", "Crea cilindro"},
    {"wbCreateLabelIA", "Crea etichetta"},
    {"wbAxisTranslateIA", "Sposta lungo un asse"},
    {"wbZeroSizeCheck", "Dimensioni nulle"},
};

NamePair const Renderers[] = {
    {"wbBox", "wbBoxRenderer"},
    {"wbPolyline", "wbPolylineRenderer"},
    {"wbCylinder", "wbCylinderRenderer"},
    {"wbLabel", "wbLabelRenderer"},
    {"iLinearQuote", "wbLinearQuoteRenderer"},
    {"iPointQuote", "wbPointQuoteRenderer"},
    {"iLeader", "wbLeaderRenderer"},
};

char const* const Snaps[] = {"iPointSnap", "iCentroidSnap", "iNearestSnap", "iIntersectionSnap", "iGridSnap"};

void enterLabels()
{
    for (PropertyInfoRow const& row : PropertyInfo)
        iRoot::setPropertyInfo(row.className, row.property, iTranslate(row.label), iTranslate(row.category),
                               iTranslate(row.hint), "", "");
    for (NamePair const& alias : Aliases)
        iRoot::setClassAlias(alias.first, iTranslate(alias.second));
}

} // namespace

void wbRegisterClasses()
{
    static bool done = false;
    if (done)
        return;
    done = true;

    enterLabels();
    for (NamePair const& pair : Renderers)
        iGeometryRendererManager::registerGeometricRenderer(pair.first, pair.second, 1);
    for (char const* snap : Snaps)
        iGeometricsLayer::registerSnapClass(snap);
    iManipulatorsManager::registerObjectManipulator("wbBox", "wbBoxManipulator", "");
    iGeometryHandlerManager::registerGeometricHandler("wbPolyline", "wbPolylineHandler");
    iExceptionManager::registerExceptionHandler(wbChecksKey, "wbZeroSizeCheck");
    iImportExportManager::registerNewImportExportCallback("wbPointListImport");
    wbShapeDropCallback::registerFor("iViewer");
}
