#include "app/wbHistoryPanel.h"

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iUndoRedoManager.h>

namespace {

int const stepRole = Qt::UserRole;

} // namespace

wbHistoryPanel::wbHistoryPanel(iLayersManager* document, QWidget* parent)
    : QListWidget(parent), m_document(document)
{
    setObjectName("historyPanel");
    document->getUndoRedoManager()->sigUndoListChanged.connect(this, &wbHistoryPanel::slotUndoListChanged);
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { goTo(item->data(stepRole).toInt()); });
    refresh();
}

void wbHistoryPanel::refresh()
{
    clear();
    iUndoRedoManager* undo = m_document->getUndoRedoManager();
    auto const& redoList = undo->getRedoList();
    // The front of the redo list is the next step to redo.
    int redoCount = static_cast<int>(redoList.size());
    for (auto it = redoList.rbegin(); it != redoList.rend(); ++it, --redoCount) {
        auto* item = new QListWidgetItem(QString::fromStdString((*it)->getName()), this);
        item->setForeground(Qt::gray);
        item->setToolTip(tr("Redo up to here"));
        item->setData(stepRole, -redoCount);
    }
    int index = 0;
    for (iUndoRedoManager::iUndoRedoManagerItem const* step : undo->getUndoList()) {
        auto* item = new QListWidgetItem(QString::fromStdString(step->getName()), this);
        item->setToolTip(tr("Undo back to before this step"));
        item->setData(stepRole, index++);
    }
}

void wbHistoryPanel::goTo(int step)
{
    if (step < 0)
        m_document->redo(-step);
    else
        m_document->undo(step + 1, true);
    refresh();
}
