#include <iModelStage/geometry/iPolygonEntity.h>

I_REGISTER_CLASS(iPolygonEntity)
