#pragma once

#include <QListWidget>

#include <osg/Node>
#include <osg/ref_ptr>

#include <map>

class QMimeData;

// The shapes a user can drag into a viewer. Each entry keeps a model
// object of its class alive for the drag, whose address the payload of the
// type "iapplication/dragdrop.data" carries; the viewer's drop callback
// puts a copy where the shape is dropped.
class wbShapePalette : public QListWidget {
    Q_OBJECT
public:
    explicit wbShapePalette(QWidget* parent = nullptr);

    // The payload for dragging the entry of that class; null if unknown.
    QMimeData* payloadFor(QString const& className) const;

protected:
    QMimeData* mimeData(QList<QListWidgetItem*> const items) const override;
    QStringList mimeTypes() const override;

private:
    std::map<QString, osg::ref_ptr<osg::Node>> m_models;
};
