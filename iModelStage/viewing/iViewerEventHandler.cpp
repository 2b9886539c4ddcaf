#include <iModelStage/viewing/iViewerEventHandler.h>

bool iViewerEventHandler::orthoenabled = false;

bool iViewerEventHandler::getOrthoEnabled()
{
    return orthoenabled;
}

void iViewerEventHandler::setOrthoEnabled(bool on)
{
    orthoenabled = on;
}
