#include "app/wbMainWindow.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    wbMainWindow window;
    window.show();
    return app.exec();
}
