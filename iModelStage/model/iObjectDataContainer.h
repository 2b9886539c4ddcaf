#ifndef IMODELSTAGE_MODEL_IOBJECTDATACONTAINER_H
#define IMODELSTAGE_MODEL_IOBJECTDATACONTAINER_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iObjectPool.h>

#include <osg/UserDataContainer>

// The user-data container that holds a node's iObjectData, taken from the
// object pool so that it lies with the objects and their blocks. It is
// OSG's default container in all else: a clone of it is a plain one.
class IMODELSTAGE_EXPORT iObjectDataContainer : public osg::DefaultUserDataContainer {
public:
    iObjectDataContainer() = default;

    static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
    static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }

protected:
    ~iObjectDataContainer() override;
};

#endif
