#pragma once

#include <iModelStage/frame/iSlot.h>

#include <QListWidget>

class iLayersManager;

// The undo history: the steps that can be redone (greyed, farthest on top),
// then the steps that can be undone, most recent first. A click on a step
// takes the document back to just before it, or forward to just after it.
class wbHistoryPanel : public QListWidget, public iSlot {
    Q_OBJECT
public:
    explicit wbHistoryPanel(iLayersManager* document, QWidget* parent = nullptr);

    void refresh();
    // Undoes everything down to and including the undo step at index (0 is
    // the latest); negative indices redo that many steps.
    void goTo(int step);

private:
    void slotUndoListChanged() { refresh(); }

    iLayersManager* m_document;
};
