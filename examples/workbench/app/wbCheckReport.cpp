#include "app/wbCheckReport.h"

#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/reporting/iExceptionBlock.h>
#include <iModelStage/reporting/iExceptionItem.h>
#include <iModelStage/reporting/iExceptionManager.h>

#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QString typeText(iExceptionItem::ItemType type)
{
    switch (type) {
    case iExceptionItem::Error:
        return QWidget::tr("Error");
    case iExceptionItem::Warning:
        return QWidget::tr("Warning");
    case iExceptionItem::Information:
        break;
    }
    return QWidget::tr("Note");
}

int const idRole = Qt::UserRole;

} // namespace

wbCheckReport::wbCheckReport(iLayersManager* document, QWidget* parent)
    : QWidget(parent), m_document(document), m_list(new QTreeWidget(this))
{
    setObjectName("checkReport");
    m_list->setObjectName("checkList");
    m_list->setHeaderLabels({tr("Check"), tr("Kind"), tr("Message")});
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* run = new QPushButton(tr("Run checks"), this);
    run->setObjectName("runChecks");
    connect(run, &QPushButton::clicked, this, &wbCheckReport::runChecks);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(run);
    layout->addWidget(m_list);
    document->setExceptionManagerInterface(this);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [](QTreeWidgetItem* item) {
        long const id = item->data(0, idRole).toLongLong();
        iLayersManager* manager = iLayersManager::getInstance();
        iNodeGroup* object = manager && id > 0 ? manager->findObjectByUniqueId(id) : nullptr;
        iNodeLayer* layer = iLayersManager::getCurrentLayer();
        if (!object || !layer)
            return;
        layer->clearObjectSelection();
        layer->addObjectSelection(object);
    });
}

void wbCheckReport::runChecks()
{
    iExceptionManager checks(m_document);
    checks.start(tr("Checks").toStdString(), nullptr, 1, {});
}

void wbCheckReport::start(std::string const&)
{
    m_list->clear();
    m_blocks.clear();
}

void wbCheckReport::clear()
{
    m_list->clear();
    m_blocks.clear();
}

void wbCheckReport::handleBlock(iExceptionBlock* block)
{
    m_blocks.push_back(block);
}

void wbCheckReport::end()
{
    // The blocks are complete now; they live until the next check run.
    for (iExceptionBlock* block : m_blocks) {
        auto* top = new QTreeWidgetItem(m_list, {QString::fromStdString(block->getTitle())});
        for (iExceptionItem const& found : block->getItems()) {
            auto* row = new QTreeWidgetItem(top, {QString(), typeText(found.getType()),
                                                  QString::fromStdString(found.getFormattedMessage())});
            if (iNodeGroup* object = found.getObject())
                row->setData(0, idRole, QVariant::fromValue<qlonglong>(object->getUniqueId()));
        }
        top->setText(1, tr("%n item(s)", nullptr, block->getNumItems()));
    }
    m_blocks.clear();
    m_list->expandAll();
    if (m_list->topLevelItemCount() == 0)
        new QTreeWidgetItem(m_list, {tr("No problems found.")});
}
