#include "model/DocumentBytes.h"

#include <iModelStage/model/iSettingsManagerBase.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Every entry names layer "a" again and holds two objects, both children
// of both objects of the entry before: the number of paths through the
// layer doubles with each entry unless the load bounds it.
std::string doublingDocument(int entries)
{
    std::vector<std::pair<std::string, std::string>> layers;
    for (int k = 0; k < entries; ++k) {
        std::vector<int> parents;
        if (k > 0)
            parents = {910000 + 2 * (k - 1), 910001 + 2 * (k - 1)};
        std::vector<std::string> records;
        for (int i = 0; i < 2; ++i)
            records.push_back(record("iNodeGroup", nodeObject(910000 + 2 * k + i, "", "a"), parents));
        layers.emplace_back("a", layerBody(kLayerA, records));
    }
    return document(layers, "a");
}

std::size_t pathsThrough(iNodeLayer* layer)
{
    NodeList all;
    layer->getObjectsList(layer->getObjectsRoot(), all, nullptr);
    return all.size();
}

// Files this process writes may not grow past limit bytes while it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit)
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit small = m_old;
        small.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old;
    void (*m_oldHandler)(int);
};

// New files that a save of path left behind.
std::vector<std::string> leftovers(std::string const& path)
{
    std::string const stem = "." + fs::path(path).filename().string() + ".";
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(fs::path(path).parent_path()))
        if (entry.path().filename().string().rfind(stem, 0) == 0)
            names.push_back(entry.path().filename().string());
    return names;
}

} // namespace

class DataSafety : public LayersTest {
protected:
    void fill(int count)
    {
        for (int i = 0; i < count; ++i)
            a->addObject(make("object with a fairly long name " + std::to_string(i)).get(), false);
    }
};

TEST_F(DataSafety, LayerNamedInManyEntriesLoadsInBoundedPaths)
{
    // Forty doublings would be 2^40 paths: only a bound makes this finish.
    int const entries = 40;
    load(doublingDocument(entries));
    for (int id = 910000; id < 910000 + 2 * entries; ++id)
        EXPECT_NE(a->findObjectByUniqueId(id), nullptr) << id;
    std::size_t const objects = 2 * entries;
    EXPECT_LE(pathsThrough(a), 4 * objects + 4096);
    // The budget is spent on the first links, as a sane file would use it.
    iNodeGroup* early = a->findObjectByUniqueId(910000 + 2 * 5);
    ASSERT_NE(early, nullptr);
    EXPECT_EQ(early->getNumParents(), 2u);

    // A save and a load of what came in stay within the same bound.
    std::string const saved = save();
    load(saved);
    EXPECT_LE(pathsThrough(a), 4 * objects + 4096);
    EXPECT_EQ(save(), saved);
}

TEST_F(DataSafety, SaveThatRunsOutOfSpaceKeepsTheOldFile)
{
    fill(300);
    std::string const path = files.path("doc");
    ASSERT_TRUE(manager->saveAs(path));
    std::string const good = readFile(path);
    ASSERT_GT(good.size(), 16000u);

    fill(300);
    manager->setUndoRedoEnabled(false);
    manager->storeForUndo("more");
    events.take();
    {
        FileSizeLimit full(4096);
        EXPECT_TRUE(manager->saveAs(path));
    }
    EXPECT_EQ(readFile(path), good);
    EXPECT_NE(manager->getLastSaveError(), "");
    EXPECT_TRUE(manager->dbChanged());
    EXPECT_EQ(events.take(), (Log{"beginSave", "db:1"}));
    EXPECT_EQ(leftovers(path), std::vector<std::string>{});

    // The next save that fits replaces the file and clears the error.
    ASSERT_TRUE(manager->save());
    EXPECT_EQ(manager->getLastSaveError(), "");
    EXPECT_FALSE(manager->dbChanged());
    EXPECT_GT(readFile(path).size(), good.size());
}

TEST_F(DataSafety, SettingsFileSurvivesAFailedWrite)
{
    std::string const path = files.path("settings");
    ASSERT_TRUE(iSettingsManagerBase::write(path.c_str()));
    std::string const good = readFile(path);
    {
        FileSizeLimit full(16);
        EXPECT_FALSE(iSettingsManagerBase::write(path.c_str()));
    }
    EXPECT_EQ(readFile(path), good);
    EXPECT_EQ(leftovers(path), std::vector<std::string>{});
}

TEST_F(DataSafety, SaveToAFolderAMissingFolderOrAReadOnlyFileChangesNothing)
{
    std::string const named = files.path("named");
    ASSERT_TRUE(manager->saveAs(named));
    fill(3);

    std::string const folder = files.path("folder");
    fs::create_directory(folder);
    std::string const readOnly = files.write("readonly", "keep me");
    chmod(readOnly.c_str(), 0444);
    for (std::string const& target : {folder, files.path("missing") + "/doc", readOnly}) {
        manager->storeForUndo("change");
        EXPECT_TRUE(manager->saveAs(target)) << target;
        EXPECT_NE(manager->getLastSaveError(), "") << target;
        EXPECT_EQ(manager->getCurrentFileName(), named) << target;
        EXPECT_TRUE(manager->dbChanged()) << target;
    }
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_TRUE(fs::is_empty(folder));
    EXPECT_EQ(readFile(readOnly), "keep me");
    fs::remove(folder);

    // A file that is written keeps the permissions its user gave it.
    chmod(named.c_str(), 0640);
    ASSERT_TRUE(manager->save());
    struct stat info;
    ASSERT_EQ(stat(named.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}
