#pragma once

#include "app/wbApplication.h"
#include "app/wbCommandLine.h"
#include "app/wbDocument.h"
#include "app/wbFileMenu.h"
#include "app/wbMainWindow.h"
#include "app/wbToolActions.h"
#include "app/wbViewer.h"
#include "viewing/ViewerTestSupport.h"

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/model/iLayersManager.h>

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QToolBar>
#include <QDeadlineTimer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <osg/Camera>

#include <functional>
#include <memory>

// The workbench's main window, shown, with its viewers drawing, its
// settings and undo snapshots in private places, and no questions asked
// about unsaved changes.
class WorkbenchWindowTest : public testing::Test {
protected:
    void SetUp() override
    {
        QStandardPaths::setTestModeEnabled(true);
        ASSERT_TRUE(dir.isValid());
        qputenv("TEMP", QFile::encodeName(dir.path()));
        wbApplication::initialise();
        openWindow();
    }
    void TearDown() override
    {
        window.reset();
        qunsetenv("TEMP");
    }

    void openWindow()
    {
        window = std::make_unique<wbMainWindow>();
        window->fileMenu()->setDiscardQuestion([] { return true; });
        window->tools()->setShotDirectory(dir.filePath("shots"));
        window->resize(1200, 800);
        window->show();
        ASSERT_TRUE(processUntil([this] { return window->isReady(); })) << "no GL surface: is DISPLAY set?";
        for (int i = 0; i < window->viewerCount(); ++i)
            window->viewer(i)->setKeepFrames(true);
        ASSERT_TRUE(viewersDrawing());
    }
    // Waits until every shown viewer draws, its lookup settled.
    bool viewersDrawing()
    {
        for (int i = 0; i < window->viewerCount(); ++i) {
            wbViewer* v = window->viewer(i);
            if (!v->isVisible())
                continue;
            if (!processUntil([v] { return v->getGLWindow()->isExposed() && !v->lastFrame().isNull(); }) ||
                !processUntil([v] { return !v->isLookupAnimating(); }))
                return false;
        }
        return true;
    }
    void closeWindow()
    {
        window->close();
        window.reset();
    }

    // Waits until every viewer has drawn n more frames.
    bool frames(int n = 2)
    {
        int before[2] = {window->viewer(0)->paintCount(), window->viewer(1)->paintCount()};
        return processUntil([&] {
            return window->viewer(0)->paintCount() >= before[0] + n && window->viewer(1)->paintCount() >= before[1] + n;
        });
    }

    wbViewer* plan() const { return window->viewer(0); }
    QWindow* surface(int i = 0) const { return window->viewer(i)->getGLWindow(); }
    iGeometricsLayer* layer() const { return wbDocument::geometrics(); }

    // Surface position (from the top-left) of a world point in a viewer.
    QPoint at(osg::Vec3f const& world, int i = 0) const
    {
        osg::Camera* camera = window->viewer(i)->getCamera();
        osg::Vec3d const w = osg::Vec3d(world) * camera->getViewMatrix() * camera->getProjectionMatrix() *
                             camera->getViewport()->computeWindowMatrix();
        return QPoint(int(w.x() + 0.5), surface(i)->height() - 1 - int(w.y() + 0.5));
    }

    // Real input on the plan's surface, each step given a frame to land.
    void hover(QPoint const& p)
    {
        QTest::mouseMove(surface(), p);
        frames(1);
    }
    void click(QPoint const& p, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        hover(p);
        QTest::mousePress(surface(), Qt::LeftButton, mods, p);
        frames(1);
        QTest::mouseRelease(surface(), Qt::LeftButton, mods, p);
        frames(1);
    }
    void drag(QPoint const& from, QPoint const& to)
    {
        hover(from);
        QTest::mousePress(surface(), Qt::LeftButton, Qt::NoModifier, from);
        frames(1);
        for (int k = 1; k <= 4; ++k)
            hover(from + (to - from) * k / 4);
        QTest::mouseRelease(surface(), Qt::LeftButton, Qt::NoModifier, to);
        frames(1);
    }
    void key(int k, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        QTest::keyClick(surface(), Qt::Key(k), mods);
        frames(1);
    }
    // Clicks the tool bar button of an action, by the action's name.
    bool press(QString const& actionName)
    {
        QAction* action = window->findChild<QAction*>(actionName);
        if (!action)
            return false;
        for (QToolBar* bar : window->findChildren<QToolBar*>()) {
            QWidget* button = bar->widgetForAction(action);
            if (button && button->isVisible() && button->isEnabled()) {
                QTest::mouseClick(button, Qt::LeftButton);
                frames(1);
                return true;
            }
        }
        return false;
    }
    // Types a line into the command line and presses Return there.
    void type(QString const& text)
    {
        wbCommandLine* line = window->commandLine();
        line->setFocus();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
        frames(1);
    }

    // Takes a picture of the plan's rectangle with the screenshot tool: a
    // drag, then Return. Null if no picture was saved.
    QImage screenshot(QPoint const& from, QPoint const& to)
    {
        if (!press("tool.screenshot"))
            return QImage();
        drag(from, to);
        key(Qt::Key_Return);
        QDir shots(dir.filePath("shots"));
        if (!processUntil([&] { return !shots.entryList({"*.png"}).isEmpty(); }))
            return QImage();
        return QImage(shots.filePath(shots.entryList({"*.png"}).front()));
    }

    QTemporaryDir dir;
    std::unique_ptr<wbMainWindow> window;
};
