#ifndef IMODELSTAGE_TESTS_VIEWING_VIEWER_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_VIEWING_VIEWER_TEST_SUPPORT_H

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerManager.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWindow>

#include <osg/Geode>
#include <osg/Geometry>

#include <cmath>
#include <cstdlib>
#include <functional>

// Runs the event loop until done says so; false if it never does.
inline bool processUntil(std::function<bool()> const& done, int milliseconds = 5000)
{
    QDeadlineTimer deadline(milliseconds);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

// A viewer that keeps a copy of every frame it draws, read from the back
// buffer before the swap: the picture the user is about to see.
class ProbeViewer : public iViewer {
public:
    ProbeViewer() : iViewer(nullptr, Qt::WindowFlags()) { }

    using iViewer::updateProjection;

    void paintGL() override
    {
        iViewer::paintGL();
        if (!isVisible())
            return;
        ++paints;
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        int const w = getGLWindow()->width();
        int const h = getGLWindow()->height();
        QImage picture(w, h, QImage::Format_RGBA8888);
        gl->glPixelStorei(GL_PACK_ALIGNMENT, 4);
        gl->glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, picture.bits());
        frame = picture.mirrored(false, true);
    }

    // Colour at a window pixel, y upward from the bottom as GL counts.
    QColor pixel(int x, int y) const { return frame.pixelColor(x, frame.height() - 1 - y); }

    // Opens the surface and waits until it can be drawn.
    bool open(int w, int h)
    {
        resize(w, h);
        show();
        init();
        return getGLWindow() && processUntil([this] { return getGLWindow()->isExposed(); }) &&
               processUntil([this, w] { return getCamera()->getViewport()->width() == w; }) &&
               processUntil([this] { return !isLookupAnimating(); });
    }

    // A 200 x 200 surface looking down on model from the top, switched
    // there at once: 16 units across, the origin in the middle.
    bool openTopView(iBaseModel* model)
    {
        if (!open(200, 200))
            return false;
        setLookupSwitchAnimate(false);
        setViewLookup(iView::iLookupTop);
        setViewModel(model);
        return true;
    }

    // Paints one frame and waits for it.
    bool paintFrame()
    {
        int const before = paints;
        updateGL();
        return processUntil([this, before] { return paints > before; });
    }

    // Window position of a world point under the camera as it is now.
    osg::Vec3d project(osg::Vec3d const& world)
    {
        osg::Camera* camera = getCamera();
        return world * camera->getViewMatrix() * camera->getProjectionMatrix() *
               camera->getViewport()->computeWindowMatrix();
    }

    int paints = 0;
    QImage frame;
};

inline bool sameColor(QColor const& c, int r, int g, int b, int tolerance = 2)
{
    return std::abs(c.red() - r) <= tolerance && std::abs(c.green() - g) <= tolerance &&
           std::abs(c.blue() - b) <= tolerance;
}

// A quad between two corners at z = 0 in the group's colour, unlit, so
// that the picture shows the colour as it is.
inline osg::Geode* unlitQuad(iGeometricGroup* group, float x0, float y0, float x1, float y1)
{
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    corners->push_back(osg::Vec3f(x0, y0, 0.0f));
    corners->push_back(osg::Vec3f(x1, y0, 0.0f));
    corners->push_back(osg::Vec3f(x1, y1, 0.0f));
    corners->push_back(osg::Vec3f(x0, y1, 0.0f));
    osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
    quad->setVertexArray(corners.get());
    quad->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
    quad->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, 4));
    auto* geode = new osg::Geode;
    geode->addDrawable(quad.get());
    geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    return geode;
}

// Test classes: a group and a renderer that draws the square of side 4
// around the origin; the mask is open to the tests.
class iViewerTestGroup : public iGeometricGroup {
    I_CLASS(iViewerTestGroup, iGeometricGroup, 3)
    I_OSG_NODE(iViewerTestGroup)
public:
    iViewerTestGroup() = default;
    iViewerTestGroup(iViewerTestGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop)
    {
    }
    using iGeometricGroup::getCachedRenderer;

protected:
    ~iViewerTestGroup() override = default;
};

class iViewerTestRenderer : public iGeometryRenderer {
    I_CLASS(iViewerTestRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iViewerTestRenderer)
public:
    iViewerTestRenderer() = default;
    iViewerTestRenderer(iViewerTestRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override { addChild(unlitQuad(group, -2.0f, -2.0f, 2.0f, 2.0f)); }
    using iGeometryRenderer::setRenderMask;

protected:
    ~iViewerTestRenderer() override = default;
};

// A red square of side 4 around the origin, built through its renderer.
inline osg::ref_ptr<iViewerTestGroup> makeRedSquare()
{
    iGeometryRendererManager::registerGeometricRenderer("iViewerTestGroup", "iViewerTestRenderer", 1);
    osg::ref_ptr<iViewerTestGroup> group = new iViewerTestGroup;
    group->setColor(osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f));
    group->updateGeometry(true);
    return group;
}

#endif
