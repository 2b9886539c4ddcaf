#include <iModelStage/viewing/iViewerSliderButton.h>

#include <iModelStage/viewing/iViewer.h>

void iViewerSliderButton::mousePressEvent(int button, osg::Vec2i const& at)
{
    if (button != 0)
        return;
    if (getViewer())
        getViewer()->setCapture();
    m_dragging = true;
    m_last = at;
    m_delta = osg::Vec2i(0, 0);
    sigSliderPressed(at.x(), at.y());
}

void iViewerSliderButton::mouseMoveEvent(osg::Vec2i const& at)
{
    if (!m_dragging)
        return;
    m_delta = at - m_last;
    sigSliderMoved(m_last.x(), m_last.y(), m_delta.x(), m_delta.y());
    m_last = at;
}

void iViewerSliderButton::mouseReleaseEvent(int button, osg::Vec2i const&)
{
    if (button != 0)
        return;
    if (getViewer())
        getViewer()->releaseCapture();
    m_dragging = false;
    sigReleased();
}
