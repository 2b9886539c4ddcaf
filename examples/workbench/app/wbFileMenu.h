#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QAction;
class QMenu;
class wbDocument;
class wbMainWindow;

// The File menu: new, open, the sample, save, save as, import of model
// files, merge of other documents, export, recent files, the background
// colour setting and quit. Every operation also has a form that takes its
// file names, which the menu's dialogs call. A failure shows a message box
// with a sentence saying what went wrong; the document on screen stays.
class wbFileMenu : public QObject {
    Q_OBJECT
public:
    explicit wbFileMenu(wbMainWindow* window);

    bool newDocument();
    bool openFile(QString const& path);
    bool openSample();
    bool save();
    bool saveAs(QString const& path);
    bool importModel(QString const& path);
    bool mergeFiles(QStringList const& paths);
    bool exportModel(QString const& path);
    void setBackgroundColour(QColor const& colour);

    // Asked before the document is dropped while it has unsaved changes;
    // true lets it go. By default a question to the user.
    void setDiscardQuestion(std::function<bool()> question) { m_discard = std::move(question); }
    bool mayDiscard();

    // The sample document that the menu opens.
    static QString samplePath();

    QMenu* recentMenu() const { return m_recent; }

signals:
    void message(QString const& text);

private:
    QAction* add(QMenu* menu, char const* name, QString const& text, QKeySequence const& key,
                 std::function<void()> work);
    void askOpen();
    void askSaveAs();
    void askImport();
    void askMerge();
    void askExport();
    void askBackground();
    void fillRecent();
    // Shows what went wrong; an empty text is a success, false otherwise.
    bool report(QString const& error, QString const& done);

    wbMainWindow* m_window;
    wbDocument* m_document;
    QMenu* m_recent = nullptr;
    std::function<bool()> m_discard;
};
