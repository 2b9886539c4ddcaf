#ifndef IMODELSTAGE_EDITING_IGEOMETRYHANDLER_H
#define IMODELSTAGE_EDITING_IGEOMETRYHANDLER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Array>
#include <osg/Group>

#include <string>

class iBaseHandle;
class iGeometricGroup;

// What handle editing knows of one kind of object: where its handles are
// and what a moved or deleted handle does to it. Positions are in the
// object's local frame. The application derives one per kind of object and
// registers it with iGeometryHandlerManager; it holds no data, a new one is
// made for every editing run.
class IMODELSTAGE_EXPORT iGeometryHandler : public iRoot, public osg::Group {
    I_CLASS(iGeometryHandler, iRoot, 1)
    I_OSG_NODE(iGeometryHandler)
public:
    iGeometryHandler();
    iGeometryHandler(iGeometryHandler const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    // The class of the handles made for this handler.
    virtual std::string getEditingHandlerClass();
    // Fills positions with the handles of object; false when this handler
    // cannot edit it.
    virtual bool getHandles(iGeometricGroup* object, osg::Vec3Array& positions);
    virtual void setHandle(iGeometricGroup* object, int index, osg::Vec3f const& position);
    virtual bool canDeleteHandle(iGeometricGroup* object, int index);
    virtual void deleteHandle(iGeometricGroup* object, int index);
    // Called once for each handle just made, for a handler that dresses it.
    virtual void initHandle(iGeometricGroup* object, iBaseHandle* handle);

protected:
    ~iGeometryHandler() override;
};

#endif
