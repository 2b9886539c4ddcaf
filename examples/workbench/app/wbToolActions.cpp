#include "app/wbToolActions.h"

#include "app/wbDocument.h"

#include <iModelStage/editing/iEditingManager.h>
#include <iModelStage/editing/iGeometryHandlerManager.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iTransformIA.h>
#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerEventHandler.h>
#include <iModelStage/viewing/iViewerShotIA.h>

#include <QAction>
#include <QDir>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QToolBar>

namespace {

char const* const editingManagerClass = "iEditingManager";

} // namespace

wbToolActions::wbToolActions(QMainWindow* window, ViewerSource viewer)
    : QObject(window), m_window(window), m_viewer(std::move(viewer))
{
    m_shotDir = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (m_shotDir.isEmpty())
        m_shotDir = QDir::homePath();

    QMenuBar* bar = window->menuBar();
    auto* lookups = new QToolBar(tr("View"), window);
    window->addToolBar(Qt::LeftToolBarArea, lookups);
    addGroup(bar->addMenu(tr("&View")), lookups,
             {
                 {"top", "Top", "Ctrl+1", Lookup, nullptr, iView::iLookupTop},
                 {"bottom", "Bottom", "Ctrl+2", Lookup, nullptr, iView::iLookupBottom},
                 {"front", "Front", "Ctrl+3", Lookup, nullptr, iView::iLookupFront},
                 {"back", "Back", "Ctrl+4", Lookup, nullptr, iView::iLookupBack},
                 {"left", "Left", "Ctrl+5", Lookup, nullptr, iView::iLookupLeft},
                 {"right", "Right", "Ctrl+6", Lookup, nullptr, iView::iLookupRight},
                 {"axonometric", "Axonometric", "Ctrl+7", Lookup, nullptr, iView::iLookupAxonometric},
                 {"free", "Free orbit", "Ctrl+8", Lookup, nullptr, iView::iLookupFree},
                 {"last", "Last view", "Ctrl+9", Lookup, nullptr, iView::iLookupLast},
                 {"home", "Home", "Home", Home, nullptr, 0},
             });
    addGroup(bar->addMenu(tr("&Navigate")), window->addToolBar(tr("Navigate")),
             {
                 {"pan", "Pan", "Ctrl+Shift+P", Tool, "iPanIA", 0},
                 {"orbit", "Orbit", "Ctrl+Shift+O", Tool, "iRotateViewIA", 0},
                 {"zoomIn", "Zoom in", "Ctrl++", Tool, "iZoomInIA", 0},
                 {"zoomOut", "Zoom out", "Ctrl+-", Tool, "iZoomOutIA", 0},
                 {"zoomWindow", "Zoom window", "Ctrl+Shift+W", Tool, "iZoomWindowIA", 0},
                 {"zoomAll", "Zoom all", "Ctrl+Shift+A", Tool, "iZoomAllIA", 0},
                 {"zoomSelected", "Zoom selected", "Ctrl+Shift+S", Tool, "iZoomSelectedIA", 0},
             });
    addGroup(bar->addMenu(tr("&Select")), window->addToolBar(tr("Select")),
             {
                 {"pick", "Pick", "F2", Tool, nullptr, 0},
                 {"selectWindow", "Window selection", "F3", Tool, "iSelectWindowIA", 0},
             });
    QMenu* modify = bar->addMenu(tr("&Modify"));
    addGroup(modify, window->addToolBar(tr("Modify")),
             {
                 {"move", "Move", "Ctrl+M", Tool, "iTranslateIA", 0},
                 {"rotate", "Rotate", "Ctrl+R", Tool, "iRotateIA", 0},
                 {"scale", "Scale", "Ctrl+K", Tool, "iScaleIA", 0},
                 {"mirror", "Mirror", "Ctrl+I", Tool, "iMirrorIA", 0},
                 {"editing", "Edit handles", "Ctrl+E", Editing, nullptr, 0},
             });
    QMenu* copies = modify->addMenu(tr("With copy"));
    addGroup(copies, nullptr,
             {
                 {"moveCopy", "Move a copy", "Ctrl+Shift+M", CopyTool, "iTranslateIA", 0},
                 {"rotateCopy", "Rotate a copy", "Ctrl+Shift+R", CopyTool, "iRotateIA", 0},
                 {"scaleCopy", "Scale a copy", "Ctrl+Shift+K", CopyTool, "iScaleIA", 0},
                 {"mirrorCopy", "Mirror a copy", "Ctrl+Shift+I", CopyTool, "iMirrorIA", 0},
             });
    window->addToolBarBreak();
    addGroup(bar->addMenu(tr("&Draw")), window->addToolBar(tr("Draw")),
             {
                 {"box", "Box", "Ctrl+B", Tool, "wbCreateBoxIA", 0},
                 {"polyline", "Polyline", "Ctrl+L", Tool, "wbCreatePolylineIA", 0},
                 {"cylinder", "Cylinder", "Ctrl+Shift+C", Tool, "wbCreateCylinderIA", 0},
                 {"label", "Label", "Ctrl+T", Tool, "wbCreateLabelIA", 0},
                 {"linearDimension", "Linear dimension", "Ctrl+D", Tool, "iCreateLinearQuoteIA", 0},
                 {"pointDimension", "Point dimension", "Ctrl+Shift+D", Tool, "iCreatePointQuoteIA", 0},
                 {"leader", "Leader", "Ctrl+Shift+L", Tool, "iCreateLeaderIA", 0},
             });
    addGroup(bar->addMenu(tr("&Tools")), window->addToolBar(tr("Tools")),
             {
                 {"ortho", "Orthogonal steps", "F8", Ortho, nullptr, 0},
                 {"screenshot", "Screenshot", "Ctrl+Shift+G", Shot, "iViewerShotIA", 0},
             });
    iEditingManager::getInstance()->sigEditingEnd.connect(this, &wbToolActions::slotEditingEnded);
}

void wbToolActions::addGroup(QMenu* menu, QToolBar* bar, std::vector<Row> const& rows)
{
    if (bar)
        bar->setObjectName(QString("toolbar.") + menu->title().remove('&'));
    for (Row const& row : rows) {
        QAction* action = makeAction(row);
        menu->addAction(action);
        if (bar)
            bar->addAction(action);
    }
}

QAction* wbToolActions::makeAction(Row const& row)
{
    auto* action = new QAction(tr(row.text), m_window);
    action->setObjectName(QString("tool.") + row.name);
    action->setShortcut(QKeySequence(row.shortcut));
    action->setToolTip(QString("%1 (%2)").arg(tr(row.text), action->shortcut().toString(QKeySequence::NativeText)));
    if (row.toolClass && !iRoot::findClass(row.toolClass)) {
        action->setEnabled(false);
        action->setToolTip(tr("%1: not available in this build").arg(tr(row.text)));
    }
    m_window->addAction(action);
    if (row.kind == Editing) {
        action->setCheckable(true);
        action->setEnabled(iRoot::findClass(editingManagerClass));
        connect(action, &QAction::toggled, this, &wbToolActions::toggleEditing);
        return action;
    }
    if (row.kind == Ortho) {
        action->setCheckable(true);
        action->setChecked(iViewerEventHandler::getOrthoEnabled());
        connect(action, &QAction::toggled, this, [](bool on) { iViewerEventHandler::setOrthoEnabled(on); });
        return action;
    }
    connect(action, &QAction::triggered, this, [this, row] { trigger(row); });
    return action;
}

QAction* wbToolActions::action(QString const& name) const
{
    return m_window->findChild<QAction*>(QString("tool.") + name);
}

void wbToolActions::trigger(Row const& row)
{
    iViewer* viewer = m_viewer();
    switch (row.kind) {
    case Lookup:
        if (viewer)
            viewer->setViewLookup(static_cast<iView::iViewLookup>(row.lookup));
        return;
    case Home:
        if (viewer)
            viewer->resetToHome();
        return;
    case Tool:
        if (!row.toolClass) {
            // Picking is the tool at the bottom: ending the others gets it.
            if (iInteractorManager* tools = iInteractorManager::getInteractorManager())
                tools->cancelCurrentInteractor();
            return;
        }
        startTool(row.toolClass, false);
        return;
    case CopyTool:
        startTool(row.toolClass, true);
        return;
    case Shot:
        startShot();
        return;
    case Editing:
    case Ortho:
        return;
    }
}

bool wbToolActions::startTool(char const* className, bool copy)
{
    iInteractorManager* tools = iInteractorManager::getInteractorManager();
    iInteractor* tool = iViewerEventHandler::newTool(className);
    if (!tools || !tool) {
        emit message(tr("The tool %1 is not available.").arg(className));
        return false;
    }
    if (auto* transform = dynamic_cast<iTransformIA*>(tool)) {
        transform->set_makecopy(copy);
        // While handles are edited, a transformation moves the handles.
        iEditingManager* editing = iEditingManager::getInstance();
        if (editing->getEditing() && editing->getWorkingLayer()) {
            transform->setGeometricsLayer(editing->getWorkingLayer());
            transform->lockGeometricLayer(true);
        }
    }
    if (iViewer* viewer = m_viewer())
        tools->setCurrentViewer(viewer);
    return iViewerEventHandler::pushNewTool(tool);
}

void wbToolActions::startShot()
{
    if (!startTool("iViewerShotIA"))
        return;
    auto* shot = dynamic_cast<iViewerShotIA*>(iInteractorManager::getInteractorManager()->getCurrentInteractor());
    if (!shot)
        return;
    // The tool keeps taking rectangles until Return saves the last one.
    shot->setNumSteps(-1);
    QDir().mkpath(m_shotDir);
    shot->set_destpath(m_shotDir.toStdString());
    emit message(tr("Drag a rectangle in the view, then press Return to save it in %1.").arg(m_shotDir));
}

// The first handler class registered for a class of the selection.
std::string wbToolActions::handlerForSelection()
{
    iGeometricsLayer* layer = wbDocument::geometrics();
    if (!layer)
        return std::string();
    NodeList selected;
    layer->getSelectionList(selected, nullptr);
    std::vector<std::string> handlers;
    for (osg::ref_ptr<osg::Node> const& node : selected) {
        auto* object = dynamic_cast<iRoot*>(node.get());
        if (object && iGeometryHandlerManager::getHandlerClasses(object->getClassName(), handlers) &&
            !handlers.empty())
            return handlers.front();
    }
    return std::string();
}

void wbToolActions::toggleEditing(bool on)
{
    iEditingManager* editing = iEditingManager::getInstance();
    if (!on) {
        editing->setEditing(false, std::string());
        return;
    }
    std::string const handler = handlerForSelection();
    QAction* toggle = action("editing");
    if (handler.empty()) {
        emit message(tr("Select a shape with handles first, then switch handle editing on."));
        QSignalBlocker quiet(toggle);
        toggle->setChecked(false);
        return;
    }
    // Handles are dragged by the pick tool alone.
    if (iInteractorManager* tools = iInteractorManager::getInteractorManager())
        tools->cancelCurrentInteractor();
    editing->setEditing(true, handler);
    emit message(tr("Drag a handle to move a vertex; switch handle editing off to finish."));
}

void wbToolActions::slotEditingEnded()
{
    QAction* toggle = action("editing");
    if (!toggle || !toggle->isChecked())
        return;
    QSignalBlocker quiet(toggle);
    toggle->setChecked(false);
}
