#include <iModelStage/viewing/iAdapterWidget.h>

#include <iModelStage/viewing/iGuiEventMapping.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cstdlib>

namespace {

// Read at the first event any such widget handles, then kept.
bool boxRuleApplies()
{
    static bool const set = std::getenv("IDOTWINE_BOX") != nullptr;
    return set;
}

// The first byte of the key's text, sign-extended; 0 for a key without
// text.
int keyCode(QKeyEvent* event)
{
    QByteArray const text = event->text().toLatin1();
    return static_cast<signed char>(text.constData()[0]);
}

} // namespace

iAdapterWidget::iAdapterWidget(QWidget* parent, Qt::WindowFlags flags)
    : QOpenGLWidget(parent, flags), m_graphicsWindow(new osgViewer::GraphicsWindowEmbedded(0, 0, width(), height()))
{
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
}

iAdapterWidget::~iAdapterWidget() = default;

void iAdapterWidget::resizeGL(int width, int height)
{
    queue()->windowResize(0, 0, width, height);
    m_graphicsWindow->resized(0, 0, width, height);
}

void iAdapterWidget::adaptKeyModifiers(QInputEvent* event)
{
    queue()->getCurrentEventState()->setModKeyMask(iGuiEventMapping::modifierMask(event->modifiers()));
}

bool iAdapterWidget::event(QEvent* event)
{
    if (boxRuleApplies()) {
        if (event->type() == QEvent::Show)
            setMaximumSize(QSize(16777215, 16777215));
        else if (event->type() == QEvent::Hide)
            setMaximumSize(QSize(1, 1));
    }
    return QOpenGLWidget::event(event);
}

void iAdapterWidget::keyPressEvent(QKeyEvent* event)
{
    queue()->keyPress(keyCode(event), 0);
}

void iAdapterWidget::keyReleaseEvent(QKeyEvent* event)
{
    queue()->keyRelease(keyCode(event), 0);
}

void iAdapterWidget::mousePressEvent(QMouseEvent* event)
{
    queue()->mouseButtonPress(event->x(), event->y(), iGuiEventMapping::buttonNumber(event->button()));
    adaptKeyModifiers(event);
}

void iAdapterWidget::mouseReleaseEvent(QMouseEvent* event)
{
    queue()->mouseButtonRelease(event->x(), event->y(), iGuiEventMapping::buttonNumber(event->button()));
    adaptKeyModifiers(event);
}

void iAdapterWidget::mouseMoveEvent(QMouseEvent* event)
{
    queue()->mouseMotion(event->x(), event->y());
    adaptKeyModifiers(event);
}

void iAdapterWidget::wheelEvent(QWheelEvent* event)
{
    queue()->mouseScroll(iGuiEventMapping::scrollMotion(event->angleDelta().y()));
    adaptKeyModifiers(event);
}
