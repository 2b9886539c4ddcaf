#ifndef IMODELSTAGE_GEOMETRY_IIMPORTEXPORTCALLBACK_H
#define IMODELSTAGE_GEOMETRY_IIMPORTEXPORTCALLBACK_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Node>
#include <osg/Referenced>

#include <string>
#include <vector>

// Base of the application's readers and writers of model files, registered
// by class name with iImportExportManager. An instance lives for one call:
// it answers null or false for a file it does not handle, and keeps no
// state between calls.
class IMODELSTAGE_EXPORT iImportExportCallBack : public iRoot, public osg::Referenced {
    I_CLASS(iImportExportCallBack, iRoot, 1)
public:
    iImportExportCallBack();
    ~iImportExportCallBack() override;

    // Filter entries for file dialogs, as "Description (*.ext)".
    virtual std::vector<std::string> getHandledFileExtesions();
    // A new node that the caller owns, or null.
    virtual osg::Node* importFromFile(std::string const& fileName);
    virtual bool exportToFile(osg::Node* node, std::string const& fileName);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}
};

#endif
