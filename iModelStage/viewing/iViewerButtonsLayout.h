#ifndef IMODELSTAGE_VIEWING_IVIEWERBUTTONSLAYOUT_H
#define IMODELSTAGE_VIEWING_IVIEWERBUTTONSLAYOUT_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iSlot.h>
#include <iModelStage/model/NodeList.h>

#include <osg/Vec2i>

class iViewer;
class iViewerBaseButton;

// Places a viewer's on-screen buttons in four rows, one per corner. Hidden
// buttons take no room: the ones after them close up.
class IMODELSTAGE_EXPORT iViewerButtonsLayout : public iSlot {
public:
    // Corners of the viewport, y upward.
    enum iViewerButtonPos : int {
        iButtonsTopLeft = 0,
        iButtonsTopRight = 1,
        iButtonsBottomLeft = 2,
        iButtonsBottomRight = 3
    };

    explicit iViewerButtonsLayout(iViewer* viewer) : m_viewer(viewer) { }

    // Adds the button to the row and to the viewer's UI camera.
    void addButton(iViewerBaseButton* button, iViewerButtonPos pos);
    NodeList const& getButtons(iViewerButtonPos pos) const;
    void relayout();
    void setSpacing(int spacing);
    void setMargin(int margin);
    void setButtonsVisible(iViewerButtonPos pos, bool on);
    void setAllButtonsVisible(bool on);

protected:
    osg::Vec2i getButtonPlacement(iViewerButtonPos pos, int index);
    void relayoutButtons(iViewerButtonPos pos);

private:
    bool validPosition(int pos) const { return pos >= iButtonsTopLeft && pos <= iButtonsBottomRight; }
    void setRowVisible(int pos, bool on);

    int m_spacing = 4;
    int m_margin = 8;
    iViewer* m_viewer;
    NodeList m_buttons[4];
};

#endif
