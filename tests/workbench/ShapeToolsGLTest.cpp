#include "workbench/ShapeTestSupport.h"

#include "viewing/ViewerTestSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbCreateBoxIA.h"
#include "shapes/wbCreatePolylineIA.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/model/iUndoRedoManager.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>

namespace {

// A top view of the document's geometrics layer (200 x 200 pixels, 12.5
// pixels a unit, the origin in the middle) with the event handler; the
// tools get real Qt events on the GL surface, delivered by painted frames.
class ShapeToolsGL : public ShapeDocumentTest {
protected:
    void SetUp() override
    {
        ShapeDocumentTest::SetUp();
        if (HasFatalFailure())
            return;
        ASSERT_TRUE(viewer.openTopView(layer)) << "no GL surface: is DISPLAY set?";
        handler = new iViewerEventHandler;
        viewer.addEventHandler(handler.get());
        manager.setCurrentViewer(&viewer);
        QCursor::setPos(viewer.getGLWindow()->mapToGlobal(QPoint(100, 100)));
    }
    void TearDown() override
    {
        // A persistent tool stays on a pop.
        while (iInteractor* tool = manager.getCurrentInteractor()) {
            tool->setPersistent(false);
            manager.popInteractor();
        }
        ShapeDocumentTest::TearDown();
    }

    void use(iInteractor* tool) { ASSERT_TRUE(manager.pushInteractor(tool, false)); }
    void send(QEvent* event)
    {
        QCoreApplication::sendEvent(viewer.getGLWindow(), event);
        delete event;
    }
    // x, y from the bottom left, as the handler counts them.
    void mouse(QEvent::Type type, int x, int y, Qt::MouseButton button)
    {
        QPointF const at(x, viewer.getGLWindow()->height() - 1 - y);
        Qt::MouseButtons const held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        send(new QMouseEvent(type, at, at, QPointF(viewer.getGLWindow()->mapToGlobal(at.toPoint())), button, held,
                             Qt::NoModifier));
    }
    void click(int x, int y)
    {
        mouse(QEvent::MouseMove, x, y, Qt::NoButton);
        mouse(QEvent::MouseButtonPress, x, y, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, x, y, Qt::LeftButton);
        frame();
    }
    void doubleClick(int x, int y)
    {
        click(x, y);
        mouse(QEvent::MouseButtonDblClick, x, y, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, x, y, Qt::LeftButton);
        frame();
    }
    void key(int qtKey)
    {
        send(new QKeyEvent(QEvent::KeyPress, qtKey, Qt::NoModifier));
        send(new QKeyEvent(QEvent::KeyRelease, qtKey, Qt::NoModifier));
        frame();
    }
    void frame()
    {
        ASSERT_TRUE(viewer.paintFrame());
        manager.loop();
        document->loop();
    }

    template <class T>
    std::vector<T*> objects()
    {
        std::vector<T*> out;
        osg::Group* root = layer->getObjectsRoot();
        for (unsigned int i = 0; i < root->getNumChildren(); ++i)
            if (auto* object = dynamic_cast<T*>(root->getChild(i)))
                out.push_back(object);
        return out;
    }
    // Where the ray through a pixel meets the plane z = 0, from the camera
    // alone.
    osg::Vec3d worldAt(int x, int y)
    {
        osg::Camera* camera = viewer.getCamera();
        osg::Matrixd const inverse = osg::Matrixd::inverse(
            camera->getViewMatrix() * camera->getProjectionMatrix() * camera->getViewport()->computeWindowMatrix());
        osg::Vec3d const near = osg::Vec3d(x, y, 0.0) * inverse;
        osg::Vec3d const far = osg::Vec3d(x, y, 1.0) * inverse;
        return near + (far - near) * (-near.z() / (far.z() - near.z()));
    }
    size_t undoSteps() { return document->getUndoRedoManager()->getUndoList().size(); }

    ProbeViewer viewer;
    osg::ref_ptr<iViewerEventHandler> handler;
    iInteractorManager manager;
};

// Within a pixel (0.08 units) along each axis: the handler takes a pixel
// at its centre.
bool near(osg::Vec3d const& a, osg::Vec3d const& b, double tolerance = 0.12)
{
    return (a - b).length() <= tolerance;
}

} // namespace

TEST_F(ShapeToolsGL, BoxFromTwoCornersAndAHeightIsOneUndoStep)
{
    use(new wbCreateBoxIA);
    // Two corners, then a third point further along x: that distance is
    // the height.
    click(70, 80);
    click(120, 130);
    EXPECT_TRUE(objects<wbBox>().empty());
    click(150, 130);
    std::vector<wbBox*> boxes = objects<wbBox>();
    ASSERT_EQ(boxes.size(), 1u);
    osg::Vec3d const a = worldAt(70, 80), b = worldAt(120, 130), c = worldAt(150, 130);
    EXPECT_TRUE(near(boxes[0]->getWorldMatrix().getTrans(), a));
    EXPECT_TRUE(near(boxes[0]->getSize(), osg::Vec3d(b.x() - a.x(), b.y() - a.y(), c.x() - b.x())));
    EXPECT_EQ(manager.getCount(), 0);
    EXPECT_EQ(undoSteps(), 1u);
    EXPECT_EQ(document->getUndoRedoManager()->getUndoList().front()->getName(), "Crea parallelepipedo");

    ASSERT_TRUE(document->undo(1, true));
    EXPECT_TRUE(objects<wbBox>().empty());
}

TEST_F(ShapeToolsGL, FlatBoxBaseIsRefusedAndTheToolWaits)
{
    auto* tool = new wbCreateBoxIA;
    use(tool);
    click(70, 80);
    // Same x: no area.
    click(70, 130);
    EXPECT_EQ(tool->getCurrentStep(), 1);
    click(120, 130);
    EXPECT_EQ(tool->getCurrentStep(), 2);
    // A third click on the second corner keeps the tool's height.
    click(120, 130);
    std::vector<wbBox*> boxes = objects<wbBox>();
    ASSERT_EQ(boxes.size(), 1u);
    osg::Vec3d const base = worldAt(120, 130) - worldAt(70, 80);
    EXPECT_TRUE(near(boxes[0]->getSize(), osg::Vec3d(base.x(), base.y(), 1)));
}

TEST_F(ShapeToolsGL, PolylineEndsWithEnterOrADoubleClickAndCancelsWithEscape)
{
    use(new wbCreatePolylineIA);
    click(100, 100);
    click(150, 100);
    click(150, 150);
    EXPECT_TRUE(objects<wbPolyline>().empty());
    key(Qt::Key_Return);
    std::vector<wbPolyline*> lines = objects<wbPolyline>();
    ASSERT_EQ(lines.size(), 1u);
    ASSERT_EQ(lines[0]->getNumVertices(), 3);
    osg::Vec3d const origin = worldAt(100, 100);
    EXPECT_TRUE(near(lines[0]->getWorldMatrix().getTrans(), origin));
    osg::Vec3Array const& v = *lines[0]->getVertices();
    EXPECT_TRUE(near(v[1], worldAt(150, 100) - origin));
    EXPECT_TRUE(near(v[2], worldAt(150, 150) - origin));
    EXPECT_EQ(undoSteps(), 1u);

    use(new wbCreatePolylineIA);
    click(50, 50);
    doubleClick(50, 150);
    lines = objects<wbPolyline>();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1]->getNumVertices(), 2);
    EXPECT_TRUE(near(lines[1]->getWorldMatrix().getTrans(), worldAt(50, 50)));
    EXPECT_EQ(undoSteps(), 2u);

    use(new wbCreatePolylineIA);
    click(60, 60);
    click(60, 140);
    key(Qt::Key_Escape);
    EXPECT_EQ(objects<wbPolyline>().size(), 2u);
    EXPECT_EQ(undoSteps(), 2u);
    EXPECT_EQ(manager.getCount(), 0);

    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(objects<wbPolyline>().size(), 1u);
}

TEST_F(ShapeToolsGL, PaintedBoxShowsItsColour)
{
    osg::ref_ptr<wbBox> box = new wbBox;
    box->setSize(osg::Vec3d(4, 4, 1));
    box->setPosition(osg::Vec3f(-2, -2, 0));
    box->setColor(osg::Vec4f(1, 0, 0, 1));
    layer->addObject(box.get(), true);
    frame();
    frame();
    QColor const inside = viewer.pixel(100, 100);
    QColor const outside = viewer.pixel(20, 20);
    viewer.frame.save(QString::fromStdString(testing::TempDir() + "ShapeBoxColour.png"));
    EXPECT_GT(inside.red(), 150) << inside.name().toStdString();
    EXPECT_LT(inside.green(), 60);
    EXPECT_LT(inside.blue(), 60);
    EXPECT_NE(outside, inside);

    // A new colour shows without a rebuild.
    box->setColor(osg::Vec4f(0, 0, 1, 1));
    frame();
    EXPECT_GT(viewer.pixel(100, 100).blue(), 150);
    EXPECT_LT(viewer.pixel(100, 100).red(), 60);
}

TEST_F(ShapeToolsGL, GrabbingTheBoxArrowMovesTheBoxAlongItsAxis)
{
    // Gizmos answer while the current tool is idle or persistent.
    auto* idle = new iInteractor;
    idle->setPersistent(true);
    use(idle);
    iManipulatorsManager::getInstance()->setGeometricsLayer(layer);
    osg::ref_ptr<wbBox> box = new wbBox;
    layer->addObject(box.get(), true);
    layer->addObjectSelection(box.get());
    ASSERT_NE(iManipulatorsManager::getInstance()->getCurrentManipulator(), nullptr);
    frame();

    // The X arrow runs 60 pixels to the right of the box's origin.
    click(130, 100);
    ASSERT_EQ(manager.getCount(), 2);
    EXPECT_TRUE(near(box->getWorldMatrix().getTrans(), osg::Vec3d()));
    // The move follows the pointer along the arrow's image.
    mouse(QEvent::MouseMove, 155, 100, Qt::NoButton);
    frame();
    click(155, 100);
    EXPECT_EQ(manager.getCount(), 1);
    osg::Vec3d const moved = box->getWorldMatrix().getTrans();
    EXPECT_TRUE(near(moved, osg::Vec3d((worldAt(155, 100) - worldAt(100, 100)).x(), 0, 0)));
    EXPECT_EQ(undoSteps(), 1u);
    layer->clearObjectSelection();
    iManipulatorsManager::getInstance()->setGeometricsLayer(nullptr);
}
