#include "model/ModelTestSupport.h"

#include <iModelStage/model/iUndoRedoManager.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

// Snapshots go to $TEMP, pointed at a directory of the test's own.
class UndoRedo : public LayersTest {
protected:
    void SetUp() override
    {
        if (char const* previous = std::getenv("TEMP"))
            oldTemp = previous, hadTemp = true;
        std::string pattern = testing::TempDir() + "iUndoRedoTestXXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        setenv("TEMP", dir.c_str(), 1);
        LayersTest::SetUp();
        undo = manager->getUndoRedoManager();
    }
    void TearDown() override
    {
        manager.reset();
        // The manager flushes on its way out: nothing may be left behind.
        EXPECT_TRUE(snapshots().empty());
        fs::remove_all(dir);
        if (hadTemp)
            setenv("TEMP", oldTemp.c_str(), 1);
        else
            unsetenv("TEMP");
    }

    Log snapshots() const
    {
        Log names;
        for (fs::directory_entry const& entry : fs::directory_iterator(dir))
            if (entry.path().filename().string().find("iUR") != std::string::npos)
                names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    void add(std::string const& name) { a->addObject(make(name).get(), false); }
    Log names() const
    {
        Log out;
        for (unsigned int i = 0; i < a->getObjectsRoot()->getNumChildren(); ++i)
            out.push_back(a->getObjectsRoot()->getChild(i)->getName());
        return out;
    }

    std::string dir;
    std::string oldTemp;
    bool hadTemp = false;
    iUndoRedoManager* undo = nullptr;
};

TEST_F(UndoRedo, EachStepWritesOneSnapshotPairAndFlushRemovesAll)
{
    ASSERT_TRUE(snapshots().empty());
    manager->storeForUndo("one");
    Log files = snapshots();
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].substr(files[0].size() - 4), ".iur");
    EXPECT_EQ(files[1], files[0] + "data");
    EXPECT_TRUE(manager->dbChanged());
    ASSERT_EQ(undo->getUndoList().size(), 1u);
    iUndoRedoManager::iUndoRedoManagerItem const* one = undo->getUndoList().front();
    EXPECT_EQ(one->getName(), "one");
    EXPECT_EQ(one->getNewState(), nullptr);
    EXPECT_EQ(one->getPrevState()->getUid(), iUndoRedoManager::getNextUid());

    // The state after "one" is the one before "two": one snapshot for both.
    manager->storeForUndo("two");
    EXPECT_EQ(snapshots().size(), 4u);
    ASSERT_NE(one->getNewState(), nullptr);
    EXPECT_TRUE(one->getNewState()->isShared());
    EXPECT_EQ(one->getNewState()->getPath(), undo->getUndoList().front()->getPrevState()->getPath());

    undo->flush();
    EXPECT_TRUE(snapshots().empty());
    EXPECT_FALSE(undo->canUndo());
    EXPECT_EQ(iUndoRedoManager::getNextUid(), 0);

    manager->storeForUndo("three");
    manager->load(dir + "/missing.ims");
    EXPECT_TRUE(snapshots().empty());
    EXPECT_FALSE(undo->canUndo());
}

TEST_F(UndoRedo, CancelledStoreLeavesListFilesAndCounterAsBefore)
{
    manager->storeForUndo("one");
    Log const files = snapshots();
    int const uid = iUndoRedoManager::getNextUid();
    auto* one = undo->getUndoList().front();

    manager->storeForUndo("two");
    EXPECT_EQ(iUndoRedoManager::getNextUid(), uid + 1);
    manager->cancelUndoStore();
    EXPECT_EQ(iUndoRedoManager::getNextUid(), uid);
    EXPECT_EQ(snapshots(), files);
    EXPECT_EQ(undo->getUndoList(), (std::list<iUndoRedoManager::iUndoRedoManagerItem*>{one}));
    EXPECT_EQ(one->getNewState(), nullptr);
    EXPECT_FALSE(manager->dbChanged());
}

TEST_F(UndoRedo, NewStepAfterUndoCutsTheRedoBranchAndItsFiles)
{
    add("x");
    manager->storeForUndo("one");
    add("y");
    manager->storeForUndo("two");
    add("z");
    ASSERT_TRUE(manager->undo(1, true));
    EXPECT_EQ(names(), (Log{"x", "y"}));
    ASSERT_EQ(undo->getRedoList().size(), 1u);
    std::string const twoBefore = undo->getRedoList().front()->getPrevState()->getPath();
    std::string const twoAfter = undo->getRedoList().front()->getNewState()->getPath();
    EXPECT_EQ(snapshots().size(), 6u);

    manager->storeForUndo("three");
    EXPECT_FALSE(undo->canRedo());
    ASSERT_EQ(undo->getUndoList().size(), 2u);
    EXPECT_EQ(undo->getUndoList().front()->getName(), "three");
    EXPECT_EQ(snapshots().size(), 4u);
    for (std::string const& gone : {twoBefore, twoAfter})
        EXPECT_FALSE(fs::exists(gone) || fs::exists(gone + "data")) << gone;
}

TEST_F(UndoRedo, UndoThatStoresTheCurrentStateCanBeRedone)
{
    manager->setCurrentFileName("/projects/doc.ims");
    add("x");
    long const id = a->findObjectByName("x")->getUniqueId();
    manager->storeForUndo("one");
    add("y");
    Log const files = snapshots();

    // More steps than there are change nothing.
    EXPECT_FALSE(manager->undo(2, true));
    EXPECT_EQ(names(), (Log{"x", "y"}));
    EXPECT_EQ(undo->getUndoList().size(), 1u);
    EXPECT_FALSE(undo->canRedo());
    EXPECT_EQ(snapshots(), files);

    // The file name and the modified flag survive; listeners are told
    // whether anything is left to undo.
    events.take();
    ASSERT_TRUE(manager->undo(1, true));
    EXPECT_EQ(names(), Log{"x"});
    EXPECT_EQ(a->findObjectByName("x")->getUniqueId(), id);
    EXPECT_EQ(manager->getCurrentFileName(), "/projects/doc.ims");
    EXPECT_TRUE(manager->dbChanged());
    EXPECT_EQ(events.take(), (Log{"beginSave", "empty", "beginLoad", "layer:b", "endLoad", "db:0"}));
    EXPECT_TRUE(undo->canRedo());

    ASSERT_TRUE(manager->redo(1));
    EXPECT_EQ(names(), (Log{"x", "y"}));
    EXPECT_FALSE(undo->canRedo());
    EXPECT_TRUE(undo->canUndo());
    EXPECT_FALSE(manager->redo(1));
}

TEST_F(UndoRedo, UndoWithoutStoringTheFrontStepLeavesNothingToRedo)
{
    add("x");
    manager->storeForUndo("one");
    add("y");
    ASSERT_TRUE(manager->undo(1, false));
    EXPECT_EQ(names(), Log{"x"});
    ASSERT_EQ(undo->getRedoList().size(), 1u);
    EXPECT_EQ(undo->getRedoList().front()->getNewState(), nullptr);

    EXPECT_FALSE(manager->redo(1));
    // A failed redo gives up the whole history.
    EXPECT_FALSE(undo->canUndo());
    EXPECT_FALSE(undo->canRedo());
    EXPECT_TRUE(snapshots().empty());
}
