#pragma once

#include <QWidget>

class QLineEdit;
class QListWidget;

// Finds objects of the document by name or text as the user types; a click
// on a result selects the object and brings it into view.
class wbSearchPanel : public QWidget {
    Q_OBJECT
public:
    explicit wbSearchPanel(QWidget* parent = nullptr);

    void search(QString const& text);
    QListWidget* results() const { return m_results; }
    QLineEdit* box() const { return m_box; }

private:
    void pick(long id);

    QLineEdit* m_box;
    QListWidget* m_results;
};
