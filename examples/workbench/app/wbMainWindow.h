#pragma once

#include <iModelStage/frame/iSlot.h>
#include <iModelStage/interaction/iInteractor.h>

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

class QLabel;
class QSplitter;
class iGridGroup;
class iInteractorManager;
class iViewer;
class iViewerEventHandler;
class wbCommandLine;
class wbDocument;
class wbFileMenu;
class wbProgressDialog;
class wbToolActions;
class wbViewer;

// The workbench's main window: two viewers on the one document (a plan
// from the top and an axonometric perspective), the tool bars and menus of
// every tool, a command line for typed points, the current tool's prompt in
// the status bar, and dock panels around. A timer of the window ticks the
// document, the tools and the viewers' paint.
class wbMainWindow : public QMainWindow, public iSlot {
    Q_OBJECT
public:
    explicit wbMainWindow(QWidget* parent = nullptr);
    ~wbMainWindow() override;

    wbDocument* document() const { return m_document.get(); }
    wbViewer* viewer(int index) const;
    int viewerCount() const { return 2; }
    // The viewer that tools act in: the one the user worked in last.
    iViewer* activeViewer() const;
    wbToolActions* tools() const { return m_tools; }
    wbFileMenu* fileMenu() const { return m_fileMenu; }
    wbCommandLine* commandLine() const { return m_commandLine; }
    QLabel* promptLabel() const { return m_prompt; }

    // Whether both viewers are set up and drawing.
    bool isReady() const { return m_ready; }
    // One tick: the document's loop, the tools' loop, the viewers' paint.
    void tick();
    // Stops the ticks while a file operation runs a nested event loop
    // (the progress dialog) over a half-loaded document.
    class Pause {
    public:
        explicit Pause(wbMainWindow* window);
        ~Pause();
        Pause(Pause const&) = delete;
        Pause& operator=(Pause const&) = delete;

    private:
        wbMainWindow* m_window;
    };

    // Brings the whole drawing into every viewer, at the next tick.
    void zoomAll();
    // Selects the drawing's object of that name alone; false if none.
    bool selectByName(QString const& name);
    // A picture of the window as the user sees it, viewers included.
    QImage grabWindow();

signals:
    void ticked();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildViewers();
    void setUpViewers();
    void bindViewers();
    void resetTools();
    void buildEditMenu();
    bool forwardDrag(QObject* watched, QEvent* event);
    void zoomWhenReady();
    void buildDocks();
    void showPrompt(QString text, iInteractor::MessageType type);
    void showMessage(QString const& text);
    void updateTitle();
    void slotDbChanged(bool modified);
    void slotFileNameChanged(std::string const& name);

    std::unique_ptr<wbDocument> m_document;
    std::unique_ptr<iInteractorManager> m_interactors;
    std::unique_ptr<wbProgressDialog> m_progress;
    QSplitter* m_split = nullptr;
    wbViewer* m_viewers[2] = {nullptr, nullptr};
    osg::ref_ptr<iGridGroup> m_grids[2];
    osg::ref_ptr<iViewerEventHandler> m_handlers[2];
    wbToolActions* m_tools = nullptr;
    wbFileMenu* m_fileMenu = nullptr;
    wbCommandLine* m_commandLine = nullptr;
    QLabel* m_prompt = nullptr;
    QTimer m_timer;
    int m_paused = 0;
    bool m_ready = false;
    bool m_zoomPending = false;
};
