#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/reporting/iProgressHandler.h>
#include <iModelStage/reporting/iProgressInterface.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

typedef std::vector<std::string> Calls;

class RecordingSink : public iProgressInterface {
public:
    Calls calls;
    bool cancel = false;

    void setRange(int min, int max) override
    {
        calls.push_back("range " + std::to_string(min) + " " + std::to_string(max));
    }
    void setInfoText(QString const& text) override { calls.push_back("text " + text.toStdString()); }
    void begin() override { calls.push_back("begin"); }
    void setValue(int value) override { calls.push_back("value " + std::to_string(value)); }
    void end() override { calls.push_back("end"); }
    void setRefreshInterval(int interval) override { calls.push_back("refresh " + std::to_string(interval)); }
    bool canceled() override { return cancel; }
};

// What a layer of count objects reports, in order.
Calls layerProgress(char const* verb, int count, int refresh)
{
    Calls calls{"refresh " + std::to_string(refresh), "range 0 " + std::to_string(count),
                "text iNodeLayer: " + std::string(verb) + std::to_string(count) + " oggetti...", "begin"};
    for (int i = 1; i <= count; ++i)
        calls.push_back("value " + std::to_string(i));
    calls.push_back("end");
    return calls;
}

} // namespace

TEST(Progress, OptimalRefreshIntervalIsTheCubeOfTheCutLogarithm)
{
    std::pair<int, int> const table[] = {{1, 0}, {2, 0}, {8, 8}, {1000, 216}, {100000, 1331}, {1000000, 2197}};
    for (auto const& [count, interval] : table)
        EXPECT_EQ(iProgressHandler::calcOptimalRefreshInterval(count), interval) << count;
}

TEST(Progress, HandlerFindsTheSinkAtEachCall)
{
    iLayersManager manager;
    RecordingSink sink;
    sink.cancel = true;
    {
        iProgressHandler handler;
        EXPECT_FALSE(handler.canceled());
        EXPECT_FALSE(handler.progressing());
        handler.setValue(1);
        manager.setProgressInterface(&sink);
        handler.setValue(2);
        EXPECT_TRUE(handler.canceled());
    }
    // The handler ends the sink when it goes.
    EXPECT_EQ(sink.calls, (Calls{"value 2", "end"}));
}

TEST(Progress, DisabledProgressNeverHandsOutTheSink)
{
    iLayersManager manager;
    RecordingSink sink;
    manager.setProgressInterface(&sink);
    ASSERT_EQ(manager.getProgressInterface(), &sink);
    EXPECT_TRUE(manager.setProgressInterfaceEnabled(false));
    EXPECT_NE(manager.getProgressInterface(), &sink);
    EXPECT_NE(manager.getProgressInterface(), nullptr);
    {
        iProgressHandler handler(&manager);
        handler.begin();
        handler.setValue(3);
    }
    EXPECT_TRUE(sink.calls.empty());
    EXPECT_FALSE(manager.setProgressInterfaceEnabled(true));
    EXPECT_EQ(manager.getProgressInterface(), &sink);
}

TEST(Progress, LayerWriteAndReadReportInTheDocumentedOrder)
{
    RecordingSink sink;
    iLayersManager manager;
    manager.freeLayerObjects();
    iNodeLayer* layer = iLayersManager::registerNodeLayerClass("iNodeLayer", "a");
    for (int i = 0; i < 8; ++i) {
        osg::ref_ptr<iNodeGroup> object = new iNodeGroup;
        layer->addObject(object.get(), false);
    }
    manager.setProgressInterface(&sink);

    iMemoryBuffer written;
    iOutStream out(&written);
    manager.saveToStream(out);
    EXPECT_EQ(sink.calls, layerProgress("Scrittura di ", 8, 8));

    sink.calls.clear();
    manager.emptyAllLayers();
    iMemoryBuffer source(written.str());
    iInStream in(&source);
    manager.loadFromStream(in);
    EXPECT_EQ(sink.calls, layerProgress("Lettura di ", 8, 8));
    EXPECT_EQ(layer->getObjectsRoot()->getNumChildren(), 8u);
}
