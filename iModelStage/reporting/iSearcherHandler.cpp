#include <iModelStage/reporting/iSearcherHandler.h>

iSearcherHandler::iSearcherHandler() = default;
iSearcherHandler::~iSearcherHandler() = default;
