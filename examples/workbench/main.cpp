// The workbench: a desktop application on the library in which a person
// draws, selects, transforms, edits, dimensions, saves and reopens a small
// 3D design.
//
//     workbench [file.ims] [--sample] [--four-views] [--frames N --screenshot picture.png]
//
// With --frames the program quits after N ticks with both viewers drawn;
// with --screenshot it saves a picture of the whole window first.
#include "app/wbApplication.h"
#include "app/wbFileMenu.h"
#include "app/wbMainWindow.h"
#include "app/wbSample.h"
#include "app/wbViewer.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("workbench");
    QApplication::setOrganizationName("iModelStage");

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument("file", "A workbench document to open.");
    QCommandLineOption const sample("sample", "Open the sample document.");
    QCommandLineOption const frames("frames", "Quit after <n> ticks.", "n");
    QCommandLineOption const screenshot("screenshot", "Save a picture of the window before quitting.", "png");
    QCommandLineOption const select("select", "Select the object of that name.", "name");
    QCommandLineOption const perspective("perspective", "Show the perspective view alone.");
    QCommandLineOption const fourViews("four-views", "Show the top, front, right and perspective views.");
    QCommandLineOption const writeSample("write-sample", "Write the sample document to <file> and quit.", "file");
    parser.addOptions({sample, frames, screenshot, select, perspective, fourViews, writeSample});
    parser.process(app);

    wbApplication::initialise();
    wbApplication::readSettings();
    wbMainWindow window;
    if (parser.isSet(writeSample)) {
        QString const error = wbSample::write(window.document(), parser.value(writeSample));
        if (!error.isEmpty())
            std::fprintf(stderr, "%s\n", qPrintable(error));
        return error.isEmpty() ? 0 : 1;
    }
    window.show();
    if (!parser.positionalArguments().isEmpty())
        window.fileMenu()->openFile(parser.positionalArguments().front());
    else if (parser.isSet(sample))
        window.fileMenu()->openSample();
    if (parser.isSet(select))
        window.selectByName(parser.value(select));
    if (parser.isSet(fourViews))
        window.setFourViews(true);
    if (parser.isSet(perspective))
        window.viewer(0)->hide();

    int const limit = parser.isSet(frames) ? parser.value(frames).toInt() : parser.isSet(screenshot) ? 60 : -1;
    QString const picture = parser.value(screenshot);
    if (limit >= 0) {
        for (int i = 0; i < window.viewerCount(); ++i)
            window.viewer(i)->setKeepFrames(!picture.isEmpty());
        int ticks = 0;
        QObject::connect(&window, &wbMainWindow::ticked, &app, [&] {
            if (++ticks < limit)
                return;
            // A picture waits for the shown viewers' first frames.
            for (int i = 0; i < window.viewerCount(); ++i)
                if (!picture.isEmpty() && window.viewer(i)->isVisible() && window.viewer(i)->lastFrame().isNull())
                    return;
            if (!picture.isEmpty() && !window.grabWindow().save(picture)) {
                std::fprintf(stderr, "cannot write %s\n", qPrintable(picture));
                app.exit(1);
                return;
            }
            app.quit();
        });
    }
    return app.exec();
}
