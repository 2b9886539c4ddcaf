#include <iModelStage/interaction/iPanIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iPanIA)

iPanIA::iPanIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate("Cliccare col pulsante sinistro del mouse e trascinare spostare il punto di vista")),
            iIATypeVec3, osg::Vec3f());
}

iPanIA::~iPanIA() = default;

bool iPanIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    _lastX = static_cast<int>(p.getWindowPos().x());
    _lastY = static_cast<int>(p.getWindowPos().y());
    return true;
}

bool iPanIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    if (!getDragging())
        return true;
    int const x = static_cast<int>(p.getWindowPos().x());
    int const y = static_cast<int>(p.getWindowPos().y());
    if (iViewer* viewer = getViewer())
        viewer->pan(_lastX, _lastY, x, y);
    _lastX = x;
    _lastY = y;
    return true;
}
