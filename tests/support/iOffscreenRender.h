#ifndef IMODELSTAGE_TESTS_SUPPORT_IOFFSCREENRENDER_H
#define IMODELSTAGE_TESTS_SUPPORT_IOFFSCREENRENDER_H

// Off-screen rendering for GL tests: draw a node into a frame buffer object
// of a given size and read the picture back.
//
// Needs an X display with GLX (the tests run under Xvfb with Mesa's
// software renderer). A pbuffer of the same size carries the GL context; a
// window stands in where the server offers no pbuffer. The camera renders
// into a frame buffer object whose colour buffer is read into an image
// after every frame, so what is on the screen never matters.
//
//     iOffscreenRender render(200, 100);
//     ASSERT_TRUE(render.valid());
//     render.setTopView(0, 20, 0, 10);              // world x 0..20, y 0..10
//     render.setClearColor(osg::Vec4f(0, 0, 0, 1));
//     render.render(scene);                          // one frame
//     osg::Vec2i at = render.project(osg::Vec3f(5, 5, 0));
//     osg::Vec4ub colour = render.pixel(at.x(), at.y());
//     render.savePng("/tmp/picture.png");
//
// Pixel coordinates are GL window coordinates: x from the left, y from the
// bottom, as osg::Image stores rows. The PNG and toQImage() are the
// picture as a viewer shows it, top row first.
//
// Multisampling is off and the viewer runs single-threaded, so a pixel's
// colour depends only on the scene and the view. Lighting stays as the
// scene sets it: the viewer adds no light of its own (NO_LIGHT) unless
// setHeadlight(true) is called before the first render.

#include <osg/Camera>
#include <osg/GraphicsContext>
#include <osg/Image>
#include <osg/Matrixd>
#include <osg/Node>
#include <osg/Vec2i>
#include <osg/Vec4f>
#include <osg/Vec4ub>
#include <osgViewer/Viewer>

#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

class iOffscreenRender {
public:
    iOffscreenRender(int width, int height) : m_width(width), m_height(height)
    {
        m_viewer = new osgViewer::Viewer;
        m_viewer->setThreadingModel(osgViewer::Viewer::SingleThreaded);
        m_viewer->setLightingMode(osg::View::NO_LIGHT);
        m_viewer->setKeyEventSetsDone(0);
        m_context = createContext(true);
        if (!m_context)
            m_context = createContext(false);
        if (!m_context)
            return;

        m_image = new osg::Image;
        m_image->allocateImage(width, height, 1, GL_RGBA, GL_UNSIGNED_BYTE);

        osg::Camera* camera = m_viewer->getCamera();
        camera->setGraphicsContext(m_context.get());
        camera->setViewport(0, 0, width, height);
        // The view decides the depth range, not the scene's bounds.
        camera->setComputeNearFarMode(osg::Camera::DO_NOT_COMPUTE_NEAR_FAR);
        camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
        camera->attach(osg::Camera::COLOR_BUFFER, m_image.get());
        camera->setClearColor(osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f));
        setTopView(0.0, width, 0.0, height);
    }

    ~iOffscreenRender()
    {
        // The context goes with the viewer; release the scene first so that
        // its GL objects are freed while the context still exists.
        if (m_viewer.valid())
            m_viewer->setSceneData(nullptr);
    }

    iOffscreenRender(iOffscreenRender const&) = delete;
    iOffscreenRender& operator=(iOffscreenRender const&) = delete;

    // False when no GL context could be made (no display, no GLX).
    bool valid() const { return m_context.valid(); }
    int width() const { return m_width; }
    int height() const { return m_height; }
    osgViewer::Viewer* viewer() const { return m_viewer.get(); }
    osg::Camera* camera() const { return m_viewer->getCamera(); }
    // The picture of the last frame; its rows run from the bottom.
    osg::Image* image() const { return m_image.get(); }

    void setClearColor(osg::Vec4f const& color) { camera()->setClearColor(color); }
    void setHeadlight(bool on) { m_viewer->setLightingMode(on ? osg::View::HEADLIGHT : osg::View::NO_LIGHT); }

    // Any view and projection.
    void setView(osg::Matrixd const& view, osg::Matrixd const& projection)
    {
        camera()->setViewMatrix(view);
        camera()->setProjectionMatrix(projection);
    }

    // Looking down -Z onto the plane z = 0: world x from left to right
    // across the width, world y from bottom to top across the height.
    // Everything with z between -depth and depth is drawn.
    void setTopView(double left, double right, double bottom, double top, double depth = 1000.0)
    {
        setView(osg::Matrixd::lookAt(osg::Vec3d(0.0, 0.0, depth), osg::Vec3d(0.0, 0.0, 0.0), osg::Vec3d(0.0, 1.0, 0.0)),
                osg::Matrixd::ortho(left, right, bottom, top, 0.0, 2.0 * depth));
    }

    // Draws node in one frame and reads the picture back. Returns the
    // image, or null without a context.
    osg::Image* render(osg::Node* node)
    {
        if (!valid())
            return nullptr;
        if (m_viewer->getSceneData() != node)
            m_viewer->setSceneData(node);
        if (!m_viewer->isRealized())
            m_viewer->realize();
        m_viewer->frame();
        return m_image.get();
    }

    // The window position of a world point under the current view.
    osg::Vec2i project(osg::Vec3f const& world) const
    {
        osg::Matrixd const toWindow =
            camera()->getViewMatrix() * camera()->getProjectionMatrix() * camera()->getViewport()->computeWindowMatrix();
        osg::Vec3d const at = osg::Vec3d(world) * toWindow;
        return osg::Vec2i(static_cast<int>(at.x()), static_cast<int>(at.y()));
    }

    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }

    // The colour at a window position of the last frame; transparent black
    // outside the picture.
    osg::Vec4ub pixel(int x, int y) const
    {
        if (!m_image.valid() || !inside(x, y))
            return osg::Vec4ub(0, 0, 0, 0);
        unsigned char const* p = m_image->data(x, y);
        return osg::Vec4ub(p[0], p[1], p[2], p[3]);
    }

    // How many pixels of the window rectangle [x0, x1) x [y0, y1), clipped
    // to the picture, satisfy test.
    int count(std::function<bool(osg::Vec4ub const&)> const& test, int x0, int y0, int x1, int y1) const
    {
        int found = 0;
        for (int y = std::max(y0, 0); y < std::min(y1, m_height); ++y)
            for (int x = std::max(x0, 0); x < std::min(x1, m_width); ++x)
                found += test(pixel(x, y)) ? 1 : 0;
        return found;
    }
    int count(std::function<bool(osg::Vec4ub const&)> const& test) const
    {
        return count(test, 0, 0, m_width, m_height);
    }

    // Whether two colours differ by at most tolerance in each of R, G, B.
    static bool near(osg::Vec4ub const& a, osg::Vec4ub const& b, int tolerance = 8)
    {
        for (int i = 0; i < 3; ++i)
            if (std::abs(int(a[i]) - int(b[i])) > tolerance)
                return false;
        return true;
    }
    static osg::Vec4ub toBytes(osg::Vec4f const& color)
    {
        auto byte = [](float v) { return static_cast<unsigned char>(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f)); };
        return osg::Vec4ub(byte(color.r()), byte(color.g()), byte(color.b()), byte(color.a()));
    }

    // The last frame top row first, as a viewer shows it.
    QImage toQImage() const
    {
        if (!m_image.valid())
            return QImage();
        QImage picture(m_width, m_height, QImage::Format_RGBA8888);
        for (int y = 0; y < m_height; ++y)
            std::memcpy(picture.scanLine(m_height - 1 - y), m_image->data(0, y), std::size_t(m_width) * 4);
        return picture;
    }

    bool savePng(std::string const& path) const { return toQImage().save(QString::fromStdString(path), "PNG"); }

private:
    osg::ref_ptr<osg::GraphicsContext> createContext(bool pbuffer) const
    {
        osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
        traits->readDISPLAY();
        traits->setUndefinedScreenDetailsToDefaultScreen();
        traits->x = 0;
        traits->y = 0;
        traits->width = m_width;
        traits->height = m_height;
        traits->windowDecoration = false;
        traits->doubleBuffer = !pbuffer;
        traits->pbuffer = pbuffer;
        traits->red = traits->green = traits->blue = 8;
        traits->alpha = 8;
        traits->depth = 24;
        traits->samples = 0;
        traits->sampleBuffers = 0;
        traits->sharedContext = nullptr;
        osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits.get());
        return context.valid() && context->valid() ? context : nullptr;
    }

    int m_width;
    int m_height;
    osg::ref_ptr<osgViewer::Viewer> m_viewer;
    osg::ref_ptr<osg::GraphicsContext> m_context;
    osg::ref_ptr<osg::Image> m_image;
};

#endif
