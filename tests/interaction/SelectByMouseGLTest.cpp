#include "interaction/ToolsGLFixture.h"

#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <QMouseEvent>
#include <QWindow>

namespace {

// The pick tool fed by real mouse events on the viewer's surface, through
// the viewer's event handler.
class SelectByMouse : public ToolsGLFixture {
protected:
    void SetUp() override
    {
        ToolsGLFixture::SetUp();
        handler = new iViewerEventHandler;
        viewer.addEventHandler(handler.get());
        auto* select = new iSelectIA;
        select->setPersistent(true);
        ASSERT_TRUE(manager.pushInteractor(select, false));
    }
    void mouse(QEvent::Type type, osg::Vec2f const& at, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        QWindow* surface = viewer.getGLWindow();
        QPointF const local(at.x(), surface->height() - 1 - at.y());
        Qt::MouseButtons const held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        Qt::MouseButton const button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, local, local, QPointF(surface->mapToGlobal(local.toPoint())), button, held, mods);
        QCoreApplication::sendEvent(surface, &event);
    }
    void clickAt(osg::Vec3f const& world, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        mouse(QEvent::MouseMove, pixel(world), mods);
        ASSERT_TRUE(viewer.paintFrame());
        mouse(QEvent::MouseButtonPress, pixel(world), mods);
        ASSERT_TRUE(viewer.paintFrame());
        mouse(QEvent::MouseButtonRelease, pixel(world), mods);
        ASSERT_TRUE(viewer.paintFrame());
    }
    osg::ref_ptr<iViewerEventHandler> handler;
};

TEST_F(SelectByMouse, ClicksSelectToggleAndClear)
{
    osg::ref_ptr<iSnapTestGroup> a = square(-6.0f, -1.0f, -4.0f, 1.0f);
    osg::ref_ptr<iSnapTestGroup> b = square(2.0f, -1.0f, 4.0f, 1.0f);
    ASSERT_TRUE(viewer.paintFrame());
    clickAt({-5.0f, 0.0f, 0.0f});
    EXPECT_TRUE(layer->isObjectSelected(a.get()));
    EXPECT_FALSE(layer->isObjectSelected(b.get()));
    clickAt({3.0f, 0.0f, 0.0f}, Qt::ControlModifier);
    EXPECT_TRUE(layer->isObjectSelected(a.get()));
    EXPECT_TRUE(layer->isObjectSelected(b.get()));
    clickAt({0.0f, 5.0f, 0.0f});
    EXPECT_EQ(layer->getSelectionCount(), 0);
}

} // namespace
