#pragma once

#include <QPointer>
#include <QTreeWidget>

#include <osg/observer_ptr>

class iNodeGroup;
class iProperty;
class iRoot;

// Edits the properties of the selected object, whatever its class: every
// registered property of each level of the class chain, grouped by
// category, labelled from the frame's property info table, each with an
// editor of its type (numbers, switches, texts, colours, points). A change
// is one undo step. Properties of other types are shown read-only.
class wbPropertyEditor : public QTreeWidget {
    Q_OBJECT
public:
    explicit wbPropertyEditor(QWidget* parent = nullptr);

    // Shows object's properties; null empties the panel.
    void setObject(iNodeGroup* object);
    iNodeGroup* object() const { return m_object.get(); }

    // The editor widget of a property, by property name (objectName
    // "prop.<name>").
    QWidget* editorOf(char const* property) const;

signals:
    void propertyWritten(QString const& property);

private:
    void addNameRow();
    void addProperty(QTreeWidgetItem* category, char const* className, iProperty const& property);
    QTreeWidgetItem* categoryItem(QString const& name);
    QWidget* makeEditor(iProperty const& property);
    // Runs a write as one undo step, then redraws the object.
    template <class T>
    void write(iProperty const& property, T const& value);

    osg::observer_ptr<iNodeGroup> m_object;
};
