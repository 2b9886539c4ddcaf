#include <iModelStage/geometry/iTriangleEntity.h>

I_REGISTER_CLASS(iTriangleEntity)
