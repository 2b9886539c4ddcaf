#include "app/wbViewer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWindow>

wbViewer::wbViewer(QWidget* parent)
    : iViewer(parent, Qt::WindowFlags())
{
}

void wbViewer::paintGL()
{
    iViewer::paintGL();
    if (!isVisible())
        return;
    ++m_paints;
    if (m_keepFrames && getGLWindow()) {
        int const w = getGLWindow()->width();
        int const h = getGLWindow()->height();
        QImage picture(w, h, QImage::Format_RGBA8888);
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glPixelStorei(GL_PACK_ALIGNMENT, 4);
        gl->glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, picture.bits());
        m_lastFrame = picture.mirrored(false, true).convertToFormat(QImage::Format_RGB888);
    }
    emit framePainted();
}
