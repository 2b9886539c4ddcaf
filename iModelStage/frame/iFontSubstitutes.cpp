#include <iModelStage/frame/iFontSubstitutes.h>

#include <osgDB/Registry>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Substitute {
    char const* name;
    char const* font;
};

Substitute const kSubstitutes[] = {
    {"fonts/tahoma.ttf", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"},
};

std::vector<fs::path> candidateDirectories()
{
    std::vector<fs::path> directories;
    if (char const* cache = std::getenv("XDG_CACHE_HOME"); cache && *cache)
        directories.push_back(fs::path(cache) / "iModelStage" / "datapath");
    else if (char const* home = std::getenv("HOME"); home && *home)
        directories.push_back(fs::path(home) / ".cache" / "iModelStage" / "datapath");
    std::error_code error;
    fs::path const temp = fs::temp_directory_path(error);
    if (!error)
        directories.push_back(temp / ("iModelStage-datapath-" + std::to_string(::getuid())));
    return directories;
}

// A real directory of this user: nobody else may choose our fonts.
bool ownDirectory(fs::path const& directory)
{
    struct stat status;
    return ::lstat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::getuid();
}

bool linksTo(fs::path const& link, fs::path const& target)
{
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(link, error)))
        return false;
    fs::path const points = fs::read_symlink(link, error);
    return !error && points == target;
}

// The link at its place; another process may have made it meanwhile.
bool placeLink(fs::path const& link, fs::path const& target)
{
    if (linksTo(link, target))
        return true;
    std::error_code error;
    fs::remove(link, error);
    fs::create_symlink(target, link, error);
    return linksTo(link, target);
}

bool prepare(fs::path const& directory)
{
    std::error_code error;
    fs::create_directories(directory, error);
    if (error || !ownDirectory(directory))
        return false;
    for (Substitute const& substitute : kSubstitutes) {
        fs::path const link = directory / substitute.name;
        fs::create_directories(link.parent_path(), error);
        if (error || !placeLink(link, substitute.font))
            return false;
    }
    return true;
}

bool fontsPresent()
{
    std::error_code error;
    return std::all_of(std::begin(kSubstitutes), std::end(kSubstitutes),
                       [&](Substitute const& substitute) { return fs::is_regular_file(substitute.font, error); });
}

} // namespace

std::string iFontSubstitutes::install()
{
    if (!fontsPresent())
        return std::string();
    for (fs::path const& directory : candidateDirectories()) {
        if (!prepare(directory))
            continue;
        osgDB::FilePathList& paths = osgDB::Registry::instance()->getDataFilePathList();
        if (std::find(paths.begin(), paths.end(), directory.string()) == paths.end())
            paths.push_back(directory.string());
        return directory.string();
    }
    return std::string();
}
