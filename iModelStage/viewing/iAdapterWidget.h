#ifndef IMODELSTAGE_VIEWING_IADAPTERWIDGET_H
#define IMODELSTAGE_VIEWING_IADAPTERWIDGET_H

#include <iModelStage/frame/iExport.h>

#include <QOpenGLWidget>

#include <osgViewer/GraphicsWindow>

class QInputEvent;

// The lighter GL widget for hosts: Qt owns the context and delivers the
// input, which goes to an embedded OSG graphics window's event queue with
// the same button numbers and modifier masks as iOpenGLAdapterWidget.
// Keys are sent as the first byte of their text.
//
// When the environment variable IDOTWINE_BOX is set, whatever its value,
// the widget shrinks to 1 x 1 while hidden, for hosts whose window boxes
// would otherwise keep a hidden GL surface at full size.
class IMODELSTAGE_EXPORT iAdapterWidget : public QOpenGLWidget {
    Q_OBJECT
public:
    iAdapterWidget(QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags());
    ~iAdapterWidget() override;

    osgViewer::GraphicsWindowEmbedded* getGraphicsWindow() { return m_graphicsWindow.get(); }
    osgViewer::GraphicsWindowEmbedded const* getGraphicsWindow() const { return m_graphicsWindow.get(); }

    void resizeGL(int width, int height) override;

public slots:
    void updateGL() { update(); }

protected:
    // Hooks for a derived class.
    virtual void createContext() { }
    virtual void initContext() { }

    void adaptKeyModifiers(QInputEvent* event);

    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent*) override { }
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    osgGA::EventQueue* queue() { return m_graphicsWindow->getEventQueue(); }

    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> m_graphicsWindow;
};

#endif
