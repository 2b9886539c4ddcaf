// Cost of one rebuild of a grid: the plane, 4 * (nhs + nvs) line vertices
// with their colours, and the axes. The default grid (50 steps to each
// side) is the baseline for the large one (500 steps). "Time" is wall
// time, "CPU" the CPU time of the benchmark's thread.

#include <iModelStage/geometry/iGridGroup.h>

#include <benchmark/benchmark.h>

namespace {

void BM_GridRebuild(benchmark::State& state)
{
    int const steps = static_cast<int>(state.range(0));
    osg::ref_ptr<iGridGroup> grid = new iGridGroup;
    grid->set_nhs(steps);
    grid->set_nvs(steps);
    for (auto _ : state) {
        grid->forceGeometryUpdate();
        benchmark::DoNotOptimize(grid->getNumChildren());
    }
    state.counters["vertices"] = 4.0 * (steps + steps);
    state.counters["time_per_vertex"] = benchmark::Counter(
        double(state.iterations()) * 4.0 * (steps + steps),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(BM_GridRebuild)
    ->ArgName("steps")
    ->Arg(50)
    ->Arg(500)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
