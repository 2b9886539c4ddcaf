#include <iModelStage/interaction/iStackedInteractor.h>

I_REGISTER_CLASS(iStackedInteractor)

iStackedInteractor::iStackedInteractor()
{
    setStacked(true);
}

iStackedInteractor::~iStackedInteractor() = default;
