#include <iModelStage/frame/iClassIcons.h>

namespace {

QMap<QString, QString>& icons()
{
    static QMap<QString, QString>* map = new QMap<QString, QString>;
    return *map;
}

QMap<QString, QString>& virtualItems()
{
    static QMap<QString, QString>* map = new QMap<QString, QString>;
    return *map;
}

} // namespace

void iAddClassIcon(QString const& className, QString const& icon)
{
    icons().insert(className, icon);
}

void iOverrideClassIcon(QString const& className, QString const& icon)
{
    icons()[className] = icon;
}

QString iGetClassIcon(QString const& className)
{
    return icons()[className];
}

QMap<QString, QString> const& iGetClassIconsMap()
{
    return icons();
}

void iAddVirtualRootItemClass(QString const& key, QString const& value)
{
    virtualItems().insert(key, value);
}

QMap<QString, QString> const& iGetVirtualItemMap()
{
    return virtualItems();
}
