#include <iModelStage/frame/iStartUp.h>

#include <iModelStage/frame/iClassIcons.h>
#include <iModelStage/frame/iFontSubstitutes.h>
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iRoot.h>
#include <iModelStage/frame/iStreamHandler.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/frame/iUnitConverterManager.h>
#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>

#include <osg/DisplaySettings>

#include <atomic>
#include <string>

namespace {

void readColor(iInStream& stream, void* value)
{
    iColor4& color = *static_cast<iColor4*>(value);
    for (int i = 0; i < 4; ++i)
        color[i] = static_cast<float>(stream.readDouble());
}

void writeColor(iOutStream& stream, void* value)
{
    iColor4 const& color = *static_cast<iColor4 const*>(value);
    for (int i = 0; i < 4; ++i)
        stream.writeDouble(static_cast<double>(color[i]));
}

void readMapList(iInStream& stream, void* value)
{
    iMapList& list = *static_cast<iMapList*>(value);
    // Each entry takes at least a string length and an int.
    int count = stream.readCount(8);
    list.items.clear();
    for (int i = 0; i < count; ++i) {
        std::string key = stream.readString();
        list.items[key] = stream.readInt();
    }
    list.current = stream.readInt();
}

void writeMapList(iOutStream& stream, void* value)
{
    iMapList const& list = *static_cast<iMapList const*>(value);
    stream.writeInt(static_cast<int>(list.items.size()));
    for (auto const& entry : list.items) {
        stream.writeString(entry.first);
        stream.writeInt(entry.second);
    }
    stream.writeInt(list.current);
}

struct PropertyInfoRow {
    char const* className;
    char const* property;
    char const* label;
    char const* category;
    char const* hint;
};

// Rows 28 and 29 are crossed on purpose: "orizzontali" stands at clrvq and
// "verticali" at clrhq. Row 21 has two blanks before the bracket.
PropertyInfoRow const kPropertyInfo[] = {
    {"iGeometricGroup", "visible", "Visibile", "Stato", "Visualizza/Nasconde l'oggetto"},
    {"iGeometricGroup", "selectable", "Selezionabile", "Stato", "Rende selezionabile/non selezionabile l'oggetto"},
    {"iGeometricGroup", "deletable", "Eliminabile", "Stato", ""},
    {"iGeometricGroup", "renderingtype", "Visualizzazione", "Rendering", ""},
    {"iGeometricGroup", "rendererstate", "Visualizza", "Visualizzazione", ""},
    {"iGeometricGroup", "clr", "Colore", "Rendering", "Colore dell'oggetto"},
    {"iGeometricGroup", "usecolor", "Usa colore", "Rendering", "Usa colore dell'oggetto"},
    {"iGeometricGroup", "usematerial", "Usa shader", "Rendering", "Usa shader"},
    {"iGeometricGroup", "material", "Shader", "Rendering", "Shader da usare per il rendering"},
    {"iTransformGroup", "position", "Posizione", "Trasformazione", ""},
    {"iTransformGroup", "rotation", "Rotazione", "Trasformazione", ""},
    {"iTransformGroup", "scale", "Scala", "Trasformazione", ""},
    {"iFileReferenceGroup", "filename", "File", "Generale", "Percorso del file da importare"},
    {"iFileReferenceGroup", "movetoorig", "Sposta all'origine", "Generale",
     "Sposta la geometria all'origine del sistema di riferimento locale"},
    {"iFileReferenceGroup", "scaleunit", "Unita' di misura nativa", "Generale",
     "Unita' di misura nativa della geometria importata"},
    {"iGridGroup", "planevisible", "Visualizza sfondo", "Griglia", "Visualizza il piano della griglia"},
    {"iGridGroup", "gridvisible", "Visualizza guide", "Griglia", "Visualizza le linee guida della griglia"},
    {"iGridGroup", "axisvisible", "Visualizza assi", "Griglia", "Visualizza gli assi centrali della griglia"},
    {"iGridGroup", "bg", "Colore sfondo", "Griglia", "Imposta il colore dello sfondo"},
    {"iGridGroup", "hstep", "Passo orizzontale [m]", "Griglia", "Imposta il passo orizzontale"},
    {"iGridGroup", "vstep", "Passo verticale  [m]", "Griglia", "Imposta il passo verticale"},
    {"iGridGroup", "nhs", "Suddivisioni orizzontali", "Griglia", "Imposta il numero di suddivisioni orizzontali"},
    {"iGridGroup", "nvs", "Suddivisioni verticali", "Griglia", "Imposta il numero di suddivisioni verticali"},
    {"iGridGroup", "clrh", "Colore Guide orizzontali", "Griglia", "Imposta il colore delle guide orizzontali"},
    {"iGridGroup", "clrv", "Colore Guide verticali", "Griglia", "Imposta il colore delle guide verticali"},
    {"iGridGroup", "nhq", "Suddivisioni quadranti orizzontali", "Quadranti",
     "Imposta il numero di suddivisioni dei quadranti orizzontali"},
    {"iGridGroup", "vvq", "Suddivisioni quadranti verticali", "Quadranti",
     "Imposta il numero di suddivisioni dei quadranti verticali"},
    {"iGridGroup", "clrvq", "Colore quadranti orizzontali", "Quadranti", "Imposta il colore dei quadranti orizzontali"},
    {"iGridGroup", "clrhq", "Colore quadranti verticali", "Quadranti", "Imposta il colore dei quadranti verticali"},
};

struct AliasRow {
    char const* className;
    char const* label;
};

// Entered after the renderers, in this order; the first two rows of the
// alias table go in with the icons before them.
AliasRow const kLaterAliases[] = {
    {"iGeometricsLayer", "Geometrie"},
    {"iGridsLayer", "Griglie"},
    {"iImagesLayer", "Immagini"},
    {"iInputPlanesLayer", "Piani di lavoro"},
    {"iInputPlane", "Piano di lavoro"},
    {"iGeometricGroup", "Geometria"},
    {"iSelectIA", "Selezione"},
    {"iSelectWindowIA", "Selezione finestra"},
    {"iRotateViewIA", "Rotazione vista"},
    {"iZoomAllIA", "Zoom tutto"},
    {"iZoomInIA", "Zoom in"},
    {"iZoomOutIA", "Zoom out"},
    {"iZoomInteractiveIA", "Zoom interattivo"},
    {"iZoomSelectedIA", "Zoom selezione"},
    {"iZoomWindowIA", "Zoom finestra"},
    {"iPanIA", "Pan"},
    {"iGridSnap", "Snap griglia"},
    {"iPointSnap", "Snap punto"},
    {"iNearestSnap", "Snap vicino"},
    {"iIntersectionSnap", "Snap intersezione"},
    {"iCentroidSnap", "Snap centroide"},
};

void enterPropertyInfo(PropertyInfoRow const& row)
{
    std::string hint = *row.hint ? std::string(iTranslate(row.hint)) : std::string();
    iRoot::setPropertyInfo(row.className, row.property, iTranslate(row.label), iTranslate(row.category), hint, "",
                           "");
}

void enterAlias(char const* className, char const* label)
{
    iRoot::setClassAlias(className, iTranslate(label));
}

void enterPropertyInfoRows(int first, int last)
{
    for (int row = first; row <= last; ++row)
        enterPropertyInfo(kPropertyInfo[row - 1]);
}

// Runs the routine once the library is loaded. This file is linked last, so
// every static registrar of the library has run before it.
struct StartUp {
    StartUp() { iModelStage_startUp(); }
} const startUp;

} // namespace

void iModelStage_initDefaultTypesIOHandler()
{
    static std::atomic<bool> done{false};
    if (done.exchange(true))
        return;
    iStreamHandler::registerNewIOHandlers("iMapList", &readMapList, &writeMapList);
    iStreamHandler::registerNewIOHandlers("iColor4", &readColor, &writeColor);
}

void iModelStage_startUp()
{
    static std::atomic<bool> done{false};
    if (done.exchange(true))
        return;

    iBindLocale("iKit");
    iModelStage_initDefaultTypesIOHandler();
    iUnitConverterManager::registerConverterItem("iUCVec3fRadToGrad");
    osg::DisplaySettings::instance()->setMinimumNumStencilBits(8);
    enterPropertyInfoRows(1, 12);

    iAddClassIcon("iGridGroup", ":/images/grid.png");
    enterAlias("iGridGroup", "Griglia");
    iAddClassIcon("iFileReferenceGroup", ":/images/file.png");
    enterAlias("iFileReferenceGroup", "Riferimento a file");
    iAddClassIcon("iTransformGroup", ":/images/transf.png");
    enterPropertyInfoRows(13, 29);

    iGeometryRendererManager::registerGeometricRenderer("iFileReferenceGroup", "iFileReferenceGroupRenderer", 1);
    iGeometryRendererManager::registerGeometricRenderer("iPointHandle", "iPointHandleRenderer", 1);

    for (AliasRow const& row : kLaterAliases) {
        enterAlias(row.className, row.label);
        if (std::string(row.className) == "iInputPlane")
            iAddClassIcon("iInputPlane", ":/images/iplane.png");
    }

    // Labels and axes name a font that free systems lack.
    iFontSubstitutes::install();
}
