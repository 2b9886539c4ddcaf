#include <iModelStage/reporting/iProgressInterface.h>

void iProgressInterface::setRange(int, int) {}

void iProgressInterface::setInfoText(QString const&) {}

void iProgressInterface::begin() {}

void iProgressInterface::setValue(int) {}

void iProgressInterface::end() {}

void iProgressInterface::setRefreshInterval(int) {}

bool iProgressInterface::canceled()
{
    return false;
}

bool iProgressInterface::progressing()
{
    return false;
}
