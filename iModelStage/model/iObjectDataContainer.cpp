#include <iModelStage/model/iObjectDataContainer.h>

iObjectDataContainer::~iObjectDataContainer() = default;
