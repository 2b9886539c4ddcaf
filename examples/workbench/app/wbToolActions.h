#pragma once

#include <iModelStage/frame/iSlot.h>

#include <QObject>
#include <QString>

#include <functional>
#include <string>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class iInteractor;
class iViewer;

// The actions of every tool the window offers, with their menus and tool
// bars: the named view lookups and home, navigation, selection,
// transformations with and without copy, handle editing, dimensions, the
// screenshot and the drawing tools of the workbench's shapes. Each action
// carries an objectName ("tool.<name>") by which tests and scripts find it.
// A tool whose class this process does not know is shown disabled.
class wbToolActions : public QObject, public iSlot {
    Q_OBJECT
public:
    // The viewer that tools act in: the one the user worked in last.
    using ViewerSource = std::function<iViewer*()>;

    wbToolActions(QMainWindow* window, ViewerSource viewer);

    QAction* action(QString const& name) const;

    // Makes a tool by class name and puts it on top of the running one;
    // copy asks a transformation for copies. False if the class is unknown
    // or the tool was refused.
    bool startTool(char const* className, bool copy = false);
    // Where screenshots go.
    void setShotDirectory(QString const& dir) { m_shotDir = dir; }
    QString const& shotDirectory() const { return m_shotDir; }

signals:
    void message(QString const& text);

private:
    enum Kind { Lookup, Home, Tool, CopyTool, Shot, Editing, Ortho };
    struct Row {
        char const* name;
        char const* text;
        char const* shortcut;
        Kind kind;
        char const* toolClass;
        int lookup;
    };

    void addGroup(QMenu* menu, QToolBar* bar, std::vector<Row> const& rows);
    QAction* makeAction(Row const& row);
    void trigger(Row const& row);
    void startShot();
    void toggleEditing(bool on);
    // Editing can end without the toggle (an undo, a new document): the
    // toggle shows it.
    void slotEditingEnded();
    static std::string handlerForSelection();

    QMainWindow* m_window;
    ViewerSource m_viewer;
    QString m_shotDir;
};
