#include <iModelStage/viewing/iOpenGLAdapterWidget.h>

#include <iModelStage/viewing/iGuiEventMapping.h>

#include <QCursor>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QResizeEvent>
#include <QWheelEvent>
#include <QWindow>

namespace {

int const hoverInterval = 500;

// The fixed pixel format of the surface: double-buffered RGB of 8 bits a
// channel, a 16-bit depth buffer, no alpha and no stencil.
QSurfaceFormat surfaceFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    format.setAlphaBufferSize(0);
    format.setDepthBufferSize(16);
    format.setStencilBufferSize(0);
    return format;
}

std::map<int, int>& sharedKeyMap()
{
    static std::map<int, int> table;
    return table;
}

void fillKeyMap(std::map<int, int>& table)
{
    table[Qt::Key_Space] = 32;
    for (int digit = Qt::Key_0; digit <= Qt::Key_9; ++digit)
        table[digit] = digit;
    // Letters arrive lower-case; Shift shows only in the modifier mask.
    for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter)
        table[letter] = letter - Qt::Key_A + 'a';
    table[Qt::Key_Backspace] = osgGA::GUIEventAdapter::KEY_BackSpace;
    // Delete is sent as OSG's Cancel key: the event handler deletes on it.
    table[Qt::Key_Delete] = osgGA::GUIEventAdapter::KEY_Cancel;
    table[Qt::Key_Escape] = osgGA::GUIEventAdapter::KEY_Escape;
    table[Qt::Key_Return] = osgGA::GUIEventAdapter::KEY_Return;
    table[Qt::Key_Enter] = osgGA::GUIEventAdapter::KEY_Return;
    table[Qt::Key_F12] = osgGA::GUIEventAdapter::KEY_F12;
}

} // namespace

// The GL surface. It stands in for a native child window: its input and
// its paint and size notifications go straight to the widget that owns it.
class iOpenGLAdapterWidget::Surface : public QWindow {
public:
    explicit Surface(iOpenGLAdapterWidget* widget) : m_widget(widget)
    {
        setSurfaceType(QSurface::OpenGLSurface);
        setFormat(surfaceFormat());
    }

    // The widget is going: nothing may call back into it any more.
    void detach() { m_widget = nullptr; }

protected:
    bool event(QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::UpdateRequest:
            paint();
            return true;
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::DragLeave:
        case QEvent::Drop:
            return passDrag(event);
        default:
            return QWindow::event(event);
        }
    }

    // Qt gives a drag over the widget to the surface under the pointer: the
    // widget, which decides about drops, takes it. Its handlers are called
    // directly, since an event sent to the widget comes back here through
    // the window container.
    bool passDrag(QEvent* event)
    {
        if (!m_widget)
            return false;
        switch (event->type()) {
        case QEvent::DragEnter:
            m_widget->dragEnterEvent(static_cast<QDragEnterEvent*>(event));
            break;
        case QEvent::DragMove:
            m_widget->dragMoveEvent(static_cast<QDragMoveEvent*>(event));
            break;
        case QEvent::DragLeave:
            m_widget->dragLeaveEvent(static_cast<QDragLeaveEvent*>(event));
            break;
        default:
            m_widget->dropEvent(static_cast<QDropEvent*>(event));
            break;
        }
        return true;
    }

    void exposeEvent(QExposeEvent*) override
    {
        if (isExposed())
            paint();
    }

    void resizeEvent(QResizeEvent* event) override
    {
        if (!m_widget)
            return;
        qreal const ratio = devicePixelRatio();
        m_widget->resizeGL(qRound(event->size().width() * ratio), qRound(event->size().height() * ratio));
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!m_widget)
            return;
        m_widget->m_hoverTimer.start(hoverInterval);
        requestActivate();
        QPointF const at = position(event);
        queue()->mouseMotion(at.x(), at.y());
        updateModifiers(event);
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        int const button = iGuiEventMapping::buttonNumber(event->button());
        if (!m_widget || button == 0)
            return;
        setMouseGrabEnabled(true);
        QPointF const at = position(event);
        queue()->mouseButtonPress(at.x(), at.y(), button);
        updateModifiers(event);
    }

    // A second click is a second press, never a double click.
    void mouseDoubleClickEvent(QMouseEvent*) override { }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        int const button = iGuiEventMapping::buttonNumber(event->button());
        if (!m_widget || button == 0)
            return;
        setMouseGrabEnabled(false);
        QPointF const at = position(event);
        queue()->mouseButtonRelease(at.x(), at.y(), button);
        updateModifiers(event);
    }

    void wheelEvent(QWheelEvent* event) override
    {
        QPoint const delta = event->angleDelta();
        // Only the vertical wheel scrolls.
        if (!m_widget || (delta.y() == 0 && delta.x() != 0))
            return;
        queue()->mouseScroll(iGuiEventMapping::scrollMotion(delta.y()));
        updateModifiers(event);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (m_widget)
            queue()->keyPress(osgKey(event), 0);
    }

    // A held key repeats its press and is released once.
    void keyReleaseEvent(QKeyEvent* event) override
    {
        if (m_widget && !event->isAutoRepeat())
            queue()->keyRelease(osgKey(event), 0);
    }

private:
    osgGA::EventQueue* queue() const { return m_widget->getGraphicsWindow()->getEventQueue(); }

    QPointF position(QMouseEvent* event) const { return event->localPos() * devicePixelRatio(); }

    static int osgKey(QKeyEvent* event)
    {
        std::map<int, int> const& table = keyMap();
        auto const found = table.find(event->key());
        return found == table.end() ? 0 : found->second;
    }

    // Written after the event is queued: an event carries the modifiers of
    // the one before it.
    void updateModifiers(QInputEvent* event) const
    {
        queue()->getCurrentEventState()->setModKeyMask(iGuiEventMapping::modifierMask(event->modifiers()));
    }

    void paint()
    {
        if (!m_widget || !isExposed())
            return;
        m_widget->makeGLCurrent();
        m_widget->paintGL();
        m_widget->swapGLBuffer();
    }

    iOpenGLAdapterWidget* m_widget;
};

iOpenGLAdapterWidget::iOpenGLAdapterWidget(QWidget* parent)
    : QWidget(parent, Qt::WindowFlags()),
      m_graphicsWindow(new osgViewer::GraphicsWindowEmbedded(0, 0, width(), height()))
{
    if (sharedKeyMap().empty())
        fillKeyMap(sharedKeyMap());
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    connect(&m_hoverTimer, &QTimer::timeout, this, &iOpenGLAdapterWidget::pollHover);
}

iOpenGLAdapterWidget::~iOpenGLAdapterWidget()
{
    m_hoverTimer.stop();
    // The surface goes with the container, after this object; from here on
    // it must not reach the widget.
    if (m_surface)
        m_surface->detach();
    delete m_context;
    m_context = nullptr;
    m_graphicsWindow = nullptr;
}

std::map<int, int> const& iOpenGLAdapterWidget::keyMap()
{
    return sharedKeyMap();
}

QWindow* iOpenGLAdapterWidget::getGLWindow() const
{
    return m_surface;
}

bool iOpenGLAdapterWidget::initGL()
{
    if (m_surface)
        return true;
    auto* surface = new Surface(this);
    surface->resize(qMax(1, width()), qMax(1, height()));
    surface->create();
    auto* context = new QOpenGLContext;
    context->setFormat(surface->format());
    if (!surface->handle() || !context->create()) {
        delete context;
        surface->detach();
        delete surface;
        return false;
    }
    m_context = context;
    m_surface = surface;
    m_container = QWidget::createWindowContainer(surface, this);
    m_container->setGeometry(0, 0, width(), height());
    m_container->setFocusPolicy(Qt::ClickFocus);
    m_container->setMouseTracking(true);
    if (isVisible())
        m_container->show();
    return true;
}

void iOpenGLAdapterWidget::makeGLCurrent()
{
    if (m_context && m_surface)
        m_context->makeCurrent(m_surface);
}

void iOpenGLAdapterWidget::swapGLBuffer()
{
    if (m_context && m_surface)
        m_context->swapBuffers(m_surface);
}

void iOpenGLAdapterWidget::setCapture()
{
    if (m_surface)
        m_surface->setMouseGrabEnabled(true);
}

void iOpenGLAdapterWidget::releaseCapture()
{
    if (m_surface)
        m_surface->setMouseGrabEnabled(false);
}

void iOpenGLAdapterWidget::updateGL()
{
    if (m_surface)
        m_surface->requestUpdate();
}

void iOpenGLAdapterWidget::resizeGL(int width, int height)
{
    m_graphicsWindow->getEventQueue()->windowResize(0, 0, width, height);
    m_graphicsWindow->resized(0, 0, width, height);
}

void iOpenGLAdapterWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_container)
        m_container->setGeometry(0, 0, event->size().width(), event->size().height());
}

void iOpenGLAdapterWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_container)
        m_container->show();
}

void iOpenGLAdapterWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (m_container)
        m_container->hide();
}

void iOpenGLAdapterWidget::pollHover()
{
    if (!m_surface)
        return;
    QRect const area(m_surface->mapToGlobal(QPoint(0, 0)), m_surface->size());
    // Posted, as the native poll posted its messages to itself.
    if (!area.contains(QCursor::pos())) {
        m_hoverTimer.stop();
        QMetaObject::invokeMethod(
            this, [this] { mouseLeaveEvent(); }, Qt::QueuedConnection);
        return;
    }
    QMetaObject::invokeMethod(
        this, [this] { mouseEnterEvent(); }, Qt::QueuedConnection);
}
