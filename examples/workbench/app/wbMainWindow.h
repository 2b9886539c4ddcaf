#pragma once

#include <iModelStage/frame/iSlot.h>
#include <iModelStage/interaction/iInteractor.h>

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

class QAction;
class QGridLayout;
class QLabel;
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

// The workbench's main window: viewers on the one document, two (a plan
// from the top and an axonometric perspective) or four (top, front, right
// and the perspective), the tool bars and menus of
// every tool, a command line for typed points, the current tool's prompt in
// the status bar, and dock panels around. A timer of the window ticks the
// document, the tools and the viewers' paint.
class wbMainWindow : public QMainWindow, public iSlot {
    Q_OBJECT
public:
    explicit wbMainWindow(QWidget* parent = nullptr);
    ~wbMainWindow() override;

    wbDocument* document() const { return m_document.get(); }
    // Viewers 0 and 1 are the plan and the perspective; 2 and 3, the front
    // and the right, show in the four-view layout only.
    wbViewer* viewer(int index) const;
    int viewerCount() const { return ViewerCount; }
    void setFourViews(bool on);
    bool fourViews() const { return m_fourViews; }
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
    static constexpr int ViewerCount = 4;

    void buildViewers();
    void layOutViewers();
    void addLayoutChoice();
    void setUpViewers();
    void bindViewers();
    void resetTools();
    void buildEditMenu();
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
    QGridLayout* m_viewGrid = nullptr;
    QAction* m_fourViewsAction = nullptr;
    wbViewer* m_viewers[ViewerCount] = {};
    osg::ref_ptr<iGridGroup> m_grids[ViewerCount];
    osg::ref_ptr<iViewerEventHandler> m_handlers[ViewerCount];
    wbToolActions* m_tools = nullptr;
    wbFileMenu* m_fileMenu = nullptr;
    wbCommandLine* m_commandLine = nullptr;
    QLabel* m_prompt = nullptr;
    QTimer m_timer;
    int m_paused = 0;
    bool m_ready = false;
    bool m_zoomPending = false;
    bool m_fourViews = false;
};
