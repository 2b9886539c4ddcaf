#include <iModelStage/interaction/iZoomAllIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iZoomAllIA)

iZoomAllIA::iZoomAllIA()
{
    setAcceptSnap(false);
    addStep(QString::fromUtf8(iTranslate("Zoom tutto eseguito")), iIATypeVec3, osg::Vec3f());
}

iZoomAllIA::~iZoomAllIA() = default;

void iZoomAllIA::end()
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    if (layer && viewer) {
        NodeList objects;
        layer->getObjectsList(layer->getRoot(), objects, nullptr);
        layer->getObjectsList(layer->getInteractiveLayer(), objects, nullptr);
        viewer->zoomBounds(objects);
    }
    iImmediateInteractor::end();
}
