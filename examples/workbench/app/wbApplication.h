#pragma once

#include <QString>
#include <QStringList>

// Process-wide set-up of the workbench: the library's start-up and the
// workbench's own classes, the places of its settings, the recent files.
class wbApplication {
public:
    // Runs the library's start-up and registers the workbench's classes;
    // later calls do nothing. Call before the first window.
    static void initialise();

    // The library's settings file of this user (background colour).
    static QString settingsFile();
    // Reads the library's settings from settingsFile(); false when there is
    // none yet or it is not a settings file.
    static bool readSettings();
    static bool writeSettings();

    // Most recent first, at most maxRecentFiles.
    static QStringList recentFiles();
    static void addRecentFile(QString const& path);
    static void clearRecentFiles();
    static constexpr int maxRecentFiles = 8;

private:
    static QString configDir();
};
