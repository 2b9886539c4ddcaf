#include "geometry/GeometryTestSupport.h"

#include <gtest/gtest.h>

#include <osg/Camera>
#include <osg/GraphicsContext>
#include <osg/Image>
#include <osgDB/WriteFile>
#include <osgViewer/Viewer>

#include <cstdlib>

namespace {

GEOMETRY_TEST_GROUP(iGLQuadGroup)

// Draws the left half of the unit square.
class iHalfQuadRenderer : public iQuadTestRenderer {
    I_CLASS(iHalfQuadRenderer, iQuadTestRenderer, 1)
    I_OSG_NODE(iHalfQuadRenderer)
public:
    iHalfQuadRenderer() { corner[2] = 0.5f; }
    iHalfQuadRenderer(iHalfQuadRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iQuadTestRenderer(other, copyop)
    {
    }

protected:
    ~iHalfQuadRenderer() override = default;
};

int const kSize = 64;

// One viewer over an off-screen surface, looking at the unit square from
// above, with pixels read back after each frame.
class OffscreenView {
public:
    explicit OffscreenView(osg::Node* scene)
    {
        osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
        traits->readDISPLAY();
        traits->setUndefinedScreenDetailsToDefaultScreen();
        traits->width = kSize;
        traits->height = kSize;
        traits->pbuffer = true;
        traits->doubleBuffer = false;
        traits->red = traits->green = traits->blue = 8;
        traits->depth = 24;
        osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits.get());
        if (!context) {
            // Some servers give no pixel buffers: a window nobody maps will do.
            traits->pbuffer = false;
            context = osg::GraphicsContext::createGraphicsContext(traits.get());
        }
        if (!context)
            return;
        osg::Camera* camera = m_viewer.getCamera();
        camera->setGraphicsContext(context.get());
        camera->setViewport(0, 0, kSize, kSize);
        camera->setProjectionMatrixAsOrtho2D(0.0, 1.0, 0.0, 1.0);
        camera->setViewMatrix(osg::Matrixd::identity());
        camera->setClearColor(osg::Vec4f(0, 0, 0, 1));
        GLenum const buffer = traits->doubleBuffer ? GL_BACK : GL_FRONT;
        camera->setDrawBuffer(buffer);
        camera->setReadBuffer(buffer);
        m_image = new osg::Image;
        m_image->allocateImage(kSize, kSize, 1, GL_RGBA, GL_UNSIGNED_BYTE);
        camera->attach(osg::Camera::COLOR_BUFFER, m_image.get());
        m_viewer.setThreadingModel(osgViewer::Viewer::SingleThreaded);
        m_viewer.setCameraManipulator(nullptr);
        m_viewer.setSceneData(scene);
        m_viewer.realize();
    }

    bool valid() const { return m_image.valid() && m_viewer.isRealized(); }

    void frame() { m_viewer.frame(); }

    osg::Vec4ub pixel(int x, int y) const
    {
        unsigned char const* p = m_image->data(x, y);
        return osg::Vec4ub(p[0], p[1], p[2], p[3]);
    }

    void save(char const* name) const
    {
        osgDB::writeImageFile(*m_image, std::string(testing::TempDir()) + name);
    }

private:
    osgViewer::Viewer m_viewer;
    osg::ref_ptr<osg::Image> m_image;
};

bool sameColour(osg::Vec4ub const& p, int r, int g, int b)
{
    return std::abs(p.r() - r) <= 2 && std::abs(p.g() - g) <= 2 && std::abs(p.b() - b) <= 2;
}

} // namespace

I_REGISTER_CLASS(iQuadTestRenderer)
I_REGISTER_CLASS(iGLQuadGroup)
I_REGISTER_CLASS(iHalfQuadRenderer)

TEST(GeometricGroupGL, RendererDrawsInTheGroupColourAndFollowsColourChanges)
{
    ASSERT_TRUE(iGeometryRendererManager::registerGeometricRenderer("iGLQuadGroup", "iHalfQuadRenderer", 1));
    osg::ref_ptr<iGLQuadGroup> group = new iGLQuadGroup;
    group->setColor(osg::Vec4f(1, 0, 0, 1));
    group->updateGeometry(false);
    ASSERT_EQ(group->getCachedRenderer().size(), 1u);
    auto* renderer = dynamic_cast<iHalfQuadRenderer*>(group->getCachedRenderer()[0].get());
    ASSERT_TRUE(renderer);

    osg::ref_ptr<osg::Group> root = new osg::Group;
    root->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    root->addChild(group.get());
    OffscreenView view(root.get());
    ASSERT_TRUE(view.valid()) << "no GL surface: is DISPLAY set?";

    view.frame();
    view.save("geometric_group_red.png");
    EXPECT_TRUE(sameColour(view.pixel(kSize / 4, kSize / 2), 255, 0, 0));
    EXPECT_TRUE(sameColour(view.pixel(3 * kSize / 4, kSize / 2), 0, 0, 0));

    // A new colour shows at the next frame with the same drawables.
    osg::Node* drawn = renderer->getChild(0);
    group->setColor(osg::Vec4f(0, 1, 0, 1));
    view.frame();
    view.save("geometric_group_green.png");
    EXPECT_EQ(renderer->rebuilds, 1);
    EXPECT_EQ(renderer->getChild(0), drawn);
    EXPECT_TRUE(sameColour(view.pixel(kSize / 4, kSize / 2), 0, 255, 0));
    EXPECT_TRUE(sameColour(view.pixel(3 * kSize / 4, kSize / 2), 0, 0, 0));

    // Through the property as well.
    group->set_clr(osg::Vec4f(0, 0, 1, 1));
    view.frame();
    EXPECT_TRUE(sameColour(view.pixel(kSize / 4, kSize / 2), 0, 0, 255));
}
