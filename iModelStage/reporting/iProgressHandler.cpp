#include <iModelStage/reporting/iProgressHandler.h>

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/reporting/iProgressInterface.h>

#include <cmath>

iProgressHandler::iProgressHandler(iLayersManager* manager)
    : _manager(manager ? manager : iLayersManager::getInstance())
{
}

iProgressHandler::~iProgressHandler()
{
    sink()->end();
}

iProgressInterface* iProgressHandler::sink() const
{
    static iProgressInterface silent;
    return _manager ? _manager->getProgressInterface() : &silent;
}

void iProgressHandler::setRange(int min, int max)
{
    sink()->setRange(min, max);
}

void iProgressHandler::setInfoText(std::string const& text)
{
    sink()->setInfoText(QString::fromStdString(text));
}

void iProgressHandler::begin()
{
    sink()->begin();
}

void iProgressHandler::setValue(int value)
{
    sink()->setValue(value);
}

void iProgressHandler::end()
{
    sink()->end();
}

void iProgressHandler::setRefreshInterval(int interval)
{
    sink()->setRefreshInterval(interval);
}

bool iProgressHandler::canceled()
{
    return sink()->canceled();
}

bool iProgressHandler::progressing()
{
    return sink()->progressing();
}

int iProgressHandler::calcOptimalRefreshInterval(int count)
{
    // The logarithm of 0 is minus infinity, which no int holds.
    if (count < 1)
        return 0;
    int const n = static_cast<int>(std::log(static_cast<double>(count)));
    return n * n * n;
}
