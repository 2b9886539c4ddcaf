#ifndef IMODELSTAGE_GEOMETRY_IIMPORTEXPORTMANAGER_H
#define IMODELSTAGE_GEOMETRY_IIMPORTEXPORTMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Node>

#include <string>
#include <vector>

class iImportExportCallBack;

// Reads and writes model files: the application's iImportExportCallBack
// classes first, in order of registration, then the scene graph's file
// plug-ins. A callback recognises its files by itself; no extension is
// compared here.
class IMODELSTAGE_EXPORT iImportExportManager : public iRoot {
    I_CLASS(iImportExportManager, iRoot, 1)
public:
    // The first instance made becomes the one getInstance returns.
    iImportExportManager();
    ~iImportExportManager() override;
    iImportExportManager(iImportExportManager const&) = delete;
    iImportExportManager& operator=(iImportExportManager const&) = delete;

    static iImportExportManager* getInstance();

    // False for a name already registered; the class is not checked here.
    static bool registerNewImportExportCallback(char const* className);
    // A new node that the caller owns, or null when nothing could read the
    // file.
    static osg::Node* importFromFile(std::string const& fileName);
    static bool exportToFile(osg::Node* node, std::string const& fileName);
    // The callbacks' entries as they give them, then "Description (*.ext)"
    // for every extension of every installed plug-in, duplicates kept.
    static std::vector<std::string> getHandledFileExtensions();

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

private:
    // Null for a name the class table does not know, or that makes no
    // callback.
    static iImportExportCallBack* getCallBackInstance(char const* className);
    // Calls work with an instance of every registered callback in order,
    // until it answers true.
    template <class Work>
    static void forEachCallBack(Work&& work);
};

#endif
