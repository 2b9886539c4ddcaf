#include <iModelStage/geometry/iPolyLineEntity.h>

I_DEFINE_CLASS(iPolyLineEntity)
