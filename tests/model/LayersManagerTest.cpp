#include "model/ModelTestSupport.h"

#include <iModelStage/model/iLayerManagerHistory.h>
#include <iModelStage/model/iLayersManagerLock.h>
#include <iModelStage/model/iLoopLock.h>

class LayersManager : public LayersTest {};

TEST_F(LayersManager, SecondRegistrationOfANameReturnsTheSameLayer)
{
    EXPECT_EQ(iLayersManager::getCurrentLayer(), b);
    EXPECT_EQ(iLayersManager::registerNodeLayerClass("iNodeLayer", "b"), b);
    EXPECT_EQ(iLayersManager::registerNodeLayerClass("iNoSuchLayerClass", "c"), nullptr);
    EXPECT_TRUE(events.log.empty());
    std::vector<iNodeLayer*> layers;
    iLayersManager::getLayersList(layers);
    EXPECT_EQ(layers, (std::vector<iNodeLayer*>{a, b}));
    EXPECT_EQ(b->getModelId(), "b");
}

TEST_F(LayersManager, CurrentLayerIsRefusedWhenUnknownOrLocked)
{
    // An unknown name is refused, but listeners hear of a null layer.
    EXPECT_FALSE(iLayersManager::setCurrentLayer("nowhere"));
    EXPECT_EQ(iLayersManager::getCurrentLayer(), b);
    EXPECT_EQ(events.take(), Log{"layer:null"});
    {
        iLayersManagerLock outer;
        {
            iLayersManagerLock inner;
        }
        // Only the outermost lock hands the layer back.
        EXPECT_TRUE(events.log.empty());
        EXPECT_FALSE(iLayersManager::setCurrentLayer("a"));
        EXPECT_FALSE(iLayersManager::setCurrentLayer(a));
        EXPECT_EQ(iLayersManager::getCurrentLayer(), b);
        EXPECT_TRUE(events.log.empty());
    }
    EXPECT_EQ(events.take(), Log{"layer:b"});
    EXPECT_TRUE(iLayersManager::setCurrentLayer("a"));
    EXPECT_EQ(events.take(), Log{"layer:a"});
}

TEST_F(LayersManager, LoopLocksNestAndUnwindToTheFirstState)
{
    events.listen(b->sigBeginLoop, "loop");
    manager->loop();
    EXPECT_EQ(events.take(), Log{"loop"});
    {
        iLoopLock outer;
        {
            iLoopLock inner;
            manager->loop();
        }
        EXPECT_TRUE(manager->isLoopLocked());
        manager->loop();
    }
    EXPECT_FALSE(manager->isLoopLocked());
    EXPECT_TRUE(events.log.empty());
    manager->loop();
    EXPECT_EQ(events.take(), Log{"loop"});
}

TEST_F(LayersManager, EmptyAllLayersStartsANewDocument)
{
    manager->setUndoRedoEnabled(false);
    manager->storeForUndo("change");
    manager->setCurrentFileName("doc.ims");
    b->addObject(make("x").get(), false);
    events.take();

    manager->emptyAllLayers();
    EXPECT_EQ(events.take(), (Log{"empty", "db:0", "file"}));
    EXPECT_FALSE(manager->dbChanged());
    EXPECT_EQ(manager->getCurrentFileName(), "");
    EXPECT_EQ(b->findObjectByName("x"), nullptr);
    EXPECT_EQ(iLayersManager::getLayer("b"), b);
}

TEST_F(LayersManager, SaveNeedsAFileNameAndLoadRefillsTheSameLayers)
{
    EXPECT_FALSE(manager->save());
    EXPECT_FALSE(manager->saveAs(""));
    EXPECT_TRUE(events.log.empty());

    std::string const doc = files.path("doc");
    b->addObject(make("kept").get(), false);
    iLayersManager::setCurrentLayer("a");
    events.take();
    ASSERT_TRUE(manager->saveAs(doc));
    EXPECT_EQ(events.take(), (Log{"beginSave", "file:" + doc, "db:0"}));
    ASSERT_TRUE(manager->saveAs(doc));
    EXPECT_EQ(events.take(), (Log{"beginSave", "db:0"})) << "same name: no file signal";

    iLayersManager::setCurrentLayer("b");
    events.take();
    EXPECT_TRUE(manager->load(doc));
    EXPECT_NE(b->findObjectByName("kept"), nullptr);
    EXPECT_EQ(iLayersManager::getCurrentLayer(), a);
    EXPECT_EQ(manager->getCurrentFileName(), doc);
    Log const loaded{"empty", "db:0", "file", "beginLoad", "layer:a", "endLoad", "file:" + doc, "db:0"};
    EXPECT_EQ(events.take(), loaded);

    // A save that cannot write still returns true, as callers expect, but
    // the document stays modified under its old name and the reason is kept.
    manager->setUndoRedoEnabled(false);
    manager->storeForUndo("change");
    std::string const unwritable = testing::TempDir() + "no-such-directory/doc";
    EXPECT_TRUE(manager->saveAs(unwritable));
    EXPECT_TRUE(manager->dbChanged());
    EXPECT_EQ(manager->getCurrentFileName(), doc);
    EXPECT_NE(manager->getLastSaveError().find("no-such-directory"), std::string::npos);
    EXPECT_EQ(events.take(), (Log{"db:1", "beginSave", "db:1"}));
    ASSERT_TRUE(manager->save());
    EXPECT_EQ(manager->getLastSaveError(), "");
    EXPECT_FALSE(manager->dbChanged());
}

class LayerHistory : public LayersTest {
protected:
    void SetUp() override
    {
        LayersTest::SetUp();
        for (int i = 1; i < 20; ++i)
            iLayersManager::registerNodeLayerClass("iNodeLayer", name(i));
        history = manager->getHistoryManager();
    }
    static std::string name(int i) { return std::string("L") + char('A' + i); }
    static std::string current() { return iLayersManager::getCurrentLayer()->getModelId(); }

    iLayerManagerHistory* history = nullptr;
};

TEST_F(LayerHistory, HoldsAtMostSixteenNames)
{
    for (int i = 1; i < 20; ++i)
        iLayersManager::setCurrentLayer(name(i));
    EXPECT_EQ(history->getHistorySize(), 16);
    EXPECT_EQ(history->getNames().front(), name(4));
    EXPECT_EQ(history->getNames().back(), name(19));
    EXPECT_EQ(history->getIndex(), 15);
    EXPECT_FALSE(history->canGoNext());
}

TEST_F(LayerHistory, GoingBackAndForthDoesNotAddNames)
{
    iLayersManager::setCurrentLayer(name(1));
    iLayersManager::setCurrentLayer(name(2));
    iLayersManager::setCurrentLayer(name(2));
    ASSERT_EQ(history->getHistorySize(), 3);

    EXPECT_TRUE(history->goPrev());
    EXPECT_TRUE(history->goPrev());
    EXPECT_FALSE(history->goPrev());
    EXPECT_EQ(current(), "b");
    EXPECT_TRUE(history->goNext());
    EXPECT_EQ(current(), name(1));
    EXPECT_EQ(history->getHistorySize(), 3);
    EXPECT_EQ(history->getPrevClasses(), std::list<std::string>{"b"});
    EXPECT_EQ(history->getNextClasses(), std::list<std::string>{name(2)});

    // A new layer from the middle cuts what lay ahead.
    iLayersManager::setCurrentLayer(name(5));
    EXPECT_EQ(history->getNames(), (std::vector<std::string>{"b", name(1), name(5)}));
    EXPECT_TRUE(history->goTo(0));
    EXPECT_EQ(current(), "b");
    EXPECT_FALSE(history->goTo(3));
    EXPECT_EQ(history->getHistorySize(), 3);
}
