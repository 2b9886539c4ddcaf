#include <iModelStage/interaction/iZoomOutIA.h>

#include <iModelStage/interaction/iZoomWindowIA.h>

I_REGISTER_CLASS(iZoomOutIA)

iZoomOutIA::iZoomOutIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    addStep(iZoomWindowIA::prompt(), iIATypeVec3, osg::Vec3f());
}

iZoomOutIA::~iZoomOutIA() = default;

bool iZoomOutIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    return true;
}

bool iZoomOutIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    return true;
}

bool iZoomOutIA::release(iIAPoint const& p)
{
    iStackedInteractor::release(p);
    return true;
}
