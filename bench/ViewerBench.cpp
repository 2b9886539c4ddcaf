// One frame of a scene of 10,000 geometric groups (a 100 x 100 grid of
// small boxes of 12 triangles, one renderer each) drawn through an iViewer
// with its whole scene tree, against the same scene drawn by a bare
// osgViewer::Viewer on an off-screen surface of the same size; and the
// viewer's ray pick at the window centre against the same pick with
// osgUtil::LineSegmentIntersector on the bare scene. Medians over 200 runs
// after 20 warm-up runs, nothing changing between them. The aims: a frame
// at most 1.10 times, a pick at most 1.2 times the bare one. Needs a
// display (the benchmarks run under Xvfb like the GL tests).
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/viewing/iViewer.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWindow>

#include <osg/Geode>
#include <osg/Geometry>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>
#include <osgViewer/Viewer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

class iBenchBox : public iGeometricGroup {
    I_CLASS(iBenchBox, iGeometricGroup, 3)
    I_OSG_NODE(iBenchBox)
public:
    iBenchBox() = default;
    iBenchBox(iBenchBox const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop)
    {
    }

protected:
    ~iBenchBox() override = default;
};

// A unit box of 12 triangles with face normals, in the group's colour.
class iBenchBoxRenderer : public iGeometryRenderer {
    I_CLASS(iBenchBoxRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iBenchBoxRenderer)
public:
    iBenchBoxRenderer() = default;
    iBenchBoxRenderer(iBenchBoxRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }

    void rebuildGeometry(iGeometricGroup* group) override
    {
        static int const faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                        {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        static float const normals[6][3] = {{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}};
        auto corner = [](int i) { return osg::Vec3f(float(i & 1), float((i >> 1) & 1), float((i >> 2) & 1)); };
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
        osg::ref_ptr<osg::Vec3Array> vertexNormals = new osg::Vec3Array;
        for (int f = 0; f < 6; ++f) {
            int const order[6] = {0, 1, 2, 0, 2, 3};
            for (int k : order) {
                vertices->push_back(corner(faces[f][k]));
                vertexNormals->push_back(osg::Vec3f(normals[f][0], normals[f][1], normals[f][2]));
            }
        }
        osg::ref_ptr<osg::Geometry> box = new osg::Geometry;
        box->setVertexArray(vertices.get());
        box->setNormalArray(vertexNormals.get(), osg::Array::BIND_PER_VERTEX);
        box->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
        box->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 36));
        auto* geode = new osg::Geode;
        geode->addDrawable(box.get());
        addChild(geode);
    }

protected:
    ~iBenchBoxRenderer() override = default;
};

I_REGISTER_CLASS(iBenchBox)
I_REGISTER_CLASS(iBenchBoxRenderer)

namespace {

int const kSide = 100;
int const kWidth = 640;
int const kHeight = 480;
int const kWarmUp = 20;
int const kRuns = 200;

struct Scene {
    osg::ref_ptr<osg::Group> model;
    iViewer* viewer = nullptr;
    osg::ref_ptr<osgViewer::Viewer> bare;
};

Scene& scene()
{
    static Scene s;
    return s;
}

osg::Group* buildModel()
{
    iGeometryRendererManager::registerGeometricRenderer("iBenchBox", "iBenchBoxRenderer", 1);
    auto* model = new osg::Group;
    for (int i = 0; i < kSide * kSide; ++i) {
        osg::ref_ptr<iBenchBox> box = new iBenchBox;
        box->setPosition(osg::Vec3f(float(i % kSide) * 2.0f, float(i / kSide) * 2.0f, 0.0f));
        box->setColor(osg::Vec4f(0.2f + 0.6f * float(i % 7) / 7.0f, 0.5f, 0.8f, 1.0f));
        box->updateGeometry(true);
        model->addChild(box.get());
    }
    return model;
}

osgViewer::Viewer* makeBareViewer(osg::Camera const* like)
{
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->readDISPLAY();
    traits->setUndefinedScreenDetailsToDefaultScreen();
    traits->width = kWidth;
    traits->height = kHeight;
    traits->pbuffer = true;
    traits->doubleBuffer = false;
    traits->red = traits->green = traits->blue = 8;
    traits->depth = 16;
    osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits.get());
    if (!context.valid())
        return nullptr;
    auto* bare = new osgViewer::Viewer;
    bare->setThreadingModel(osgViewer::Viewer::SingleThreaded);
    osg::Camera* camera = bare->getCamera();
    camera->setGraphicsContext(context.get());
    camera->setViewport(0, 0, kWidth, kHeight);
    camera->setClearColor(like->getClearColor());
    camera->setViewMatrix(like->getViewMatrix());
    camera->setProjectionMatrix(like->getProjectionMatrix());
    GLenum const buffer = traits->doubleBuffer ? GL_BACK : GL_FRONT;
    camera->setDrawBuffer(buffer);
    camera->setReadBuffer(buffer);
    // Its context stays current after a frame, so that the frame can be
    // waited for.
    bare->setReleaseContextAtEndOfFrameHint(false);
    bare->setSceneData(scene().model.get());
    bare->realize();
    return bare;
}

bool setUp()
{
    Scene& s = scene();
    s.model = buildModel();
    s.viewer = new iViewer(nullptr, Qt::WindowFlags());
    s.viewer->resize(kWidth, kHeight);
    s.viewer->show();
    s.viewer->init();
    s.viewer->setLookupSwitchAnimate(false);
    s.viewer->setViewLookup(iView::iLookupAxonometric);
    s.viewer->setSceneData(s.model.get());
    s.viewer->zoomBounds(NodeList{s.model});
    for (int i = 0; i < 50 && !(s.viewer->getGLWindow() && s.viewer->getGLWindow()->isExposed()); ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents();
    if (!s.viewer->getGLWindow())
        return false;
    s.bare = makeBareViewer(s.viewer->getCamera());
    return s.bare.valid();
}

void finishGL()
{
    if (QOpenGLContext* context = QOpenGLContext::currentContext())
        context->functions()->glFinish();
}

// Median of runs of work after the warm-up, in milliseconds; each run is
// also reported to the benchmark as its manual time.
double measure(benchmark::State& state, std::function<void()> const& work)
{
    for (int i = 0; i < kWarmUp; ++i)
        work();
    std::vector<double> times;
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        work();
        std::chrono::duration<double> const took = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(took.count());
        times.push_back(took.count() * 1000.0);
    }
    std::sort(times.begin(), times.end());
    double const median = times.empty() ? 0.0 : times[times.size() / 2];
    state.counters["median_ms"] = median;
    return median;
}

double viewerFrame = 0.0, bareFrame = 0.0, viewerPick = 0.0, barePick = 0.0;

void BM_ViewerFrame(benchmark::State& state)
{
    iViewer* viewer = scene().viewer;
    viewerFrame = measure(state, [viewer] {
        viewer->makeGLCurrent();
        viewer->paintGL();
        finishGL();
    });
    if (QOpenGLContext* context = QOpenGLContext::currentContext())
        context->doneCurrent();
}

void BM_BareFrame(benchmark::State& state)
{
    osgViewer::Viewer* bare = scene().bare.get();
    bareFrame = measure(state, [bare] {
        bare->frame();
        glFinish();
    });
}

void BM_ViewerPick(benchmark::State& state)
{
    iViewer* viewer = scene().viewer;
    std::size_t found = 0;
    viewerPick = measure(state, [viewer, &found] {
        osgUtil::LineSegmentIntersector::Intersections hits;
        viewer->getLineSegmentIntersections(osg::Vec2f(0.0f, 0.0f), hits);
        found = hits.size();
    });
    state.counters["hits"] = double(found);
}

void BM_BarePick(benchmark::State& state)
{
    osg::Camera* camera = scene().bare->getCamera();
    std::size_t found = 0;
    barePick = measure(state, [camera, &found] {
        osg::ref_ptr<osgUtil::LineSegmentIntersector> intersector =
            new osgUtil::LineSegmentIntersector(osgUtil::Intersector::WINDOW, kWidth / 2, kHeight / 2);
        osgUtil::IntersectionVisitor visitor(intersector.get());
        camera->accept(visitor);
        found = intersector->getIntersections().size();
    });
    state.counters["hits"] = double(found);
}

} // namespace

BENCHMARK(BM_ViewerFrame)->Iterations(kRuns)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareFrame)->Iterations(kRuns)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerPick)->Iterations(kRuns)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BarePick)->Iterations(kRuns)->UseManualTime()->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (!setUp()) {
        std::fprintf(stderr, "ViewerBench: no GL surface (is DISPLAY set?)\n");
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    if (viewerFrame > 0.0 && bareFrame > 0.0)
        std::printf("\nframe: viewer %.2f ms, bare %.2f ms: %.2fx (aim at most 1.10x) %s\n", viewerFrame, bareFrame,
                    viewerFrame / bareFrame, viewerFrame <= 1.10 * bareFrame ? "ok" : "MISSED");
    if (viewerPick > 0.0 && barePick > 0.0)
        std::printf("pick:  viewer %.1f us, bare %.1f us: %.2fx (aim at most 1.2x) %s\n", viewerPick * 1000.0,
                    barePick * 1000.0, viewerPick / barePick, viewerPick <= 1.2 * barePick ? "ok" : "MISSED");
    scene().bare = nullptr;
    delete scene().viewer;
    return 0;
}
