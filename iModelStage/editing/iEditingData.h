#ifndef IMODELSTAGE_EDITING_IEDITINGDATA_H
#define IMODELSTAGE_EDITING_IEDITINGDATA_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/NodeList.h>

#include <osg/Referenced>
#include <osg/ref_ptr>

class iBaseHandle;
class iGeometricGroup;
class iGeometryHandler;
class iTransformGroup;

// One edited object with its handler and its handles, in index order. It
// listens to each handle: a moved handle moves the object's vertex, a
// removed one deletes it.
class IMODELSTAGE_EXPORT iEditingData : public iRoot, public osg::Referenced {
    I_CLASS(iEditingData, iRoot, 1)
public:
    iEditingData();
    iEditingData(iGeometryHandler* handler, iGeometricGroup* object);
    iEditingData(iEditingData const&) = delete;
    iEditingData& operator=(iEditingData const&) = delete;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    iGeometryHandler* getHandler() const { return _handler.get(); }
    iGeometricGroup* getObject() const { return _object.get(); }
    NodeList const& getHandles() const { return _handles; }
    // Appends the handle and starts listening to it.
    void addHandle(iBaseHandle* handle);

    void slotHandleMoved(iTransformGroup* source);
    void slotHandleRemoved(iRoot* source);

protected:
    ~iEditingData() override;

private:
    int findHandle(iRoot* source) const;

    osg::ref_ptr<iGeometryHandler> _handler;
    osg::ref_ptr<iGeometricGroup> _object;
    NodeList _handles;
};

#endif
