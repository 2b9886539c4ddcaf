#include "model/ModelTestSupport.h"

#include <iModelStage/model/iUndoRedoManager.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

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

    // With no snapshot to go to, redo refuses before it touches anything.
    EXPECT_FALSE(manager->redo(1));
    EXPECT_EQ(names(), Log{"x"});
    EXPECT_FALSE(undo->canUndo());
    EXPECT_EQ(undo->getRedoList().size(), 1u);
    EXPECT_EQ(snapshots().size(), 2u);
}

TEST_F(UndoRedo, SnapshotThatIsGoneOrNotOursIsRefusedBeforeTheDocumentIsTouched)
{
    add("x");
    manager->storeForUndo("one");
    add("y");
    manager->storeForUndo("two");
    add("z");
    std::string const index = undo->getUndoList().front()->getPrevState()->getPath();
    auto refused = [&] {
        EXPECT_FALSE(manager->undo(1, true));
        EXPECT_EQ(names(), (Log{"x", "y", "z"}));
        EXPECT_EQ(undo->getUndoList().size(), 2u);
        EXPECT_TRUE(undo->getRedoList().empty());
    };

    // The index names another uid, then another process's data file.
    std::string const original = readFile(index);
    std::ofstream(index) << 999 << index << "data";
    refused();
    std::ofstream(index) << undo->getUndoList().front()->getPrevState()->getUid() << dir << "/iURother.iurdata";
    refused();
    std::ofstream(index) << original;

    // The data file is gone.
    std::string const data = index + "data";
    std::string const bytes = readFile(data);
    std::remove(data.c_str());
    refused();

    // Back in place, the same undo goes through.
    std::ofstream(data, std::ios::binary) << bytes;
    ASSERT_TRUE(manager->undo(1, true));
    EXPECT_EQ(names(), (Log{"x", "y"}));
}

// The protected half of the manager, as a host's subclass sees it.
class ExposedUndoRedoManager : public iUndoRedoManager {
public:
    using iUndoRedoManager::iUndoRedoManager;
    using iUndoRedoManager::composeUndoRedoName;
    using iUndoRedoManager::writeUndoRedoData;
};

TEST_F(UndoRedo, SnapshotNamesAreUnguessableAndLinksAreNotFollowed)
{
    ExposedUndoRedoManager exposed(manager.get());
    std::string const first = exposed.composeUndoRedoName();
    std::string const second = exposed.composeUndoRedoName();
    // "iUR", the process, a random token, the counter: reserved at once,
    // private to their owner.
    std::string const process = dir + "/iUR" + std::to_string(getpid()) + "-";
    for (std::string const& name : {first, second}) {
        ASSERT_EQ(name.rfind(process, 0), 0u) << name;
        EXPECT_EQ(name.size(), process.size() + 16 + 1 + std::to_string(iUndoRedoManager::getNextUid()).size() + 4);
        for (std::string const& file : {name, name + "data"}) {
            struct stat info;
            ASSERT_EQ(lstat(file.c_str(), &info), 0) << file;
            EXPECT_TRUE(S_ISREG(info.st_mode));
            EXPECT_EQ(info.st_mode & 0777, 0600u);
        }
    }
    EXPECT_NE(first.substr(process.size(), 16), second.substr(process.size(), 16));

    // Links planted where a snapshot goes are replaced, never written through.
    std::string const victim = dir + "/victim";
    std::ofstream(victim) << "precious";
    for (std::string const& name : {first, first + "data"}) {
        std::remove(name.c_str());
        ASSERT_EQ(symlink(victim.c_str(), name.c_str()), 0);
    }
    ASSERT_TRUE(exposed.writeUndoRedoData(7, first));
    EXPECT_EQ(readFile(victim), "precious");
    struct stat info;
    ASSERT_EQ(lstat((first + "data").c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode));
    for (std::string const& name : {first, first + "data", second, second + "data", victim})
        std::remove(name.c_str());
}

TEST_F(UndoRedo, DamagedSnapshotEmptiesTheLayersButKeepsThem)
{
    // A snapshot whose total size does not add up drops its content; the
    // layers the host holds stay registered and usable.
    add("x");
    manager->storeForUndo("one");
    add("y");
    std::string const data = undo->getUndoList().front()->getPrevState()->getPath() + "data";
    std::string bytes = readFile(data);
    bytes[0] = static_cast<char>(bytes[0] + 1);
    std::ofstream(data, std::ios::binary) << bytes;
    ASSERT_TRUE(manager->undo(1, true));
    EXPECT_EQ(iLayersManager::getLayer("a"), a);
    EXPECT_TRUE(names().empty());
    add("z");
    EXPECT_EQ(names(), Log{"z"});
}
