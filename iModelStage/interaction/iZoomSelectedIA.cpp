#include <iModelStage/interaction/iZoomSelectedIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iZoomSelectedIA)

iZoomSelectedIA::iZoomSelectedIA()
{
    setAcceptSnap(false);
    addStep(QString::fromUtf8(iTranslate("Zoom selezione eseguito")), iIATypeVec3, osg::Vec3f());
}

iZoomSelectedIA::~iZoomSelectedIA() = default;

void iZoomSelectedIA::end()
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    if (layer && viewer) {
        NodeList selection;
        layer->getSelectionList(selection, nullptr);
        if (!selection.empty())
            viewer->zoomBounds(selection);
    }
    iImmediateInteractor::end();
}
