#include "app/wbSearchPanel.h"

#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/reporting/iSearcher.h>
#include <iModelStage/reporting/iSearcherItem.h>
#include <iModelStage/viewing/iViewer.h>

#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <list>

namespace {

int const idRole = Qt::UserRole;

} // namespace

wbSearchPanel::wbSearchPanel(QWidget* parent)
    : QWidget(parent), m_box(new QLineEdit(this)), m_results(new QListWidget(this))
{
    setObjectName("searchPanel");
    m_box->setObjectName("searchBox");
    m_box->setPlaceholderText(tr("Search objects"));
    m_box->setClearButtonEnabled(true);
    m_results->setObjectName("searchResults");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_box);
    layout->addWidget(m_results);
    connect(m_box, &QLineEdit::textChanged, this, &wbSearchPanel::search);
    connect(m_results, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { pick(item->data(idRole).toLongLong()); });
}

void wbSearchPanel::search(QString const& text)
{
    m_results->clear();
    iLayersManager* document = iLayersManager::getInstance();
    if (text.trimmed().isEmpty() || !document)
        return;
    std::list<iSearcherItem> found;
    iSearcher searcher;
    searcher.search(document, text.trimmed().toStdString(), found);
    for (iSearcherItem const& hit : found) {
        auto* object = dynamic_cast<iNodeGroup*>(hit.getObject());
        if (!object)
            continue;
        QString const name = QString::fromStdString(object->get_name());
        auto* item = new QListWidgetItem(
            QString("%1 (%2)").arg(name.isEmpty() ? tr("unnamed") : name, QString::fromStdString(object->getClassAlias())),
            m_results);
        item->setData(idRole, QVariant::fromValue<qlonglong>(object->getUniqueId()));
    }
}

void wbSearchPanel::pick(long id)
{
    iLayersManager* document = iLayersManager::getInstance();
    iNodeGroup* object = document ? document->findObjectByUniqueId(id) : nullptr;
    iNodeLayer* layer = iLayersManager::getCurrentLayer();
    if (!object || !layer)
        return;
    layer->clearObjectSelection();
    layer->addObjectSelection(object);
    iInteractorManager* tools = iInteractorManager::getInteractorManager();
    if (iViewer* viewer = tools ? tools->getCurrentViewer() : nullptr)
        viewer->zoomBounds(NodeList{object});
}
