#pragma once

#include <iModelStage/interaction/iInteractorInputHandler.h>

#include <QLineEdit>

// The command line: numbers typed here reach the current tool as a point,
// as if the mouse had given it ("@" makes them relative to the last point).
// The line stays busy while the user types, so that the viewer's keys do
// not act on the tool meanwhile.
class wbCommandLine : public QLineEdit, public iInteractorInputHandler {
    Q_OBJECT
public:
    explicit wbCommandLine(QWidget* parent = nullptr);

    // Hands the text to the current tool, as Return does.
    void accept();

protected:
    void setDefaultData(std::string const& text) override;
    void keyPressEvent(QKeyEvent* event) override;
};
