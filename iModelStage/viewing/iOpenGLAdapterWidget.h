#ifndef IMODELSTAGE_VIEWING_IOPENGLADAPTERWIDGET_H
#define IMODELSTAGE_VIEWING_IOPENGLADAPTERWIDGET_H

#include <iModelStage/frame/iExport.h>

#include <QTimer>
#include <QWidget>

#include <osgViewer/GraphicsWindow>

#include <map>

class QOpenGLContext;
class QWindow;

// A widget that hosts a GL surface of its own and feeds an embedded OSG
// graphics window: the surface's input goes to the graphics window's event
// queue with OSG's key codes, button numbers and modifier masks, and its
// paint and size notifications come back as paintGL and resizeGL.
//
// The surface is a QWindow with its own context, made by initGL; before
// that the widget is only a placeholder, and makeGLCurrent, swapGLBuffer
// and updateGL do nothing. Entering and leaving are polled every 500 ms
// while the cursor is over the surface, so mouseEnterEvent repeats as long
// as the cursor stays.
class IMODELSTAGE_EXPORT iOpenGLAdapterWidget : public QWidget {
    Q_OBJECT
public:
    explicit iOpenGLAdapterWidget(QWidget* parent);
    ~iOpenGLAdapterWidget() override;

    osgViewer::GraphicsWindowEmbedded* getGraphicsWindow() { return m_graphicsWindow.get(); }
    osgViewer::GraphicsWindowEmbedded const* getGraphicsWindow() const { return m_graphicsWindow.get(); }
    // The GL surface; null until initGL succeeds.
    QWindow* getGLWindow() const;

    void makeGLCurrent();
    void swapGLBuffer();
    // Mouse capture on the surface, as while an on-screen button is held.
    void setCapture();
    void releaseCapture();

    // Hooks of the viewer.
    virtual void init() { }
    virtual void paintGL() { }
    virtual void resizeGL(int width, int height);
    virtual void mouseEnterEvent() { }
    virtual void mouseLeaveEvent() { }

    // Qt keys to OSG key codes, shared by every widget; keys that are not
    // in it are sent as 0.
    static std::map<int, int> const& keyMap();

public slots:
    // Asks for one frame; requests made before it is painted merge into it.
    void updateGL();

protected:
    bool initGL();

    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Surface;
    friend class Surface;

    void pollHover();

    QOpenGLContext* m_context = nullptr;
    Surface* m_surface = nullptr;
    QWidget* m_container = nullptr;
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> m_graphicsWindow;
    QTimer m_hoverTimer;
};

#endif
