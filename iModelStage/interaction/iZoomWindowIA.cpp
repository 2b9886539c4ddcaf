#include <iModelStage/interaction/iZoomWindowIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iZoomWindowIA)

QString iZoomWindowIA::prompt()
{
    return QString::fromUtf8(
        iTranslate("Cliccare col pulsante sinistro del mouse e trascinare per definire la finestra di zoom"));
}

iZoomWindowIA::iZoomWindowIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(prompt(), iIATypeVec3, osg::Vec3f());
}

iZoomWindowIA::~iZoomWindowIA() = default;

bool iZoomWindowIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    _band.show(getViewer(), p.getWindowPos(), osg::Vec4f(0.0f, 0.0f, 0.9f, 0.3f));
    return true;
}

bool iZoomWindowIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    _band.span(getStartPos().getWindowPos(), p.getWindowPos());
    return true;
}

bool iZoomWindowIA::release(iIAPoint const& p)
{
    iStackedInteractor::release(p);
    if (iViewer* viewer = getViewer()) {
        osg::Vec3f const& from = getStartPos().getWindowPos();
        osg::Vec3f const& to = p.getWindowPos();
        viewer->zoomWindow(static_cast<int>(from.x()), static_cast<int>(from.y()), static_cast<int>(to.x()),
                           static_cast<int>(to.y()));
    }
    _band.hide(getViewer());
    return true;
}

void iZoomWindowIA::cancel()
{
    _band.hide(getViewer());
    iStackedInteractor::cancel();
}
