#include "app/wbObjectTree.h"

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iNodeGroup.h>

#include <QHeaderView>

#include <osg/Group>

namespace {

int const idRole = Qt::UserRole;

// User names of the library's classes that carry no alias of their own.
char const* const classLabels[][2] = {
    {"iLinearQuote", "Quota lineare"},
    {"iPointQuote", "Quota di punto"},
    {"iLeader", "Richiamo"},
};

} // namespace

QString wbObjectTree::classLabel(iRoot const& object)
{
    std::string alias;
    if (iRoot::getClassAlias(object.getClassName(), alias) && !alias.empty())
        return QString::fromStdString(alias);
    QString const name = QString::fromLatin1(object.getClassName());
    for (auto const& row : classLabels)
        if (name == row[0])
            return QString::fromUtf8(iTranslate(row[1]));
    // The class name without its lower-case prefix.
    int start = 0;
    while (start < name.size() && name[start].isLower())
        ++start;
    return start < name.size() ? name.mid(start) : name;
}

namespace {

} // namespace

wbObjectTree::wbObjectTree(QWidget* parent)
    : QTreeWidget(parent)
{
    setObjectName("objectTree");
    setHeaderLabels({tr("Object"), tr("Class")});
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemSelectionChanged, this, &wbObjectTree::takeSelection);
}

void wbObjectTree::setViewModel(iBaseModel* model)
{
    iBaseView::setViewModel(model);
    m_dirty = true;
}

void wbObjectTree::refresh()
{
    if (m_dirty)
        rebuild();
    if (m_selectionDirty)
        showSelection();
}

void wbObjectTree::rebuild()
{
    m_dirty = false;
    m_selectionDirty = true;
    m_syncing = true;
    clear();
    if (iBaseModel* model = getViewModel())
        addChildren(invisibleRootItem(), model->getObjectsRoot());
    expandAll();
    m_syncing = false;
}

void wbObjectTree::addChildren(QTreeWidgetItem* parent, osg::Group* group)
{
    if (!group)
        return;
    for (unsigned int i = 0; i < group->getNumChildren(); ++i) {
        auto* object = dynamic_cast<iNodeGroup*>(group->getChild(i));
        if (!object || iBaseModel::isRendererContainer(object))
            continue;
        auto* item = new QTreeWidgetItem(parent);
        QString name = QString::fromStdString(object->get_name());
        item->setText(0, name.isEmpty() ? tr("(unnamed)") : name);
        item->setText(1, classLabel(*object));
        item->setData(0, idRole, QVariant::fromValue<qlonglong>(object->getUniqueId()));
        addChildren(item, object);
    }
}

void wbObjectTree::showSelection()
{
    m_selectionDirty = false;
    iBaseModel* model = getViewModel();
    if (!model)
        return;
    m_syncing = true;
    for (QTreeWidgetItemIterator it(this); *it; ++it) {
        iNodeGroup* object = model->findObjectByUniqueId((*it)->data(0, idRole).toLongLong());
        (*it)->setSelected(object && model->isObjectSelected(object));
    }
    m_syncing = false;
}

void wbObjectTree::takeSelection()
{
    iBaseModel* model = getViewModel();
    if (m_syncing || !model)
        return;
    m_syncing = true;
    model->clearObjectSelection();
    for (QTreeWidgetItem* item : selectedItems())
        if (iNodeGroup* object = model->findObjectByUniqueId(item->data(0, idRole).toLongLong()))
            model->addObjectSelection(object);
    m_syncing = false;
    m_selectionDirty = false;
}
