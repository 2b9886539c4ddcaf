#ifndef IMODELSTAGE_TESTS_VIEWING_EVENT_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_VIEWING_EVENT_TEST_SUPPORT_H

#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iIAPointBuilder.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

typedef std::vector<std::string> CallLog;

// A tool that writes down every call it gets, with the points rounded to
// whole world units, into a log shared with the test.
class iRecordIA : public iInteractor {
    I_CLASS(iRecordIA, iInteractor, 1)
public:
    iRecordIA()
    {
        setNumSteps(3);
        addStep(QString("Primo"), iIATypeVec3, osg::Vec3f());
        addStep(QString("Secondo"), iIATypeVec3, osg::Vec3f());
        addStep(QString("Terzo"), iIATypeVec3, osg::Vec3f());
    }
    static std::string text(iIAPoint const& p)
    {
        std::ostringstream out;
        osg::Vec3f const& g = p.getGlobalPos();
        out << std::lround(g.x()) << "," << std::lround(g.y()) << "," << std::lround(g.z());
        return out.str();
    }
    void start() override
    {
        note("start");
        iInteractor::start();
    }
    bool move(iIAPoint const& p) override
    {
        note("move " + text(p));
        iInteractor::move(p);
        return moveResult;
    }
    bool click(iIAPoint const& p) override
    {
        note("click " + text(p));
        iInteractor::click(p);
        return true;
    }
    bool release(iIAPoint const& p) override
    {
        note("release " + text(p));
        iInteractor::release(p);
        return true;
    }
    bool keyPressed(int key) override
    {
        note("key " + std::to_string(key));
        return false;
    }
    bool keyReleased(int key) override
    {
        note("keyup " + std::to_string(key));
        return false;
    }
    void cancel() override
    {
        note("cancel");
        iInteractor::cancel();
    }
    void close() override
    {
        note("close");
        iInteractor::close();
    }
    void note(std::string const& line)
    {
        if (log && !(skipMoves && line.rfind("move", 0) == 0))
            log->push_back(line);
    }

    CallLog* log = nullptr;
    bool skipMoves = false;
    bool moveResult = false;
};

// A viewer in the top lookup over a geometrics layer, with the event
// handler attached, a tool manager and a recording tool current. Events
// are real Qt events sent to the GL surface; a painted frame delivers
// them. Positions are given as the handler sees them: pixels from the
// bottom left.
class EventViewerGL : public testing::Test {
protected:
    void SetUp() override
    {
        layer = new iGeometricsLayer;
        ASSERT_TRUE(viewer.openTopView(layer.get())) << "no GL surface: is DISPLAY set?";
        handler = new iViewerEventHandler;
        viewer.addEventHandler(handler.get());
        manager.setCurrentViewer(&viewer);
        tool = new iRecordIA;
        tool->log = &calls;
        ASSERT_TRUE(manager.pushInteractor(tool, false));
        // The hover poll hides the buttons once the pointer is outside.
        QCursor::setPos(viewer.getGLWindow()->mapToGlobal(QPoint(100, 100)));
    }

    int qtY(int y) const { return viewer.getGLWindow()->height() - 1 - y; }
    void send(QEvent* event)
    {
        QCoreApplication::sendEvent(viewer.getGLWindow(), event);
        delete event;
    }
    void mouse(QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        QPointF const at(x, qtY(y));
        Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        send(new QMouseEvent(type, at, at, QPointF(viewer.getGLWindow()->mapToGlobal(at.toPoint())), button, held, mods));
    }
    void moveTo(int x, int y) { mouse(QEvent::MouseMove, x, y, Qt::NoButton); }
    void press(int x, int y, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        mouse(QEvent::MouseButtonPress, x, y, button, mods);
    }
    void release(int x, int y, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonRelease, x, y, button);
    }
    void key(int qtKey, Qt::KeyboardModifiers mods = Qt::NoModifier, QString const& text = QString())
    {
        send(new QKeyEvent(QEvent::KeyPress, qtKey, mods, text));
        send(new QKeyEvent(QEvent::KeyRelease, qtKey, mods, text));
    }
    // Delivers what was sent.
    void frame() { ASSERT_TRUE(viewer.paintFrame()); }
    // The world point under a pixel on the plane z = 0, rounded as the
    // log writes it.
    std::string worldAt(int x, int y)
    {
        osg::Vec3f point;
        iIAPointBuilder(&viewer, tool, float(x), float(y), 0.0f, 0.0f).intersectIPlane(point);
        return iRecordIA::text(iIAPoint(osg::Vec3f(), osg::Vec3f(), point, point));
    }
    CallLog take() { return std::exchange(calls, CallLog()); }

    ProbeViewer viewer;
    osg::ref_ptr<iGeometricsLayer> layer;
    osg::ref_ptr<iViewerEventHandler> handler;
    iInteractorManager manager;
    iRecordIA* tool = nullptr;
    CallLog calls;
};

#endif
