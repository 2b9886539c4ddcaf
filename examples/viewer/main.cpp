// A window with one viewer showing a small document: a few boxes drawn by
// a renderer that this program registers for its own object class, on a
// grid. A host timer drives the layers' loop and the viewers' paint.
//
//     viewer [--frames N] [--screenshot picture.png]
//
// With --frames the program quits after N painted frames; with
// --screenshot it also saves the last frame, as drawn, before quitting.
#include <iModelStage/iModelStage.h>

#include <QApplication>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTimer>
#include <QWindow>

#include <osg/Geode>
#include <osg/ShapeDrawable>

#include <cstdio>
#include <cstdlib>
#include <cstring>

// An object of this program: a box of a given size.
class iExampleBox : public iGeometricGroup {
    I_CLASS(iExampleBox, iGeometricGroup, 3)
    I_OSG_NODE(iExampleBox)
public:
    iExampleBox() = default;
    iExampleBox(iExampleBox const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop), size(other.size)
    {
    }

    osg::Vec3f size{1.0f, 1.0f, 1.0f};

protected:
    ~iExampleBox() override = default;
};

// Draws an iExampleBox as a lit solid in the object's colour.
class iExampleBoxRenderer : public iGeometryRenderer {
    I_CLASS(iExampleBoxRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iExampleBoxRenderer)
public:
    iExampleBoxRenderer() = default;
    iExampleBoxRenderer(iExampleBoxRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }

    void rebuildGeometry(iGeometricGroup* group) override
    {
        auto* box = dynamic_cast<iExampleBox*>(group);
        if (!box)
            return;
        osg::Vec3f const& s = box->size;
        auto* shape = new osg::ShapeDrawable(new osg::Box(osg::Vec3(0, 0, s.z() * 0.5f), s.x(), s.y(), s.z()));
        shape->setColor(box->getColor());
        auto* geode = new osg::Geode;
        geode->addDrawable(shape);
        addChild(geode);
    }

protected:
    ~iExampleBoxRenderer() override = default;
};

I_REGISTER_CLASS(iExampleBox)
I_REGISTER_CLASS(iExampleBoxRenderer)

// The viewer of this window; it keeps the last frame it drew when asked.
class ExampleViewer : public iViewer {
public:
    ExampleViewer() : iViewer(nullptr, Qt::WindowFlags()) { }

    void paintGL() override
    {
        iViewer::paintGL();
        if (!isVisible())
            return;
        ++paints;
        if (!keepFrames)
            return;
        // The back buffer before the swap: what is about to be shown.
        int const w = getGLWindow()->width();
        int const h = getGLWindow()->height();
        QImage picture(w, h, QImage::Format_RGBA8888);
        QOpenGLContext::currentContext()->functions()->glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE,
                                                                    picture.bits());
        lastFrame = picture.mirrored(false, true).convertToFormat(QImage::Format_RGB888);
    }

    int paints = 0;
    bool keepFrames = false;
    QImage lastFrame;
};

namespace {

struct Options {
    int frames = -1;
    char const* screenshot = nullptr;
};

bool parse(int argc, char** argv, Options& options)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--frames") == 0 && i + 1 < argc)
            options.frames = std::atoi(argv[++i]);
        else if (std::strcmp(argv[i], "--screenshot") == 0 && i + 1 < argc)
            options.screenshot = argv[++i];
        else
            return false;
    }
    if (options.screenshot && options.frames < 0)
        options.frames = 30;
    return true;
}

iExampleBox* addBox(iNodeLayer* layer, osg::Vec3f const& at, osg::Vec3f const& size, osg::Vec4f const& colour)
{
    auto* box = new iExampleBox;
    box->size = size;
    box->setColor(colour);
    box->setPosition(at);
    layer->addObject(box, true);
    box->updateGeometry(false);
    return box;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    Options options;
    if (!parse(argc, argv, options)) {
        std::fprintf(stderr, "usage: %s [--frames N] [--screenshot picture.png]\n", argv[0]);
        return 2;
    }

    iLayersManager document;
    iNodeLayer* layer = iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer");
    if (!layer || !iGeometryRendererManager::registerGeometricRenderer("iExampleBox", "iExampleBoxRenderer", 1)) {
        std::fprintf(stderr, "cannot set up the document\n");
        return 1;
    }
    NodeList boxes;
    boxes.push_back(addBox(layer, osg::Vec3f(0, 0, 0), osg::Vec3f(4, 4, 1), osg::Vec4f(0.85f, 0.2f, 0.15f, 1)));
    boxes.push_back(addBox(layer, osg::Vec3f(5, 1, 0), osg::Vec3f(2, 2, 3), osg::Vec4f(0.2f, 0.7f, 0.25f, 1)));
    boxes.push_back(addBox(layer, osg::Vec3f(-1, 5, 0), osg::Vec3f(3, 1.5f, 2), osg::Vec4f(0.95f, 0.8f, 0.1f, 1)));
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_hstep(1.0);
    grid->set_vstep(1.0);
    grid->set_nhs(10);
    grid->set_nvs(10);

    ExampleViewer viewer;
    viewer.setWindowTitle(QStringLiteral("iModelStage viewer"));
    viewer.resize(640, 480);
    viewer.show();
    viewer.init();
    viewer.keepFrames = options.screenshot != nullptr;
    viewer.setViewModel(layer);
    viewer.setGrid(grid.get());
    grid->updateGeometry(true);

    // Build the boxes once, then look at them from the axonometric corner.
    document.loop();
    viewer.setLookupSwitchAnimate(false);
    viewer.setViewLookup(iView::iLookupAxonometric);
    viewer.zoomBounds(boxes);

    QTimer tick;
    tick.setInterval(16);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        document.loop();
        if (iViewerManager* viewers = iViewerManager::getInstance())
            viewers->paintViewers();
        if (options.frames < 0 || viewer.paints < options.frames)
            return;
        tick.stop();
        if (options.screenshot && !viewer.lastFrame.save(QString::fromLocal8Bit(options.screenshot))) {
            std::fprintf(stderr, "cannot write %s\n", options.screenshot);
            app.exit(1);
            return;
        }
        app.quit();
    });
    tick.start();
    return app.exec();
}
