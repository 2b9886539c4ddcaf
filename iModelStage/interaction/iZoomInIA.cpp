#include <iModelStage/interaction/iZoomInIA.h>

#include <iModelStage/interaction/iZoomWindowIA.h>

I_REGISTER_CLASS(iZoomInIA)

iZoomInIA::iZoomInIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    addStep(iZoomWindowIA::prompt(), iIATypeVec3, osg::Vec3f());
}

iZoomInIA::~iZoomInIA() = default;

bool iZoomInIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    return true;
}

bool iZoomInIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    return true;
}

bool iZoomInIA::release(iIAPoint const& p)
{
    iStackedInteractor::release(p);
    return true;
}
