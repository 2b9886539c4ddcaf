#include "app/wbDocks.h"

#include "app/wbCheckReport.h"
#include "app/wbDocument.h"
#include "app/wbHistoryPanel.h"
#include "app/wbMainWindow.h"
#include "app/wbObjectTree.h"
#include "app/wbPropertyEditor.h"
#include "app/wbSearchPanel.h"
#include "app/wbShapePalette.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iNodeGroup.h>

#include <QDockWidget>
#include <QMenuBar>

namespace {

QDockWidget* dock(wbMainWindow* window, char const* name, QString const& title, QWidget* content,
                  Qt::DockWidgetArea area)
{
    auto* panel = new QDockWidget(title, window);
    panel->setObjectName(QString("dock.") + name);
    panel->setWidget(content);
    window->addDockWidget(area, panel);
    return panel;
}

// The one selected object, or null for none or several.
iNodeGroup* singleSelection(iGeometricsLayer* layer)
{
    if (!layer || layer->getSelectionCount() != 1)
        return nullptr;
    NodeList selected;
    layer->getSelectionList(selected, nullptr);
    return selected.empty() ? nullptr : dynamic_cast<iNodeGroup*>(selected.front().get());
}

} // namespace

void wbDocks::build(wbMainWindow* window)
{
    auto* tree = new wbObjectTree(window);
    auto* properties = new wbPropertyEditor(window);
    auto* history = new wbHistoryPanel(window->document()->manager(), window);
    auto* checks = new wbCheckReport(window->document()->manager(), window);
    auto* search = new wbSearchPanel(window);
    auto* palette = new wbShapePalette(window);

    QMenu* panels = window->menuBar()->addMenu(QObject::tr("&Panels"));
    QDockWidget* historyDock = dock(window, "history", QObject::tr("History"), history, Qt::RightDockWidgetArea);
    QDockWidget* searchDock = dock(window, "search", QObject::tr("Search"), search, Qt::RightDockWidgetArea);
    QDockWidget* checksDock = dock(window, "checks", QObject::tr("Checks"), checks, Qt::RightDockWidgetArea);
    // History, search and checks share one place, history in front.
    window->tabifyDockWidget(historyDock, searchDock);
    window->tabifyDockWidget(historyDock, checksDock);
    historyDock->raise();
    for (QDockWidget* panel : {dock(window, "tree", QObject::tr("Objects"), tree, Qt::LeftDockWidgetArea),
                               dock(window, "palette", QObject::tr("Shapes"), palette, Qt::LeftDockWidgetArea),
                               dock(window, "properties", QObject::tr("Properties"), properties,
                                    Qt::RightDockWidgetArea),
                               historyDock, searchDock, checksDock})
        panels->addAction(panel->toggleViewAction());
    window->resizeDocks({window->findChild<QDockWidget*>("dock.tree"), historyDock}, {200, 260}, Qt::Horizontal);

    // The panels follow the document once per tick, not at every signal.
    QObject::connect(window, &wbMainWindow::ticked, tree, [tree, properties] {
        iGeometricsLayer* layer = wbDocument::geometrics();
        if (tree->getViewModel() != layer)
            tree->setViewModel(layer);
        tree->refresh();
        iNodeGroup* selected = singleSelection(layer);
        if (selected != properties->object())
            properties->setObject(selected);
        else
            properties->refresh();
    });
}
