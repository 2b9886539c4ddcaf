#ifndef IMODELSTAGE_VIEWING_IVIEWERSLIDERBUTTON_H
#define IMODELSTAGE_VIEWING_IVIEWERSLIDERBUTTON_H

#include <iModelStage/viewing/iViewerButton.h>

#include <QCursor>

// A button that is dragged: pressing starts a tool at the pointer, every
// move while held reports the step since the last one, and the release
// ends the tool. Only button 0 drives it.
class IMODELSTAGE_EXPORT iViewerSliderButton : public iViewerButton {
public:
    iViewerSliderButton(iViewer* viewer, QImage const& image) : iViewerButton(viewer, image) { }

    void mousePressEvent(int button, osg::Vec2i const& at) override;
    void mouseReleaseEvent(int button, osg::Vec2i const& at) override;
    void mouseMoveEvent(osg::Vec2i const& at) override;

    bool isDragging() const { return m_dragging; }

    sigslot::signal2<int, int> sigSliderPressed;
    sigslot::signal4<int, int, int, int> sigSliderMoved;

protected:
    ~iViewerSliderButton() override = default;

private:
    QCursor m_cursor;
    osg::Vec2i m_last;
    bool m_dragging = false;
    osg::Vec2i m_delta;
};

#endif
