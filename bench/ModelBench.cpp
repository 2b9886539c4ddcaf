// Cost per object of the model's whole-tree operations, at two sizes. Each
// operation should cost about the same per object at 10,000 and 100,000
// objects; the ns_per_object counters make that easy to compare.
//
// Every operation runs twice per size: warm, where the model stays in the
// caches between iterations (10,000 objects fit a large last-level cache,
// 100,000 do not), and cold, where the caches are flushed before each timed
// call, so that both sizes start from main memory, as a user's command does
// after the rest of the application has run.

#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iTransformGroup.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

// Three levels: a transform per hundred objects, each with nine transform
// children of ten plain objects.
NodeList buildTree(int objects)
{
    NodeList roots;
    int serial = 0;
    auto named = [&serial](iNodeGroup* o) {
        o->set_name("object " + std::to_string(serial++));
        return o;
    };
    for (int r = 0; r < objects / 100; ++r) {
        osg::ref_ptr<iTransformGroup> root = new iTransformGroup;
        named(root.get());
        for (int c = 0; c < 9; ++c) {
            osg::ref_ptr<iTransformGroup> child = new iTransformGroup;
            root->addChild(named(child.get()));
            for (int g = 0; g < 10; ++g)
                child->addChild(named(new iNodeGroup));
        }
        roots.push_back(root);
    }
    return roots;
}

osg::ref_ptr<iBaseModel> modelWith(NodeList const& roots)
{
    osg::ref_ptr<iBaseModel> model = new iBaseModel;
    for (osg::ref_ptr<osg::Node> const& root : roots)
        model->addObject(root.get(), true);
    return model;
}

double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

// CPU time of this thread, so that other load on the machine does not
// count against the model.
template <class Work>
double secondsOf(Work&& work)
{
    double const start = threadSeconds();
    work();
    return threadSeconds() - start;
}

// Writes a buffer larger than any last-level cache, so that none of the
// model stays cached.
void evictCaches()
{
    static std::vector<char> buffer(std::size_t(128) << 20);
    static char round = 0;
    ++round;
    for (std::size_t i = 0; i < buffer.size(); i += 64)
        buffer[i] = round;
    benchmark::ClobberMemory();
}

// Reports the measured time and accumulates it for the per-object figure.
struct Timing {
    explicit Timing(benchmark::State& s)
        : state(s), objects(static_cast<int>(s.range(0))), cold(s.range(1) != 0)
    {
    }
    template <class Work>
    void measure(Work&& work)
    {
        if (cold)
            evictCaches();
        double const seconds = secondsOf(work);
        state.SetIterationTime(seconds);
        total += seconds;
    }
    ~Timing()
    {
        if (state.iterations() > 0)
            state.counters["ns_per_object"] = total * 1e9 / (double(state.iterations()) * objects);
    }
    benchmark::State& state;
    int objects;
    bool cold;
    double total = 0;
};

void BM_AddRecursive(benchmark::State& state)
{
    Timing timing(state);
    for (auto _ : state) {
        NodeList roots = buildTree(timing.objects);
        osg::ref_ptr<iBaseModel> model = new iBaseModel;
        timing.measure([&] {
            for (osg::ref_ptr<osg::Node> const& root : roots)
                model->addObject(root.get(), true);
        });
        benchmark::DoNotOptimize(model->getObjectsCount());
    }
}

// One look-up per object, in walk order (ids given in creation order) or
// shuffled, as link resolution may ask.
void findEveryObject(benchmark::State& state, bool shuffled)
{
    Timing timing(state);
    NodeList const roots = buildTree(timing.objects);
    osg::ref_ptr<iBaseModel> model = modelWith(roots);
    NodeList objects;
    model->getObjectsList(model->getRoot(), objects, nullptr);
    std::vector<long> ids;
    for (osg::ref_ptr<osg::Node> const& node : objects)
        ids.push_back(dynamic_cast<iNodeGroup*>(node.get())->getUniqueId());
    if (shuffled)
        std::shuffle(ids.begin(), ids.end(), std::mt19937(42));
    model->findObjectByUniqueId(ids.front());
    for (auto _ : state) {
        timing.measure([&] {
            for (long id : ids)
                benchmark::DoNotOptimize(model->findObjectByUniqueId(id));
        });
    }
}

void BM_FindObjectByUniqueId(benchmark::State& state)
{
    findEveryObject(state, false);
}

void BM_FindObjectByUniqueIdShuffled(benchmark::State& state)
{
    findEveryObject(state, true);
}

void BM_SelectAll(benchmark::State& state)
{
    Timing timing(state);
    NodeList const roots = buildTree(timing.objects);
    osg::ref_ptr<iBaseModel> model = modelWith(roots);
    for (auto _ : state) {
        model->clearObjectSelection();
        timing.measure([&] { model->selectAll(); });
    }
}

void BM_ClearSelection(benchmark::State& state)
{
    Timing timing(state);
    NodeList const roots = buildTree(timing.objects);
    osg::ref_ptr<iBaseModel> model = modelWith(roots);
    for (auto _ : state) {
        model->selectAll();
        timing.measure([&] { model->clearObjectSelection(); });
    }
}

// With callerHolds the objects outlive the call, as when a caller still
// holds them; otherwise the model held the last reference and the objects
// die inside the call.
void removeAllObjects(benchmark::State& state, bool callerHolds)
{
    Timing timing(state);
    for (auto _ : state) {
        NodeList roots = buildTree(timing.objects);
        osg::ref_ptr<iBaseModel> model = modelWith(roots);
        if (!callerHolds)
            roots.clear();
        timing.measure([&] { model->removeAllObjects(); });
    }
}

void BM_RemoveAllObjects(benchmark::State& state)
{
    removeAllObjects(state, true);
}

void BM_RemoveAllObjectsDestroying(benchmark::State& state)
{
    removeAllObjects(state, false);
}

} // namespace

// The untimed part of an iteration (building a tree, selecting, flushing the
// caches) can be far longer than the timed call, so a fixed count keeps the
// run short.
#define MODEL_BENCHMARK(fn)                                                                          \
    BENCHMARK(fn)                                                                                    \
        ->ArgNames({"objects", "cold"})                                                              \
        ->ArgsProduct({{10000, 100000}, {0, 1}})                                                     \
        ->Iterations(30)                                                                             \
        ->Repetitions(3)                                                                             \
        ->ReportAggregatesOnly(true)                                                                 \
        ->UseManualTime()                                                                            \
        ->Unit(benchmark::kMillisecond)

MODEL_BENCHMARK(BM_AddRecursive);
MODEL_BENCHMARK(BM_FindObjectByUniqueId);
MODEL_BENCHMARK(BM_FindObjectByUniqueIdShuffled);
MODEL_BENCHMARK(BM_SelectAll);
MODEL_BENCHMARK(BM_ClearSelection);
MODEL_BENCHMARK(BM_RemoveAllObjects);
MODEL_BENCHMARK(BM_RemoveAllObjectsDestroying);

BENCHMARK_MAIN();
