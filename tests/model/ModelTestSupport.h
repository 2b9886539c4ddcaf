#ifndef IMODELSTAGE_TESTS_MODEL_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_MODEL_TEST_SUPPORT_H

#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iTransformGroup.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

typedef std::vector<std::string> Log;

// One line per emission: the label, then each argument that has a readable
// form (node and layer names, numbers, texts), then what the probe, if any,
// answers.
class Recorder {
public:
    template <class... Args>
    void listen(sigslot::_signal_impl<sigslot::multi_threaded_local, Args...>& signal, std::string label,
                std::function<std::string()> probe = nullptr)
    {
        taps.push_back(std::make_unique<Tap>(this, std::move(label), std::move(probe)));
        signal.connect(taps.back().get(), &Tap::template on<Args...>);
    }
    Log take() { return std::exchange(log, {}); }
    Log log;

private:
    template <class T>
    static std::string text(T const& value)
    {
        if constexpr (std::is_convertible_v<T, iBaseModel const*>)
            return value ? value->getModelId() : "null";
        else if constexpr (std::is_convertible_v<T, osg::Object const*>)
            return value ? value->getName() : "null";
        else if constexpr (std::is_same_v<T, bool>)
            return value ? "1" : "0";
        else if constexpr (std::is_integral_v<T>)
            return std::to_string(value);
        else if constexpr (std::is_convertible_v<T, std::string>)
            return value;
        return ""; // flag sets, vectors, properties, plain objects: not shown
    }
    struct Tap : iSlot {
        Tap(Recorder* owner, std::string label, std::function<std::string()> probe)
            : owner(owner), label(std::move(label)), probe(std::move(probe))
        {
        }
        template <class... Args>
        void on(Args... args)
        {
            std::string line = label;
            for (std::string const& part : {text(args)..., probe ? probe() : std::string()})
                if (!part.empty())
                    line += ":" + part;
            owner->log.push_back(line);
        }
        Recorder* owner;
        std::string label;
        std::function<std::string()> probe;
    };
    std::vector<std::unique_ptr<Tap>> taps;
};

// A count, then the ints.
inline std::string ints(std::vector<int> const& values)
{
    std::string out = i32(std::uint32_t(values.size()));
    for (int v : values)
        out += i32(std::uint32_t(v));
    return out;
}

template <class T = iNodeGroup>
osg::ref_ptr<T> make(std::string const& name, osg::Group* parent = nullptr)
{
    osg::ref_ptr<T> object = new T;
    if constexpr (std::is_base_of_v<iRoot, T>)
        object->set_name(name);
    else
        object->setName(name);
    if (parent)
        parent->addChild(object);
    return object;
}

inline NodeList selectionOf(iBaseModel* model)
{
    NodeList selected;
    model->getSelectionList(selected, nullptr);
    return selected;
}

inline NodeList ghostsOf(iNodeLayer* layer)
{
    NodeList ghosts;
    std::set<std::string> classes{"iGhostNode"};
    layer->getObjectsList(layer->getObjectsRoot(), ghosts, &classes);
    return ghosts;
}

inline std::string readFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Files in the temporary directory, named after the test so that parallel
// runs do not meet, and removed when this goes.
class TempFiles {
public:
    ~TempFiles()
    {
        for (std::string const& path : paths)
            std::remove(path.c_str());
    }
    std::string path(std::string const& name)
    {
        testing::TestInfo const* test = testing::UnitTest::GetInstance()->current_test_info();
        paths.push_back(testing::TempDir() + "iModelTest_" + test->test_suite_name() + "_" + test->name() + "_" + name);
        std::remove(paths.back().c_str());
        return paths.back();
    }
    std::string write(std::string const& name, std::string const& bytes)
    {
        std::string const at = path(name);
        std::ofstream(at, std::ios::binary) << bytes;
        return at;
    }

private:
    std::vector<std::string> paths;
};

// A new manager with layers "b" and "a", registered against name order so
// that name order shows; "b" is current.
class LayersTest : public testing::Test {
protected:
    void SetUp() override
    {
        manager = std::make_unique<iLayersManager>();
        manager->freeLayerObjects();
        b = iLayersManager::registerNodeLayerClass("iNodeLayer", "b");
        a = iLayersManager::registerNodeLayerClass("iNodeLayer", "a");
        events.listen(manager->sigCurrentLayerChanged, "layer");
        events.listen(manager->sigLayerRegistered, "registered");
        events.listen(manager->sigBeforeEmptyLayers, "empty");
        events.listen(manager->sigBeginSave, "beginSave");
        events.listen(manager->sigBeginLoad, "beginLoad");
        events.listen(manager->sigEndLoad, "endLoad");
        events.listen(manager->sigFileNameChanged, "file");
        events.listen(manager->sigDbChanged, "db");
    }
    std::string save()
    {
        iMemoryBuffer buffer;
        iOutStream stream(&buffer);
        manager->saveToStream(stream);
        return buffer.str();
    }
    void load(std::string const& bytes)
    {
        manager->emptyAllLayers();
        iMemoryBuffer buffer(bytes);
        iInStream stream(&buffer);
        manager->loadFromStream(stream);
    }

    std::unique_ptr<iLayersManager> manager;
    iNodeLayer* a = nullptr;
    iNodeLayer* b = nullptr;
    Recorder events;
    TempFiles files;
};

#endif
