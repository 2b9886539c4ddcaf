#include <iModelStage/editing/iGeometryHandler.h>

I_REGISTER_CLASS(iGeometryHandler)

iGeometryHandler::iGeometryHandler() = default;

iGeometryHandler::iGeometryHandler(iGeometryHandler const& other, osg::CopyOp const& copyop)
    : iRoot(other), osg::Group(other, copyop)
{
}

iGeometryHandler::~iGeometryHandler() = default;

std::string iGeometryHandler::getEditingHandlerClass()
{
    return "iPointHandle";
}

bool iGeometryHandler::getHandles(iGeometricGroup*, osg::Vec3Array&)
{
    return false;
}

void iGeometryHandler::setHandle(iGeometricGroup*, int, osg::Vec3f const&) {}

bool iGeometryHandler::canDeleteHandle(iGeometricGroup*, int)
{
    return true;
}

void iGeometryHandler::deleteHandle(iGeometricGroup*, int) {}

void iGeometryHandler::initHandle(iGeometricGroup*, iBaseHandle*) {}
