#include "app/wbShapePalette.h"

#include <iModelStage/frame/iRoot.h>

#include <QDataStream>
#include <QMimeData>

namespace {

char const* const payloadType = "iapplication/dragdrop.data";
char const* const shapeClasses[][2] = {
    {"wbBox", "Box"},
    {"wbCylinder", "Cylinder"},
    {"wbPolyline", "Polyline"},
    {"wbLabel", "Label"},
};

} // namespace

wbShapePalette::wbShapePalette(QWidget* parent)
    : QListWidget(parent)
{
    setObjectName("shapePalette");
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setSelectionMode(QAbstractItemView::SingleSelection);
    for (auto const& row : shapeClasses) {
        iRoot* made = iRoot::newClass(row[0]);
        auto* node = dynamic_cast<osg::Node*>(made);
        if (!node) {
            delete made;
            continue;
        }
        m_models[row[0]] = node;
        auto* item = new QListWidgetItem(tr(row[1]), this);
        item->setData(Qt::UserRole, QString(row[0]));
        item->setToolTip(tr("Drag into a view"));
    }
    if (count() == 0) {
        auto* none = new QListWidgetItem(tr("(no shapes in this build)"), this);
        none->setFlags(Qt::NoItemFlags);
    }
}

QStringList wbShapePalette::mimeTypes() const
{
    return {payloadType};
}

QMimeData* wbShapePalette::payloadFor(QString const& className) const
{
    auto const found = m_models.find(className);
    if (found == m_models.end())
        return nullptr;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << className;
    out << QString::number(reinterpret_cast<quintptr>(found->second.get()));
    auto* mime = new QMimeData;
    mime->setData(payloadType, bytes);
    return mime;
}

QMimeData* wbShapePalette::mimeData(QList<QListWidgetItem*> const items) const
{
    if (items.isEmpty())
        return nullptr;
    return payloadFor(items.front()->data(Qt::UserRole).toString());
}
