#include <iModelStage/viewing/iViewer.h>

#include <iModelStage/viewing/iDragDropInterface.h>

#include <QDataStream>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>

bool iViewer::decodeData(QMimeData const* mime, QString& source, NodeList& nodes)
{
    if (!mime || !mime->hasFormat(iDragDropInterface::mimeType))
        return false;
    QByteArray const bytes = mime->data(iDragDropInterface::mimeType);
    QDataStream stream(bytes);
    stream >> source;
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        QString address;
        stream >> address;
        if (stream.status() != QDataStream::Ok)
            break;
        auto* node = reinterpret_cast<osg::Node*>(static_cast<quintptr>(address.toLongLong(nullptr, 10)));
        nodes.push_back(node);
    }
    return !nodes.empty();
}

void iViewer::dragOver(QDragMoveEvent* event)
{
    QString source;
    NodeList nodes;
    if (!decodeData(event->mimeData(), source, nodes))
        return;
    QByteArray const sourceName = source.toLatin1();
    if (iDragDropInterface::canDrop(static_cast<iBaseView*>(this), sourceName.constData(), getClassName(), nodes))
        event->acceptProposedAction();
    else
        event->ignore();
}

void iViewer::dragEnterEvent(QDragEnterEvent* event)
{
    dragOver(event);
}

void iViewer::dragMoveEvent(QDragMoveEvent* event)
{
    dragOver(event);
}

void iViewer::dropEvent(QDropEvent* event)
{
    QString source;
    NodeList nodes;
    if (!decodeData(event->mimeData(), source, nodes)) {
        event->ignore();
        return;
    }
    QByteArray const sourceName = source.toLatin1();
    iDragDropInterface::drop(static_cast<iBaseView*>(this), sourceName.constData(), getClassName(), nodes);
    event->acceptProposedAction();
}
