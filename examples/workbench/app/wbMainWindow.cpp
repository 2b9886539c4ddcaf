#include "app/wbMainWindow.h"

#include "app/wbCommandLine.h"
#include "app/wbDocks.h"
#include "app/wbDocument.h"
#include "app/wbFileMenu.h"
#include "app/wbProgressDialog.h"
#include "app/wbToolActions.h"
#include "app/wbViewer.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/viewing/iViewerEventHandler.h>
#include <iModelStage/viewing/iViewerManager.h>

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QGridLayout>
#include <QMenu>
#include <QStatusBar>
#include <QWindow>

namespace {

// The plan, where the user draws, a perspective of the same document, and
// the front and right elevations of the four-view layout.
iView::iViewLookup const lookups[] = {iView::iLookupTop, iView::iLookupAxonometric, iView::iLookupFront,
                                      iView::iLookupRight};

osg::ref_ptr<iGridGroup> makeGrid()
{
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_hstep(1.0);
    grid->set_vstep(1.0);
    grid->set_nhs(20);
    grid->set_nvs(20);
    return grid;
}

} // namespace

wbMainWindow::wbMainWindow(QWidget* parent)
    : QMainWindow(parent),
      m_document(std::make_unique<wbDocument>()),
      m_interactors(std::make_unique<iInteractorManager>()),
      m_progress(std::make_unique<wbProgressDialog>(this))
{
    setObjectName("workbench");
    resize(1200, 800);
    m_document->manager()->setProgressInterface(m_progress.get());
    m_document->setLayersRebuiltHandler([this] {
        bindViewers();
        resetTools();
    });
    m_document->manager()->sigDbChanged.connect(this, &wbMainWindow::slotDbChanged);
    m_document->manager()->sigFileNameChanged.connect(this, &wbMainWindow::slotFileNameChanged);

    buildViewers();
    m_fileMenu = new wbFileMenu(this);
    buildEditMenu();
    m_tools = new wbToolActions(this, [this] { return activeViewer(); });
    addLayoutChoice();
    buildDocks();

    m_prompt = new QLabel(this);
    m_prompt->setObjectName("promptLabel");
    statusBar()->addWidget(m_prompt, 1);
    m_commandLine = new wbCommandLine(this);
    m_commandLine->setMinimumWidth(260);
    statusBar()->addPermanentWidget(m_commandLine);
    connect(m_tools, &wbToolActions::message, this, &wbMainWindow::showMessage);
    connect(m_fileMenu, &wbFileMenu::message, this, &wbMainWindow::showMessage);

    resetTools();
    updateTitle();
    m_timer.setInterval(16);
    connect(&m_timer, &QTimer::timeout, this, &wbMainWindow::tick);
}

wbMainWindow::~wbMainWindow()
{
    m_timer.stop();
    // Tools refer to viewers and layers: they go first.
    m_interactors.reset();
    for (wbViewer*& viewer : m_viewers) {
        // The surfaces' last events must not reach a viewer half gone.
        if (QWindow* surface = viewer->getGLWindow())
            surface->removeEventFilter(this);
        delete viewer;
        viewer = nullptr;
    }
}

void wbMainWindow::buildViewers()
{
    auto* area = new QWidget(this);
    area->setObjectName("viewerArea");
    m_viewGrid = new QGridLayout(area);
    m_viewGrid->setContentsMargins(0, 0, 0, 0);
    m_viewGrid->setSpacing(3);
    for (int i = 0; i < ViewerCount; ++i) {
        m_viewers[i] = new wbViewer(area);
        m_viewers[i]->setObjectName(QString("viewer%1").arg(i));
        m_viewers[i]->setMinimumSize(160, 160);
    }
    layOutViewers();
    setCentralWidget(area);
}

void wbMainWindow::layOutViewers()
{
    for (wbViewer* viewer : m_viewers)
        m_viewGrid->removeWidget(viewer);
    // Two: plan and perspective side by side. Four: the plan over the
    // right elevation, the front over the perspective.
    m_viewGrid->addWidget(m_viewers[0], 0, 0);
    m_viewGrid->addWidget(m_viewers[1], m_fourViews ? 1 : 0, 1);
    if (m_fourViews) {
        m_viewGrid->addWidget(m_viewers[2], 0, 1);
        m_viewGrid->addWidget(m_viewers[3], 1, 0);
    }
    for (int i = 2; i < ViewerCount; ++i)
        m_viewers[i]->setVisible(m_fourViews);
}

void wbMainWindow::setFourViews(bool on)
{
    if (on == m_fourViews)
        return;
    m_fourViews = on;
    layOutViewers();
    if (m_fourViewsAction)
        m_fourViewsAction->setChecked(on);
    // A viewer left hidden cannot stay the one the tools act in.
    if (!on && m_interactors && m_ready && !activeViewer()->isVisible())
        m_interactors->setCurrentViewer(m_viewers[0]);
    zoomAll();
}

void wbMainWindow::addLayoutChoice()
{
    QMenu* viewMenu = nullptr;
    for (QAction* entry : menuBar()->actions())
        if (entry->menu() && entry->menu()->title() == tr("&View"))
            viewMenu = entry->menu();
    if (!viewMenu)
        return;
    viewMenu->addSeparator();
    m_fourViewsAction = viewMenu->addAction(tr("Four views"));
    m_fourViewsAction->setObjectName("view.fourViews");
    m_fourViewsAction->setCheckable(true);
    m_fourViewsAction->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_0));
    connect(m_fourViewsAction, &QAction::toggled, this, &wbMainWindow::setFourViews);
    addAction(m_fourViewsAction);
}

void wbMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!m_ready)
        setUpViewers();
}

void wbMainWindow::setUpViewers()
{
    for (int i = 0; i < ViewerCount; ++i) {
        wbViewer* viewer = m_viewers[i];
        viewer->init();
        if (QWindow* surface = viewer->getGLWindow())
            surface->installEventFilter(this);
        m_handlers[i] = new iViewerEventHandler;
        viewer->addEventHandler(m_handlers[i].get());
        m_grids[i] = makeGrid();
        viewer->setGrid(m_grids[i].get());
        m_grids[i]->updateGeometry(true);
        viewer->setLookupSwitchAnimate(false);
        viewer->setViewLookup(lookups[i]);
        viewer->setLookupSwitchAnimate(true);
    }
    m_viewers[1]->getCurrentView().setProjectionType(iView::iProjectionPerspective);
    bindViewers();
    m_interactors->setCurrentViewer(m_viewers[0]);
    m_ready = true;
    m_timer.start();
}

void wbMainWindow::bindViewers()
{
    for (wbViewer* viewer : m_viewers)
        viewer->setViewModel(wbDocument::geometrics());
}

void wbMainWindow::resetTools()
{
    // A persistent pick at the bottom of the stack: every other tool
    // returns to it when it ends.
    m_interactors = std::make_unique<iInteractorManager>();
    m_interactors->setLayersManager(m_document->manager());
    m_interactors->setInputHandler(m_commandLine);
    m_interactors->sigMessage.connect(this, &wbMainWindow::showPrompt);
    if (m_ready)
        m_interactors->setCurrentViewer(m_viewers[0]);
    auto* pick = new iSelectIA;
    pick->setPersistent(true);
    pick->setGeometricsLayer(wbDocument::geometrics());
    if (!m_interactors->pushInteractor(pick, false))
        delete pick;
}

iViewer* wbMainWindow::activeViewer() const
{
    if (m_interactors)
        if (iViewer* current = m_interactors->getCurrentViewer())
            return current;
    return m_viewers[0];
}

wbViewer* wbMainWindow::viewer(int index) const
{
    return index >= 0 && index < ViewerCount ? m_viewers[index] : nullptr;
}

void wbMainWindow::tick()
{
    if (m_paused > 0)
        return;
    m_document->manager()->loop();
    if (m_interactors)
        m_interactors->loop();
    zoomWhenReady();
    if (iViewerManager* viewers = iViewerManager::getInstance())
        viewers->paintViewers();
    emit ticked();
}

wbMainWindow::Pause::Pause(wbMainWindow* window)
    : m_window(window)
{
    ++m_window->m_paused;
}

wbMainWindow::Pause::~Pause()
{
    --m_window->m_paused;
}

bool wbMainWindow::eventFilter(QObject* watched, QEvent* event)
{
    // A viewer's surface is a window of its own, outside the widgets' key
    // routing: the window's shortcuts are matched here, so that Ctrl+Z and
    // the rest work while the pointer's last click was in a viewer. Other
    // keys go on to the viewer's event handler.
    if (event->type() != QEvent::KeyPress)
        return QMainWindow::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    QKeySequence const pressed(key->key() | int(key->modifiers() & ~Qt::KeypadModifier));
    for (QAction* action : actions()) {
        if (action->isEnabled() && action->shortcut() == pressed) {
            action->trigger();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void wbMainWindow::buildEditMenu()
{
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    auto add = [this, edit](char const* name, QString const& text, QKeySequence const& key, auto work) {
        QAction* action = edit->addAction(text);
        action->setObjectName(QString("edit.") + name);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, work);
        addAction(action);
        return action;
    };
    add("undo", tr("&Undo"), QKeySequence(Qt::CTRL + Qt::Key_Z), [this] { m_document->manager()->undo(1, true); });
    add("redo", tr("&Redo"), QKeySequence(Qt::CTRL + Qt::Key_Y), [this] { m_document->manager()->redo(1); });
    edit->addSeparator();
    add("cancel", tr("&Cancel tool"), QKeySequence(Qt::Key_Escape), [this] {
        if (m_interactors)
            m_interactors->cancelCurrentInteractor();
    });
    add("delete", tr("&Delete"), QKeySequence::Delete, [this] {
        iGeometricsLayer* layer = wbDocument::geometrics();
        if (!layer || layer->getSelectionCount() == 0)
            return;
        m_document->manager()->storeForUndo(tr("Delete").toStdString());
        layer->removeSelectedObjects();
    });
    add("selectAll", tr("Select &all"), QKeySequence::SelectAll, [] {
        if (iGeometricsLayer* layer = wbDocument::geometrics())
            layer->selectAll();
    });
}

void wbMainWindow::buildDocks()
{
    wbDocks::build(this);
}

void wbMainWindow::showPrompt(QString text, iInteractor::MessageType type)
{
    m_prompt->setStyleSheet(type == iInteractor::iIAMessageError ? "color: #b00000;" : QString());
    m_prompt->setText(text);
}

void wbMainWindow::showMessage(QString const& text)
{
    statusBar()->showMessage(text, 6000);
}

void wbMainWindow::slotDbChanged(bool)
{
    updateTitle();
}

void wbMainWindow::slotFileNameChanged(std::string const&)
{
    updateTitle();
}

void wbMainWindow::updateTitle()
{
    QString name = QFileInfo(m_document->fileName()).fileName();
    if (name.isEmpty())
        name = tr("Untitled");
    setWindowTitle(QString("%1%2 - Workbench").arg(name, m_document->isModified() ? "*" : ""));
}

void wbMainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_fileMenu->mayDiscard()) {
        event->ignore();
        return;
    }
    m_timer.stop();
    event->accept();
}

void wbMainWindow::zoomAll()
{
    // Done at the next tick at which the viewers draw at their size: a
    // document opened before the window shows is framed all the same.
    m_zoomPending = true;
}

void wbMainWindow::zoomWhenReady()
{
    if (!m_zoomPending || !m_ready)
        return;
    for (wbViewer* viewer : m_viewers)
        if (viewer->isVisible() && (viewer->paintCount() == 0 || viewer->isLookupAnimating()))
            return;
    m_zoomPending = false;
    iGeometricsLayer* layer = wbDocument::geometrics();
    osg::Group* root = layer ? layer->getObjectsRoot() : nullptr;
    if (!root || root->getNumChildren() == 0)
        return;
    // The objects' root as one node: each object's own matrix is then
    // counted once, by the bounds' walk.
    for (wbViewer* viewer : m_viewers)
        viewer->zoomBounds(NodeList{root});
}

bool wbMainWindow::selectByName(QString const& name)
{
    iGeometricsLayer* layer = wbDocument::geometrics();
    iNodeGroup* object = layer ? layer->findObjectByName(name.toStdString()) : nullptr;
    if (!object)
        return false;
    layer->clearObjectSelection();
    layer->addObjectSelection(object);
    return true;
}

QImage wbMainWindow::grabWindow()
{
    // The viewers draw into surfaces of their own that a widget grab does
    // not see: their last frames are painted in where they stand.
    QImage picture = grab().toImage();
    QPainter painter(&picture);
    for (wbViewer* viewer : m_viewers) {
        if (!viewer->isVisible() || viewer->lastFrame().isNull())
            continue;
        QPoint const at = viewer->mapTo(this, QPoint(0, 0));
        painter.drawImage(QRect(at, viewer->size()), viewer->lastFrame());
    }
    return picture;
}
