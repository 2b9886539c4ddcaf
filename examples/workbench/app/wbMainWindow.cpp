#include "app/wbMainWindow.h"

wbMainWindow::wbMainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle("Workbench");
}
