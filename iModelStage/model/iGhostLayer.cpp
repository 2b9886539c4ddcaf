#include <iModelStage/model/iGhostLayer.h>

I_REGISTER_CLASS(iGhostLayer)
