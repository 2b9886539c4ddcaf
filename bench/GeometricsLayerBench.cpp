// The deferred geometry update of the geometrics layer in a large document:
// 100,000 geometric groups, each drawn by one small renderer.
//
// BM_QuietLoop is one tick of the layers manager when nothing changed. It
// must not depend on the size of the document: a quiet frame does not walk
// it. BM_ThousandGroupsChangedTenTimes changes 1,000 groups ten times each
// through updateGeometry(false) and then ticks once; the rebuilds counter
// shows that each changed group is rebuilt exactly once.
//
// "Time" is wall time, "CPU" the CPU time of the benchmark thread.

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/model/iLayersManager.h>

#include <benchmark/benchmark.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <memory>
#include <string>
#include <vector>

namespace {

int const kGroups = 100000;
int const kChanged = 1000;
int const kChangesPerGroup = 10;

long& rebuildCount()
{
    static long count = 0;
    return count;
}

class iBenchGroup : public iGeometricGroup {
    I_CLASS(iBenchGroup, iGeometricGroup, 3)
    I_OSG_NODE(iBenchGroup)
public:
    iBenchGroup() = default;
    iBenchGroup(iBenchGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop)
    {
    }

protected:
    ~iBenchGroup() override = default;
};

// One triangle in the group's colour.
class iBenchRenderer : public iGeometryRenderer {
    I_CLASS(iBenchRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iBenchRenderer)
public:
    iBenchRenderer() = default;
    iBenchRenderer(iBenchRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        ++rebuildCount();
        osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
        corners->push_back(osg::Vec3f(0, 0, 0));
        corners->push_back(osg::Vec3f(1, 0, 0));
        corners->push_back(osg::Vec3f(0, 1, 0));
        osg::ref_ptr<osg::Geometry> triangle = new osg::Geometry;
        triangle->setVertexArray(corners.get());
        triangle->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
        triangle->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(triangle.get());
        addChild(geode.get());
    }

protected:
    ~iBenchRenderer() override = default;
};

// A document of kGroups groups, built and rebuilt once. Groups are made one
// by one between other allocations, as a document grows while a user
// works, so that they do not lie packed in memory.
struct Document {
    Document()
    {
        iGeometryRendererManager::registerGeometricRenderer("iBenchGroup", "iBenchRenderer", 1);
        manager = std::make_unique<iLayersManager>();
        layer = dynamic_cast<iGeometricsLayer*>(
            iLayersManager::registerNodeLayerClass("iGeometricsLayer", "iGeometricsLayer"));
        for (int i = 0; i < kGroups; ++i) {
            osg::ref_ptr<iBenchGroup> group = new iBenchGroup;
            clutter.push_back(std::make_unique<std::string>(64 + i % 64, 'x'));
            layer->addObject(group.get(), true);
            groups.push_back(group.get());
        }
        manager->loop();
    }
    ~Document() { manager->freeLayerObjects(); }

    std::unique_ptr<iLayersManager> manager;
    iGeometricsLayer* layer = nullptr;
    std::vector<iBenchGroup*> groups;
    std::vector<std::unique_ptr<std::string>> clutter;
};

Document& document()
{
    static Document built;
    return built;
}

void BM_QuietLoop(benchmark::State& state)
{
    Document& doc = document();
    long const before = rebuildCount();
    for (auto _ : state)
        doc.manager->loop();
    state.counters["rebuilds"] = double(rebuildCount() - before);
}

void BM_ThousandGroupsChangedTenTimes(benchmark::State& state)
{
    Document& doc = document();
    long total = 0;
    for (auto _ : state) {
        long const before = rebuildCount();
        for (int g = 0; g < kChanged; ++g) {
            iBenchGroup* group = doc.groups[std::size_t(g) * (kGroups / kChanged)];
            for (int c = 0; c < kChangesPerGroup; ++c)
                group->updateGeometry(false);
        }
        doc.manager->loop();
        long const rebuilds = rebuildCount() - before;
        if (rebuilds != kChanged)
            state.SkipWithError("each changed group must be rebuilt exactly once");
        total += rebuilds;
    }
    state.counters["rebuilds"] = benchmark::Counter(double(total), benchmark::Counter::kAvgIterations);
}

} // namespace

I_REGISTER_CLASS(iBenchGroup)
I_REGISTER_CLASS(iBenchRenderer)

BENCHMARK(BM_QuietLoop)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ThousandGroupsChangedTenTimes)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
