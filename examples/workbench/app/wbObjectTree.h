#pragma once

#include <iModelStage/viewing/iBaseView.h>

#include <QTreeWidget>

// The objects of the drawing as a tree, by name and class, following the
// document: what is selected here is selected in the viewers and back.
// Changes are gathered and the tree is rebuilt once per tick (refresh).
class wbObjectTree : public QTreeWidget, public iBaseView {
    Q_OBJECT
public:
    explicit wbObjectTree(QWidget* parent = nullptr);

    void setViewModel(iBaseModel* model) override;
    // Brings the tree up to date when something changed.
    void refresh();
    // What the class column shows: the class alias, else a user name of
    // the class.
    static QString classLabel(iRoot const& object);

    void slotObjectAdded(osg::Node*) override { m_dirty = true; }
    void slotObjectRemoved(osg::Node*) override { m_dirty = true; }
    void slotAllObjectsRemoved() override { m_dirty = true; }
    void slotSelectedObjectsRemoved() override { m_dirty = true; }
    void slotModelChanged() override { m_dirty = true; }
    void slotObjectsGroupChanged() override { m_dirty = true; }
    void slotParentChanged(osg::Node*, osg::Group*, osg::Group*) override { m_dirty = true; }
    void slotObjectsSelectionChanged() override { m_selectionDirty = true; }
    void slotObjectsSelectionCleared() override { m_selectionDirty = true; }
    void slotObjectSelectionAdded(osg::Node*) override { m_selectionDirty = true; }
    void slotObjectSelectionRemoved(osg::Node*) override { m_selectionDirty = true; }

private:
    void rebuild();
    void addChildren(QTreeWidgetItem* parent, osg::Group* group);
    void showSelection();
    void takeSelection();

    bool m_dirty = true;
    bool m_selectionDirty = true;
    bool m_syncing = false;
};
