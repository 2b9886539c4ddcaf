#include <iModelStage/interaction/iInteractorInputHandler.h>

#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorManager.h>

#include <QString>
#include <QStringList>

I_DEFINE_CLASS(iInteractorInputHandler)

iInteractorInputHandler::iInteractorInputHandler() = default;

iInteractorInputHandler::~iInteractorInputHandler() = default;

void iInteractorInputHandler::setDefaultData(std::string const&) {}

namespace {

// The value of the typed parts for a step of that type; false when the
// type takes no typed value. Unreadable numbers count as 0.
bool parseTypedValue(QStringList const& parts, iInteractor::iInteractorTypes type, osg::Vec3f& value)
{
    int count = 0;
    switch (type) {
    case iInteractor::iIATypeInt:
        value.set(static_cast<float>(parts[0].toInt(nullptr, 10)), 0.0f, 0.0f);
        return true;
    case iInteractor::iIATypeDouble:
        count = 1;
        break;
    case iInteractor::iIATypeVec2:
        count = 2;
        break;
    case iInteractor::iIATypeVec3:
        count = 3;
        break;
    default:
        return false;
    }
    value.set(0.0f, 0.0f, 0.0f);
    for (int i = 0; i < count && i < parts.size(); ++i)
        value[i] = static_cast<float>(parts[i].toDouble());
    return true;
}

} // namespace

void iInteractorInputHandler::dataAccepted(std::string const& text)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (text.empty() || !manager)
        return;
    iInteractor* interactor = manager->getCurrentInteractor();
    if (!interactor)
        return;
    iInteractor::iInteractorTypes const type = interactor->getCurrentStepType();
    QString line = QString::fromStdString(text);
    bool const relative = line.contains(QLatin1Char('@'));
    line.remove(QLatin1Char('@'));
    QStringList const parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return;
    osg::Vec3f value;
    if (!parseTypedValue(parts, type, value))
        return;
    if (relative)
        value += iInteractor::getLastInputPos().getLocalPos();
    // A typed point is taken as it stands, in no plane's frame.
    osg::Vec3f const zero(0.0f, 0.0f, 0.0f);
    iIAPoint const point(zero, zero, value, value);
    // A tool no pointer has reached yet starts as the first event would.
    if (interactor->getState() == iInteractor::iIAStateIdle)
        interactor->start();
    interactor->move(point);
    interactor->click(point);
    interactor->release(point);
}
