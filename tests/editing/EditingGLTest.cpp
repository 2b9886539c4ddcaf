#include "editing/EditingTestSupport.h"
#include "support/GeometricsDocumentTest.h"
#include "viewing/ViewerTestSupport.h"

#include <iModelStage/editing/iEditingManager.h>
#include <iModelStage/editing/iGeometryHandlerManager.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/interaction/iTranslateIA.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <QMouseEvent>
#include <QWindow>

#include <cmath>

I_EDIT_TEST_CLASSES

namespace {

// A polyline in a document layer, shown from the top in a viewer of
// 200 x 200 pixels (12.5 pixels a unit, the origin in the middle) whose
// event handler feeds a persistent pick tool. The polyline stands turned by
// a quarter turn, so that its local frame is not the world's.
class HandleEditingGL : public GeometricsDocumentTest {
protected:
    void SetUp() override
    {
        GeometricsDocumentTest::SetUp();
        if (HasFatalFailure())
            return;
        ASSERT_TRUE(viewer.openTopView(layer)) << "no GL surface: is DISPLAY set?";
        handler = new iViewerEventHandler;
        viewer.addEventHandler(handler.get());
        manager.setCurrentViewer(&viewer);
        select = new iSelectIA;
        select->setPersistent(true);
        ASSERT_TRUE(manager.pushInteractor(select, false));

        iGeometryRendererManager::registerGeometricRenderer("iEditTestLine", "iEditTestLineRenderer", 1);
        iGeometryHandlerManager::registerGeometricHandler("iEditTestLine", "iEditTestHandler");
        line = new iEditTestLine;
        osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
        for (float y : {0.0f, 3.0f, 6.0f})
            points->push_back(osg::Vec3f(0.0f, y, 0.0f));
        line->setVertices(*points);
        line->setRotation(osg::Vec3f(0.0f, 0.0f, float(M_PI / 2.0)));
        line->setPosition(osg::Vec3f(3.0f, -2.0f, 0.0f));
        layer->addObject(line.get(), false);
        tick();
    }
    void TearDown() override
    {
        editing.setEditing(false, "");
        viewer.removeEventHandler(handler.get());
        GeometricsDocumentTest::TearDown();
    }
    // A frame that delivers the events sent so far, one turn of the
    // host's loop (the document, the tools), and a frame that shows it.
    void tick()
    {
        ASSERT_TRUE(viewer.paintFrame());
        document->loop();
        manager.loop();
        ASSERT_TRUE(viewer.paintFrame());
    }
    // A mouse event at a window pixel counted from the bottom left, with
    // the left button.
    void mouse(QEvent::Type type, osg::Vec2f const& at)
    {
        QWindow* surface = viewer.getGLWindow();
        QPointF const local(at.x(), surface->height() - 1 - at.y());
        Qt::MouseButtons const held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        Qt::MouseButton const button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, local, local, QPointF(surface->mapToGlobal(local.toPoint())), button, held,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(surface, &event);
    }
    osg::Vec2f pixelOf(osg::Vec3f const& world)
    {
        osg::Vec3d const w = viewer.project(world);
        return osg::Vec2f(std::round(float(w.x())), std::round(float(w.y())));
    }
    // Move, press and release at one place, each delivered by a frame.
    void clickAt(osg::Vec2f const& at)
    {
        for (QEvent::Type type : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            mouse(type, at);
            tick();
        }
    }
    osg::Vec3f worldVertex(unsigned int i) { return (*line->getVertices())[i] * line->getWorldMatrix(); }

    ProbeViewer viewer;
    osg::ref_ptr<iViewerEventHandler> handler;
    iInteractorManager manager;
    iSelectIA* select = nullptr;
    iEditingManager editing;
    osg::ref_ptr<iEditTestLine> line;
};

bool near(osg::Vec3f const& a, osg::Vec3f const& b, float tolerance = 1e-4f)
{
    return (a - b).length() <= tolerance;
}

TEST_F(HandleEditingGL, ADraggedHandleMovesTheVertexAndUndoPutsItBack)
{
    // The polyline runs along y = -2 from x = 3 to x = -3; a click selects it.
    clickAt(pixelOf(osg::Vec3f(1.5f, -2.0f, 0.0f)));
    ASSERT_TRUE(layer->isObjectSelected(line.get()));
    editing.setEditing(true, "iEditTestHandler");
    iGeometricsLayer* edit = editing.getWorkingLayer();
    ASSERT_EQ(edit->getObjectsRoot()->getNumChildren(), 3u);
    tick();
    viewer.frame.save(QString::fromStdString(testing::TempDir() + "handle_editing.png"));
    // Each handle shows as a white square over the yellow line.
    for (unsigned int i = 0; i < 3; ++i) {
        osg::Vec2f const c = pixelOf(worldVertex(i));
        EXPECT_TRUE(sameColor(viewer.pixel(int(c.x()), int(c.y())), 255, 255, 255, 30)) << i;
    }

    // Pick the middle handle, then move it up by 50 pixels with the move
    // tool, to which the host gives the editing layer for good.
    osg::Vec3f const start = worldVertex(1);
    osg::Vec2f const from = pixelOf(start);
    osg::Vec2f const to = from + osg::Vec2f(0.0f, 50.0f);
    QColor const empty = viewer.pixel(int(to.x()), int(to.y()));
    clickAt(from);
    auto* middle = dynamic_cast<iBaseHandle*>(edit->getObjectsRoot()->getChild(1));
    ASSERT_TRUE(edit->isObjectSelected(middle));
    auto* move = new iTranslateIA;
    move->setGeometricsLayer(edit);
    move->lockGeometricLayer(true);
    ASSERT_TRUE(manager.pushInteractor(move, false));
    clickAt(from);
    mouse(QEvent::MouseMove, from + osg::Vec2f(0.0f, 20.0f));
    tick();
    clickAt(to);
    EXPECT_EQ(manager.getCurrentInteractor(), select);

    // 4 units, give or take the rounding to whole pixels. The vertex is
    // kept in the polyline's own frame, a quarter turn away.
    EXPECT_TRUE(near(middle->getPosition(), start + osg::Vec3f(0.0f, 4.0f, 0.0f), 0.1f));
    EXPECT_TRUE(near((*line->getVertices())[1], osg::Vec3f(4.0f, 3.0f, 0.0f), 0.1f));
    EXPECT_TRUE(near(worldVertex(1), middle->getPosition()));
    QColor const there = viewer.pixel(int(to.x()), int(to.y()));
    EXPECT_FALSE(sameColor(there, empty.red(), empty.green(), empty.blue(), 40)) << "no handle where it went";

    // Undo ends editing and gives the vertex back.
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_FALSE(editing.getEditing());
    EXPECT_EQ(select->getGeometricsLayer(), layer);
    line = dynamic_cast<iEditTestLine*>(layer->getObjectsRoot()->getChild(0));
    ASSERT_TRUE(line.valid());
    EXPECT_TRUE(near((*line->getVertices())[1], osg::Vec3f(0.0f, 3.0f, 0.0f)));
    tick();
    QColor const after = viewer.pixel(int(to.x()), int(to.y()));
    EXPECT_TRUE(sameColor(after, empty.red(), empty.green(), empty.blue(), 10)) << "a handle is left on screen";
}

} // namespace
