#pragma once

#include <iModelStage/frame/iSlot.h>

#include <QPointer>
#include <QTreeWidget>

#include <osg/observer_ptr>

#include <functional>
#include <string>
#include <vector>

class iClass;
class iNodeGroup;
class iProperty;
class iRoot;
class iTransformGroup;

// Edits the properties of the selected object, whatever its class: every
// registered property of each level of the class chain, grouped by
// category, labelled from the frame's property info table, each with an
// editor of its type (numbers, switches, texts, colours, points). A change
// is one undo step. Properties of other types show their value read-only.
// The shown values follow the object when a tool or an undo changes it.
class wbPropertyEditor : public QTreeWidget, public iSlot {
    Q_OBJECT
public:
    explicit wbPropertyEditor(QWidget* parent = nullptr);

    // Shows object's properties; null empties the panel.
    void setObject(iNodeGroup* object);
    iNodeGroup* object() const { return m_object.get(); }

    // The editor widget of a property, by property name (objectName
    // "prop.<name>").
    QWidget* editorOf(char const* property) const;

    // Reads the shown values again if the object changed since the last
    // time; cheap when it did not.
    void refresh();

signals:
    void propertyWritten(QString const& property);

private:
    void follow(iNodeGroup* object);
    void forget();
    void slotPropertyChanged(iRoot* object, char const* name);
    void slotMatrixChanged(iTransformGroup* object);
    void slotNameChanged(iRoot* object, std::string name);
    // Keeps the editor's way of showing the object's current value.
    void onRefresh(std::function<void()> show);

    void addNameRow();
    void addProperty(QTreeWidgetItem* category, iClass const& level, iProperty const& property);
    QTreeWidgetItem* categoryItem(QString const& name);
    static std::string categoryOfGroup(iClass const& level, iProperty const& property);
    QWidget* makeEditor(iProperty const& property);
    // Runs a write as one undo step, then redraws the object.
    template <class T>
    void write(iProperty const& property, T const& value);

    osg::observer_ptr<iNodeGroup> m_object;
    std::vector<std::function<void()>> m_shows;
    bool m_stale = false;
};
