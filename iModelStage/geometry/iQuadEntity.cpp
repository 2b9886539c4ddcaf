#include <iModelStage/geometry/iQuadEntity.h>

I_REGISTER_CLASS(iQuadEntity)
