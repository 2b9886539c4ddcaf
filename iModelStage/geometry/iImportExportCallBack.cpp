#include <iModelStage/geometry/iImportExportCallBack.h>

I_REGISTER_CLASS(iImportExportCallBack)

iImportExportCallBack::iImportExportCallBack() = default;

iImportExportCallBack::~iImportExportCallBack() = default;

std::vector<std::string> iImportExportCallBack::getHandledFileExtesions()
{
    return {};
}

osg::Node* iImportExportCallBack::importFromFile(std::string const&)
{
    return nullptr;
}

bool iImportExportCallBack::exportToFile(osg::Node*, std::string const&)
{
    return false;
}
