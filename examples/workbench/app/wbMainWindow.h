#pragma once

#include <QMainWindow>

// The workbench's main window: viewers, tool bars, menus and dock panels on
// the process-wide document.
class wbMainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit wbMainWindow(QWidget* parent = nullptr);
};
