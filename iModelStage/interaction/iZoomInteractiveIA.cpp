#include <iModelStage/interaction/iZoomInteractiveIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iZoomInteractiveIA)

iZoomInteractiveIA::iZoomInteractiveIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate("Cliccare col pulsante sinistro del mouse e trascinare per lo zoom interattivo")),
            iIATypeVec3, osg::Vec3f());
}

iZoomInteractiveIA::~iZoomInteractiveIA() = default;

bool iZoomInteractiveIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    _lastY = p.getWindowPos().y();
    return true;
}

bool iZoomInteractiveIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    if (!getDragging())
        return true;
    double const y = p.getWindowPos().y();
    if (iViewer* viewer = getViewer())
        viewer->zoomFactor((_lastY - y) * 0.003);
    _lastY = y;
    return true;
}
