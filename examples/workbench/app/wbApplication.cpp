#include "app/wbApplication.h"

#include "shapes/wbRegistry.h"

#include <iModelStage/frame/iStartUp.h>
#include <iModelStage/model/iSettingsManagerBase.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace {

char const* const recentKey = "recentFiles";

QString iniFile(QString const& dir)
{
    return dir + "/workbench.ini";
}

} // namespace

void wbApplication::initialise()
{
    static bool const done = [] {
        iModelStage_startUp();
        wbRegisterClasses();
        return true;
    }();
    (void)done;
}

QString wbApplication::configDir()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    if (dir.isEmpty())
        dir = QDir::homePath() + "/.config/workbench";
    QDir().mkpath(dir);
    return dir;
}

QString wbApplication::settingsFile()
{
    return configDir() + "/workbench.settings";
}

bool wbApplication::readSettings()
{
    return iSettingsManagerBase::read(QFile::encodeName(settingsFile()).constData());
}

bool wbApplication::writeSettings()
{
    return iSettingsManagerBase::write(QFile::encodeName(settingsFile()).constData());
}

QStringList wbApplication::recentFiles()
{
    QSettings settings(iniFile(configDir()), QSettings::IniFormat);
    return settings.value(recentKey).toStringList();
}

void wbApplication::addRecentFile(QString const& path)
{
    QString const absolute = QFileInfo(path).absoluteFilePath();
    QStringList files = recentFiles();
    files.removeAll(absolute);
    files.prepend(absolute);
    while (files.size() > maxRecentFiles)
        files.removeLast();
    QSettings settings(iniFile(configDir()), QSettings::IniFormat);
    settings.setValue(recentKey, files);
}

void wbApplication::clearRecentFiles()
{
    QSettings settings(iniFile(configDir()), QSettings::IniFormat);
    settings.remove(recentKey);
}
