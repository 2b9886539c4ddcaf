#include <iModelStage/geometry/iImportExportManager.h>

#include <iModelStage/geometry/iFrameInstance.h>
#include <iModelStage/geometry/iImportExportCallBack.h>

#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgDB/PluginQuery>
#include <osgDB/ReadFile>
#include <osgDB/Registry>
#include <osgDB/WriteFile>

#include <algorithm>
#include <exception>
#include <set>

I_REGISTER_CLASS(iImportExportManager)

namespace {

std::vector<std::string>& callbackClasses()
{
    static std::vector<std::string> names;
    return names;
}

iImportExportManager*& instance()
{
    static iImportExportManager* first = nullptr;
    return first;
}

// The plug-in files of the folder that holds a plug-in osgDB surely has,
// for systems where the library path names that folder itself.
osgDB::FileNameList pluginsBesideKnownOne()
{
    osgDB::FileNameList plugins;
    osgDB::Registry* registry = osgDB::Registry::instance();
    for (char const* extension : {"osg", "osgb", "obj", "png"}) {
        std::string const found = osgDB::findLibraryFile(registry->createLibraryNameForExtension(extension));
        if (found.empty())
            continue;
        std::string const folder = osgDB::getFilePath(found);
        std::string const sample = osgDB::getSimpleFileName(found);
        std::string const suffix = sample.substr(sample.find_last_of('.'));
        osgDB::DirectoryContents contents = osgDB::getDirectoryContents(folder);
        std::sort(contents.begin(), contents.end());
        for (std::string const& file : contents)
            if (file.compare(0, 6, "osgdb_") == 0 && osgDB::getFileExtensionIncludingDot(file) == suffix)
                plugins.push_back(osgDB::concatPaths(folder, file));
        return plugins;
    }
    return plugins;
}

void appendEntries(osgDB::ReaderWriter::FormatDescriptionMap const& extensions, std::vector<std::string>& out)
{
    for (auto const& entry : extensions)
        out.push_back(entry.second + " (*." + entry.first + ")");
}

// The reader-writers that loading the plug-in adds. The plug-in stays
// loaded: osgDB's own query unloads what it loaded, and some plug-ins pull
// in libraries that do not survive being unloaded. A plug-in already in use
// adds nothing; the caller lists those from the registry.
void appendPluginEntries(std::string const& plugin, std::vector<std::string>& out)
{
    osgDB::Registry* registry = osgDB::Registry::instance();
    std::set<osgDB::ReaderWriter const*> before;
    for (osg::ref_ptr<osgDB::ReaderWriter> const& reader : registry->getReaderWriterList())
        before.insert(reader.get());
    if (registry->loadLibrary(plugin) != osgDB::Registry::LOADED)
        return;
    for (osg::ref_ptr<osgDB::ReaderWriter> const& reader : registry->getReaderWriterList())
        if (before.count(reader.get()) == 0)
            appendEntries(reader->supportedExtensions(), out);
}

} // namespace

iImportExportManager::iImportExportManager()
{
    if (!instance())
        instance() = this;
}

iImportExportManager::~iImportExportManager()
{
    if (instance() == this)
        instance() = nullptr;
}

iImportExportManager* iImportExportManager::getInstance()
{
    return instance();
}

bool iImportExportManager::registerNewImportExportCallback(char const* className)
{
    if (!className)
        return false;
    std::vector<std::string>& names = callbackClasses();
    if (std::find(names.begin(), names.end(), className) != names.end())
        return false;
    names.push_back(className);
    return true;
}

iImportExportCallBack* iImportExportManager::getCallBackInstance(char const* className)
{
    return iNewFrameInstance<iImportExportCallBack>(className).release();
}

template <class Work>
void iImportExportManager::forEachCallBack(Work&& work)
{
    for (std::string const& name : callbackClasses()) {
        // The instance goes before the next one is made.
        osg::ref_ptr<iImportExportCallBack> callback = getCallBackInstance(name.c_str());
        if (callback && work(callback.get()))
            return;
    }
}

osg::Node* iImportExportManager::importFromFile(std::string const& fileName)
{
    osg::ref_ptr<osg::Node> node;
    forEachCallBack([&](iImportExportCallBack* callback) {
        node = callback->importFromFile(fileName);
        return node.valid();
    });
    if (node)
        return node.release();
    // A plug-in that gives up on a damaged file by throwing reads as no file.
    try {
        node = osgDB::readRefNodeFile(fileName, osgDB::Registry::instance()->getOptions());
    } catch (std::exception const&) {
        node = nullptr;
    }
    return node.release();
}

bool iImportExportManager::exportToFile(osg::Node* node, std::string const& fileName)
{
    bool written = false;
    forEachCallBack([&](iImportExportCallBack* callback) {
        written = callback->exportToFile(node, fileName);
        return written;
    });
    if (written)
        return true;
    if (!node)
        return false;
    return osgDB::writeObjectFile(*node, fileName, osgDB::Registry::instance()->getOptions());
}

std::vector<std::string> iImportExportManager::getHandledFileExtensions()
{
    std::vector<std::string> entries;
    forEachCallBack([&](iImportExportCallBack* callback) {
        std::vector<std::string> const own = callback->getHandledFileExtesions();
        entries.insert(entries.end(), own.begin(), own.end());
        return false;
    });
    // Plug-ins already in use are listed from the registry, after the
    // others.
    osgDB::Registry::ReaderWriterList const inUse = osgDB::Registry::instance()->getReaderWriterList();
    osgDB::FileNameList plugins = osgDB::listAllAvailablePlugins();
    if (plugins.empty())
        plugins = pluginsBesideKnownOne();
    for (std::string const& plugin : plugins)
        appendPluginEntries(plugin, entries);
    for (osg::ref_ptr<osgDB::ReaderWriter> const& reader : inUse)
        appendEntries(reader->supportedExtensions(), entries);
    return entries;
}
