#include "app/wbCommandLine.h"

#include <QKeyEvent>

wbCommandLine::wbCommandLine(QWidget* parent)
    : QLineEdit(parent)
{
    setObjectName("commandLine");
    setPlaceholderText(tr("Type a point: x y z (@ for relative)"));
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textEdited, this, [this](QString const& text) { setBusy(!text.isEmpty()); });
    connect(this, &QLineEdit::returnPressed, this, &wbCommandLine::accept);
}

void wbCommandLine::accept()
{
    std::string const text = this->text().trimmed().toStdString();
    setBusy(false);
    clear();
    dataAccepted(text);
}

void wbCommandLine::setDefaultData(std::string const& text)
{
    setText(QString::fromStdString(text));
}

void wbCommandLine::keyPressEvent(QKeyEvent* event)
{
    // Esc leaves the line and gives the keys back to the viewers.
    if (event->key() == Qt::Key_Escape) {
        setBusy(false);
        clear();
        clearFocus();
        return;
    }
    QLineEdit::keyPressEvent(event);
}
