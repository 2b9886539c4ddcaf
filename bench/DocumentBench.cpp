// Saving and loading a document against writing and reading the same scene
// as OpenSceneGraph's binary ".osgb" format, and one undo snapshot of it,
// measured in the same run. Two documents: 100,000 objects built in one pass
// with positions only, and 101,000 objects built as an editing session
// builds them (one by one, between the host's own allocations, each with a
// name, a position and a non-uniform scale), measured on a reload through
// std::ifstream. The aims: a save at least 2x and a load at least 1.5x as
// fast as ".osgb" in CPU time, and one undo snapshot under 150 ms.
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iObjectPool.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/model/iUndoRedoManager.h>

#include <benchmark/benchmark.h>

#include <osg/Group>
#include <osg/PositionAttitudeTransform>
#include <osgDB/ReadFile>
#include <osgDB/Registry>
#include <osgDB/WriteFile>

#include <malloc.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

// 100 roots x 9 children x 110 grandchildren: 100 + 900 + 99,000 objects.
constexpr int kRoots = 100;
constexpr int kChildren = 9;
constexpr int kGrandchildren = 110;
constexpr int kObjects = kRoots + kRoots * kChildren + kRoots * kChildren * kGrandchildren;
char const* const kLayer = "objects";

// Object n's place; varied so that no two neighbours share a value.
osg::Vec3f positionOf(int n)
{
    return osg::Vec3f(static_cast<float>(n % 97) * 1.5f, static_cast<float>(n % 89) * -0.25f,
                      static_cast<float>(n) / 1000.0f);
}

std::string nameOf(int n)
{
    return "obj_" + std::to_string(n);
}

struct Fixture {
    std::filesystem::path directory;
    std::string documentPath;
    std::string osgbPath;
    iLayersManager* manager = nullptr;
    osg::ref_ptr<osg::Group> osgScene;
    bool osgbAvailable = false;
};

Fixture& fixture()
{
    static Fixture* f = [] {
        auto* fx = new Fixture;
        char const* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/DocumentBench.XXXXXX";
        if (!mkdtemp(&pattern[0])) {
            std::perror("DocumentBench: mkdtemp");
            std::exit(1);
        }
        fx->directory = pattern;
        fx->documentPath = (fx->directory / "document.ims").string();
        fx->osgbPath = (fx->directory / "scene.osgb").string();
        // Undo snapshots go where TEMP points.
        setenv("TEMP", pattern.c_str(), 1);
        fx->osgbAvailable = osgDB::Registry::instance()->getReaderWriterForExtension("osgb") != nullptr;

        fx->manager = new iLayersManager;
        iNodeLayer* layer = iLayersManager::registerNodeLayerClass("iNodeLayer", kLayer);
        // The document and the baseline scene are built in two passes: built
        // in one, their nodes would alternate in memory, and whichever is
        // emptied and read again would be spread over twice the space.
        int n = 0;
        auto makeObject = [&n]() {
            iTransformGroup* object = new iTransformGroup;
            object->set_name(nameOf(n));
            object->setPosition(positionOf(n));
            ++n;
            return object;
        };
        for (int r = 0; r < kRoots; ++r) {
            osg::ref_ptr<iTransformGroup> root = makeObject();
            for (int c = 0; c < kChildren; ++c) {
                iTransformGroup* child = makeObject();
                root->addChild(child);
                for (int g = 0; g < kGrandchildren; ++g)
                    child->addChild(makeObject());
            }
            // Built as a plain tree first, then announced to the layer once.
            layer->addObject(root.get(), true);
        }

        fx->osgScene = new osg::Group;
        n = 0;
        auto makePlain = [&n](osg::Group* parent) {
            osg::ref_ptr<osg::PositionAttitudeTransform> plain = new osg::PositionAttitudeTransform;
            plain->setName(nameOf(n));
            plain->setPosition(osg::Vec3d(positionOf(n)));
            parent->addChild(plain.get());
            ++n;
            return plain.get();
        };
        for (int r = 0; r < kRoots; ++r) {
            osg::Group* root = makePlain(fx->osgScene.get());
            for (int c = 0; c < kChildren; ++c) {
                osg::Group* child = makePlain(root);
                for (int g = 0; g < kGrandchildren; ++g)
                    makePlain(child);
            }
        }
        return fx;
    }();
    return *f;
}

int countObjects()
{
    iNodeLayer* layer = iLayersManager::getLayer(kLayer);
    NodeList objects;
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    return static_cast<int>(objects.size());
}

void saveDocument(Fixture& f)
{
    std::filebuf file;
    file.open(f.documentPath, std::ios::out | std::ios::binary | std::ios::trunc);
    iOutStream stream(&file);
    f.manager->saveToStream(stream);
}

void loadDocument(Fixture& f)
{
    std::filebuf file;
    file.open(f.documentPath, std::ios::in | std::ios::binary);
    iInStream stream(&file);
    f.manager->loadFromStream(stream);
}

void BM_DocumentSave(benchmark::State& state)
{
    Fixture& f = fixture();
    if (countObjects() != kObjects) {
        state.SkipWithError("the document does not hold the benchmark's objects");
        return;
    }
    for (auto _ : state)
        saveDocument(f);
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(f.documentPath));
}

void BM_DocumentLoad(benchmark::State& state)
{
    Fixture& f = fixture();
    saveDocument(f);
    for (auto _ : state) {
        state.PauseTiming();
        f.manager->emptyAllLayers();
        state.ResumeTiming();
        loadDocument(f);
    }
    if (countObjects() != kObjects)
        state.SkipWithError("the document did not load whole");
}

// One undo snapshot. Registered twice: on the document as built, and again
// after the load benchmark on the document as loaded from its file, whose
// objects lie scattered in memory and take longer to walk.
void BM_DocumentStoreForUndo(benchmark::State& state)
{
    Fixture& f = fixture();
    if (countObjects() != kObjects) {
        state.SkipWithError("the document does not hold the benchmark's objects");
        return;
    }
    for (auto _ : state) {
        f.manager->storeForUndo("bench step");
        state.PauseTiming();
        bool const stored = f.manager->getUndoRedoManager()->canUndo();
        f.manager->cancelUndoStore();
        state.ResumeTiming();
        if (!stored) {
            state.SkipWithError("no snapshot was stored");
            break;
        }
    }
}

void BM_OsgbWrite(benchmark::State& state)
{
    Fixture& f = fixture();
    if (!f.osgbAvailable) {
        state.SkipWithError("no osgb plug-in");
        return;
    }
    for (auto _ : state)
        if (!osgDB::writeNodeFile(*f.osgScene, f.osgbPath)) {
            state.SkipWithError("writing .osgb failed");
            break;
        }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(f.osgbPath));
}

void BM_OsgbRead(benchmark::State& state)
{
    Fixture& f = fixture();
    if (!f.osgbAvailable || !osgDB::writeNodeFile(*f.osgScene, f.osgbPath)) {
        state.SkipWithError("no osgb plug-in");
        return;
    }
    // No object cache, so that every read really reads.
    osg::ref_ptr<osgDB::Options> options = new osgDB::Options;
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    for (auto _ : state) {
        osg::ref_ptr<osg::Node> scene = osgDB::readNodeFile(f.osgbPath, options.get());
        state.PauseTiming();
        bool const ok = scene.valid();
        // The graph's destruction is not part of reading, as emptying the
        // document is not part of loading it.
        scene = nullptr;
        state.ResumeTiming();
        if (!ok) {
            state.SkipWithError("reading .osgb failed");
            break;
        }
    }
}

// Registration order is run order: the load benchmark replaces the built
// document by a loaded one.
BENCHMARK(BM_DocumentSave)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_OsgbWrite)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_DocumentStoreForUndo)->Name("BM_DocumentStoreForUndo/built")
    ->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_DocumentLoad)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_OsgbRead)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_DocumentStoreForUndo)->Name("BM_DocumentStoreForUndo/loaded")
    ->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);


// ---------------------------------------------------------------------------
// Paired runs: each operation timed in thread CPU time and wall time, ours and
// ".osgb" alternated run by run, with minimum and median. The ".osgb" side
// spends much of its time in system calls and moves with the machine's load,
// so the aims are judged on CPU time.

// The document as an editing session builds it: 1,000 roots of 10 children
// of 9, each created, named, placed and scaled one by one, with the host's
// own allocations in between.
constexpr int kEditRoots = 1000;
constexpr int kEditChildren = 10;
constexpr int kEditGrandchildren = 9;

struct Options {
    int runs = 5;
    bool built = true;
    bool editing = true;
    // A tenth of the editing document, for instruction counts under callgrind.
    bool small = false;
    bool gbench = true;
};

struct Sample {
    double cpu = 0;
    double wall = 0;
};

class Stopwatch {
public:
    Stopwatch() : m_wall(std::chrono::steady_clock::now()), m_cpu(threadCpu()) {}
    Sample elapsed() const
    {
        Sample s;
        s.cpu = (threadCpu() - m_cpu) * 1000.0;
        s.wall = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_wall).count();
        return s;
    }

private:
    static double threadCpu()
    {
        timespec t;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
    }

    std::chrono::steady_clock::time_point m_wall;
    double m_cpu;
};

struct Series {
    std::vector<Sample> samples;

    static double median(std::vector<double> v)
    {
        if (v.empty())
            return -1;
        std::sort(v.begin(), v.end());
        std::size_t const n = v.size();
        return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2.0;
    }
    std::vector<double> of(double Sample::*field) const
    {
        std::vector<double> v;
        for (Sample const& s : samples)
            v.push_back(s.*field);
        return v;
    }
    double minOf(double Sample::*field) const
    {
        std::vector<double> v = of(field);
        return v.empty() ? -1 : *std::min_element(v.begin(), v.end());
    }
    double medianOf(double Sample::*field) const { return median(of(field)); }
};

// Bytes of small blocks in use: the allocator's and the object pool's. The
// pool's slabs come from the system in large regions that are kept, so its
// own count is what tells what objects take.
std::size_t heapInUse()
{
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + iObjectPool::bytesInUse();
}

// Host data allocated between document objects: sizes that a design
// application's own records might have, all kept for the run.
class HostAllocations {
public:
    void allocate(int n)
    {
        static constexpr std::size_t sizes[] = {24, 72, 136, 40, 264, 96, 520, 56};
        for (int k = 0; k < 2; ++k) {
            std::size_t const size = sizes[(n * 3 + k) % 8];
            m_blocks.emplace_back(new char[size]);
            m_blocks.back()[0] = static_cast<char>(n);
        }
    }
    void clear() { m_blocks.clear(); }

private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
};

osg::Vec3f scaleOf(int n)
{
    return osg::Vec3f(1.0f + static_cast<float>(n % 7) * 0.25f, 0.5f + static_cast<float>(n % 5) * 0.125f,
                      2.0f - static_cast<float>(n % 3) * 0.375f);
}

struct CaseDocument {
    explicit CaseDocument(char const* t) : title(t) {}
    char const* title;
    int objects = 0;
    bool viaIfstream = false;
    osg::ref_ptr<osg::Group> osgScene;
};

// Replaces the document by the editing session's one, and builds the
// ".osgb" scene of the same objects.
void buildEditingDocument(CaseDocument& doc, HostAllocations& host, int roots)
{
    Fixture& f = fixture();
    f.manager->emptyAllLayers();
    iNodeLayer* layer = iLayersManager::getLayer(kLayer);
    int n = 0;
    auto make = [&](osg::Group* parent) {
        osg::ref_ptr<iTransformGroup> object = new iTransformGroup;
        object->set_name(nameOf(n));
        object->setPosition(positionOf(n));
        object->setScale(scaleOf(n));
        if (parent)
            layer->addChildObject(parent, object.get(), false);
        else
            layer->addObject(object.get(), false);
        host.allocate(n);
        ++n;
        return object.get();
    };
    for (int r = 0; r < roots; ++r) {
        iTransformGroup* root = make(nullptr);
        for (int c = 0; c < kEditChildren; ++c) {
            iTransformGroup* child = make(root);
            for (int g = 0; g < kEditGrandchildren; ++g)
                make(child);
        }
    }
    doc.objects = n;
    doc.viaIfstream = true;

    doc.osgScene = new osg::Group;
    n = 0;
    auto makePlain = [&n](osg::Group* parent) {
        osg::ref_ptr<osg::PositionAttitudeTransform> plain = new osg::PositionAttitudeTransform;
        plain->setName(nameOf(n));
        plain->setPosition(osg::Vec3d(positionOf(n)));
        plain->setScale(osg::Vec3d(scaleOf(n)));
        parent->addChild(plain.get());
        ++n;
        return plain.get();
    };
    for (int r = 0; r < roots; ++r) {
        osg::Group* root = makePlain(doc.osgScene.get());
        for (int c = 0; c < kEditChildren; ++c) {
            osg::Group* child = makePlain(root);
            for (int g = 0; g < kEditGrandchildren; ++g)
                makePlain(child);
        }
    }
}

void loadDocumentVia(Fixture& f, bool viaIfstream)
{
    if (!viaIfstream) {
        loadDocument(f);
        return;
    }
    std::ifstream file(f.documentPath, std::ios::in | std::ios::binary);
    iInStream stream(file.rdbuf());
    f.manager->loadFromStream(stream);
}

struct CaseResult {
    Series save, osgbWrite, load, osgbRead, undo;
    double bytesPerObject = -1;
    std::size_t fileBytes = 0;
    bool failed = false;
};

// Runs ours and the baseline in turn, swapping who goes first each run.
template <class Ours, class Theirs>
void alternate(int run, Ours ours, Theirs theirs)
{
    if (run % 2 == 0) {
        ours();
        theirs();
    } else {
        theirs();
        ours();
    }
}

CaseResult measureCase(CaseDocument& doc, int runs)
{
    Fixture& f = fixture();
    CaseResult result;
    osg::ref_ptr<osgDB::Options> options = new osgDB::Options;
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    auto osgbWrite = [&](Series* into) {
        Stopwatch watch;
        bool const ok = osgDB::writeNodeFile(*doc.osgScene, f.osgbPath, options.get());
        if (into)
            into->samples.push_back(watch.elapsed());
        result.failed |= !ok;
    };
    auto osgbRead = [&](Series* into) {
        Stopwatch watch;
        osg::ref_ptr<osg::Node> scene = osgDB::readNodeFile(f.osgbPath, options.get());
        if (into)
            into->samples.push_back(watch.elapsed());
        result.failed |= !scene.valid();
        scene = nullptr;
    };
    auto save = [&](Series* into) {
        Stopwatch watch;
        saveDocument(f);
        if (into)
            into->samples.push_back(watch.elapsed());
    };
    auto load = [&](Series* into) {
        f.manager->emptyAllLayers();
        std::size_t const before = heapInUse();
        Stopwatch watch;
        loadDocumentVia(f, doc.viaIfstream);
        if (into)
            into->samples.push_back(watch.elapsed());
        if (into && result.bytesPerObject < 0)
            result.bytesPerObject = (static_cast<double>(heapInUse()) - static_cast<double>(before)) / doc.objects;
        result.failed |= countObjects() != doc.objects;
    };
    auto undo = [&](Series* into) {
        Stopwatch watch;
        f.manager->storeForUndo("bench step");
        if (into)
            into->samples.push_back(watch.elapsed());
        result.failed |= !f.manager->getUndoRedoManager()->canUndo();
        f.manager->cancelUndoStore();
    };

    // Warm-up, which also replaces the document as built by one loaded from
    // its file: what follows measures a reload.
    save(nullptr);
    osgbWrite(nullptr);
    load(nullptr);
    osgbRead(nullptr);
    undo(nullptr);
    for (int run = 0; run < runs; ++run) {
        alternate(run, [&] { save(&result.save); }, [&] { osgbWrite(&result.osgbWrite); });
        alternate(run, [&] { load(&result.load); }, [&] { osgbRead(&result.osgbRead); });
        undo(&result.undo);
    }
    result.fileBytes = static_cast<std::size_t>(std::filesystem::file_size(f.documentPath));
    return result;
}

void printCase(CaseDocument const& doc, CaseResult const& r, int runs)
{
    std::printf("\n%s: %d objects, %zu bytes in the file, %d runs\n", doc.title, doc.objects, r.fileBytes, runs);
    if (r.failed)
        std::printf("  A RUN FAILED: the figures below are not valid\n");
    std::printf("  %-20s %10s %10s %10s %10s   (ms)\n", "", "cpu min", "cpu median", "wall min", "wall median");
    auto row = [](char const* name, Series const& s) {
        std::printf("  %-20s %10.1f %10.1f %10.1f %10.1f\n", name, s.minOf(&Sample::cpu), s.medianOf(&Sample::cpu),
                    s.minOf(&Sample::wall), s.medianOf(&Sample::wall));
    };
    row("save", r.save);
    row(".osgb write", r.osgbWrite);
    row("load", r.load);
    row(".osgb read", r.osgbRead);
    row("storeForUndo", r.undo);
    auto ratio = [](char const* name, Series const& ours, Series const& theirs, double aim) {
        double const cpu = theirs.medianOf(&Sample::cpu) / ours.medianOf(&Sample::cpu);
        double const cpuMin = theirs.minOf(&Sample::cpu) / ours.minOf(&Sample::cpu);
        double const wall = theirs.medianOf(&Sample::wall) / ours.medianOf(&Sample::wall);
        std::printf("  %s: %.2fx as fast in CPU median (%.2fx by minimum), %.2fx in wall median; aim %.1fx: %s\n",
                    name, cpu, cpuMin, wall, aim, cpu >= aim ? "met" : "MISSED");
    };
    ratio("save", r.save, r.osgbWrite, 2.0);
    ratio("load", r.load, r.osgbRead, 1.5);
    double const undo = r.undo.medianOf(&Sample::cpu);
    std::printf("  storeForUndo: %.1f ms CPU median; aim under 150 ms: %s\n", undo, undo < 150.0 ? "met" : "MISSED");
    std::printf("  heap bytes per loaded object: %.0f\n", r.bytesPerObject);
}

// Takes this program's own options out of argv, leaving the rest to Google
// Benchmark.
Options parseOptions(int& argc, char** argv)
{
    Options o;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        std::string const arg = argv[i];
        if (arg.rfind("--runs=", 0) == 0)
            o.runs = std::max(1, std::atoi(arg.c_str() + 7));
        else if (arg == "--case=built")
            o.editing = false;
        else if (arg == "--case=editing")
            o.built = false;
        else if (arg == "--small")
            o.small = true;
        else if (arg == "--paired-only")
            o.gbench = false;
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    return o;
}

} // namespace

// By default: the Google Benchmark runs of the document as built in two
// passes, then the paired runs of both cases. Options: --paired-only skips
// the former; --case=built or --case=editing runs one case; --runs=N sets the
// paired runs (at least 5 for the figures to mean something); --small builds
// the editing document at a tenth of its size, for callgrind.
int main(int argc, char** argv)
{
    Options const options = parseOptions(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Fixture& f = fixture();
    if (!f.osgbAvailable) {
        std::fprintf(stderr, "DocumentBench: no osgb plug-in\n");
        return 1;
    }
    if (options.gbench)
        benchmark::RunSpecifiedBenchmarks();

    if (options.built) {
        CaseDocument built("document built in two passes (positions only)");
        built.objects = kObjects;
        built.osgScene = f.osgScene;
        CaseResult const r = measureCase(built, options.runs);
        printCase(built, r, options.runs);
    }
    if (options.editing) {
        HostAllocations host;
        CaseDocument editing("document built as an editing session (interleaved, non-uniform scales)");
        buildEditingDocument(editing, host, options.small ? kEditRoots / 10 : kEditRoots);
        CaseResult const r = measureCase(editing, options.runs);
        printCase(editing, r, options.runs);
        f.manager->emptyAllLayers();
        host.clear();
    }

    std::error_code error;
    std::filesystem::remove_all(f.directory, error);
    benchmark::Shutdown();
    return 0;
}
