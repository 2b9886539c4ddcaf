#include <iModelStage/interaction/iImmediateInteractor.h>

I_REGISTER_CLASS(iImmediateInteractor)

iImmediateInteractor::iImmediateInteractor()
{
    setImmediate(true);
    setAllowConstructionLines(false);
}

iImmediateInteractor::~iImmediateInteractor() = default;
