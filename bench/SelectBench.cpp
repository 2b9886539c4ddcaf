// Picking and window selection over a document of 100,000 geometric groups
// (a 400 x 250 grid of small squares, one renderer each) in a viewer of
// 1280 x 1024 pixels seen from the top: the hit of one pick at a position
// (the pick tool's intersection pass and the mapping of its hits to
// document objects, without the menu), and one window selection dragged
// left to right over half the window. Medians over 50 runs after 5 warm-up
// runs, wall time and the thread's CPU time. The aims: a pick under 5 ms,
// a window selection under 100 ms. Needs a display (run under Xvfb).
//
// The document is built as a user builds one: object after object, each
// named, with the application's own records allocated in between, so the
// objects lie spread over the heap rather than packed side by side.
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/interaction/iHitGeometries.h>
#include <iModelStage/interaction/iIAPointBuilder.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iSelectWindowIA.h>
#include <iModelStage/viewing/iViewer.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QWindow>

#include <osg/Geode>
#include <osg/Geometry>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class iBenchSquare : public iGeometricGroup {
    I_CLASS(iBenchSquare, iGeometricGroup, 3)
    I_OSG_NODE(iBenchSquare)
public:
    iBenchSquare() = default;
    iBenchSquare(iBenchSquare const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop), x(other.x), y(other.y)
    {
    }
    float x = 0.0f;
    float y = 0.0f;

protected:
    ~iBenchSquare() override = default;
};

class iBenchSquareRenderer : public iGeometryRenderer {
    I_CLASS(iBenchSquareRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iBenchSquareRenderer)
public:
    iBenchSquareRenderer() = default;
    iBenchSquareRenderer(iBenchSquareRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        auto* square = static_cast<iBenchSquare*>(group);
        osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
        corners->push_back(osg::Vec3f(square->x, square->y, 0.0f));
        corners->push_back(osg::Vec3f(square->x + 0.6f, square->y, 0.0f));
        corners->push_back(osg::Vec3f(square->x + 0.6f, square->y + 0.6f, 0.0f));
        corners->push_back(osg::Vec3f(square->x, square->y + 0.6f, 0.0f));
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        geometry->setVertexArray(corners.get());
        geometry->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
        geometry->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, 4));
        auto* geode = new osg::Geode;
        geode->addDrawable(geometry.get());
        addChild(geode);
    }

protected:
    ~iBenchSquareRenderer() override = default;
};

I_REGISTER_CLASS(iBenchSquare)
I_REGISTER_CLASS(iBenchSquareRenderer)

namespace {

double threadSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

struct Figures {
    double wall = 0.0;
    double cpu = 0.0;
};

Figures medians(int runs, std::function<void(int)> const& body)
{
    std::vector<double> walls;
    std::vector<double> cpus;
    for (int i = -5; i < runs; ++i) {
        auto const start = std::chrono::steady_clock::now();
        double const cpuStart = threadSeconds();
        body(i);
        double const cpu = threadSeconds() - cpuStart;
        double const wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (i >= 0) {
            walls.push_back(wall);
            cpus.push_back(cpu);
        }
    }
    std::sort(walls.begin(), walls.end());
    std::sort(cpus.begin(), cpus.end());
    return {walls[walls.size() / 2] * 1000.0, cpus[cpus.size() / 2] * 1000.0};
}

bool waitFor(std::function<bool()> const& done)
{
    QDeadlineTimer deadline(10000);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    iGeometryRendererManager::registerGeometricRenderer("iBenchSquare", "iBenchSquareRenderer", 1);
    auto* viewer = new iViewer(nullptr, Qt::WindowFlags());
    viewer->resize(1280, 1024);
    viewer->show();
    viewer->init();
    if (!viewer->getGLWindow() || !waitFor([viewer] { return viewer->getGLWindow()->isExposed(); }) ||
        !waitFor([viewer] { return viewer->getCamera()->getViewport()->width() == 1280; })) {
        std::fprintf(stderr, "SelectBench: no GL surface (is DISPLAY set?)\n");
        return 1;
    }
    viewer->setLookupSwitchAnimate(false);
    viewer->setViewLookup(iView::iLookupTop);
    osg::ref_ptr<iGeometricsLayer> layer = new iGeometricsLayer;
    NodeList all;
    // The application's records: a few blocks of varied size per object,
    // kept for the life of the document.
    std::vector<std::unique_ptr<char[]>> records;
    unsigned int seed = 12345u;
    for (int i = 0; i < 100000; ++i) {
        for (int k = 0; k < 3; ++k) {
            seed = seed * 1664525u + 1013904223u;
            records.emplace_back(new char[16 + (seed >> 16) % 480]);
        }
        osg::ref_ptr<iBenchSquare> square = new iBenchSquare;
        square->set_name("Quadrato " + std::to_string(i + 1));
        square->x = float(i % 400);
        square->y = float(i / 400);
        layer->addObject(square.get(), true);
        square->updateGeometry(true);
        all.push_back(square);
    }
    viewer->setViewModel(layer.get());
    viewer->zoomBounds(all);
    iInteractorManager manager;
    manager.setCurrentViewer(viewer);

    std::vector<osg::ref_ptr<osg::Node>> hits;
    size_t found = 0;
    Figures const pick = medians(50, [&](int i) {
        int const x = 100 + (i + 5) * 20;
        found += iHitGeometries(layer.get(), viewer, x, 512, hits) ? 1 : 0;
    });
    int selected = 0;
    Figures const window = medians(50, [&](int) {
        auto* tool = new iSelectWindowIA;
        manager.pushInteractor(tool, false);
        tool->start();
        auto point = [&](float x, float y) {
            return iIAPointBuilder(viewer, tool, x, y, x / 640.0f - 1.0f, y / 512.0f - 1.0f).compute();
        };
        tool->click(point(320.0f, 256.0f));
        tool->move(point(960.0f, 768.0f));
        tool->release(point(960.0f, 768.0f));
        selected = layer->getSelectionCount();
        manager.loop();
    });
    std::printf("pick over 100,000 groups: median %.3f ms wall, %.3f ms thread CPU (aim under 5 ms) %s; "
                "%zu of 55 picks hit\n",
                pick.wall, pick.cpu, pick.wall < 5.0 ? "ok" : "MISSED", found);
    std::printf("window selection over half the window: median %.2f ms wall, %.2f ms thread CPU (aim under 100 ms) "
                "%s; %d objects selected\n",
                window.wall, window.cpu, window.wall < 100.0 ? "ok" : "MISSED", selected);
    manager.slotCancelAllInteractors();
    delete viewer;
    return 0;
}
