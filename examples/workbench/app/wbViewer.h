#pragma once

#include <iModelStage/viewing/iViewer.h>

#include <QImage>

// A viewer of the workbench. It can keep a copy of the frame it draws, read
// from the back buffer before the swap, for the window's screenshots and
// for tests; keeping is off by default since it costs a read-back a frame.
class wbViewer : public iViewer {
    Q_OBJECT
public:
    explicit wbViewer(QWidget* parent = nullptr);

    void paintGL() override;

    void setKeepFrames(bool on) { m_keepFrames = on; }
    bool getKeepFrames() const { return m_keepFrames; }
    // The last frame kept, top row first; null before the first.
    QImage const& lastFrame() const { return m_lastFrame; }
    // Frames drawn while visible.
    int paintCount() const { return m_paints; }

signals:
    void framePainted();

private:
    bool m_keepFrames = false;
    int m_paints = 0;
    QImage m_lastFrame;
};
