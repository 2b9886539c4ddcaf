#ifndef IMODELSTAGE_MODEL_IOBJECTDATA_H
#define IMODELSTAGE_MODEL_IOBJECTDATA_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iObjectPool.h>

#include <osg/Referenced>

#include <bitset>
#include <string>

// The model's state of a node, hung on it as OSG user data so that any
// node can carry it: 32 flags, the node mask to restore when the node is
// shown again, and the id of the layer that owns it.
class IMODELSTAGE_EXPORT iObjectData : public osg::Referenced {
public:
    iObjectData() { flags.set(); }
    // Beside the objects, in the object pool.
    static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
    static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }

    iObjectData(iObjectData const& other)
        : osg::Referenced(), flags(other.flags), savedNodeMask(other.savedNodeMask), layerId(other.layerId)
    {
    }
    iObjectData(iObjectData&& other)
        : osg::Referenced(), flags(other.flags), savedNodeMask(other.savedNodeMask), layerId(std::move(other.layerId))
    {
    }
    iObjectData& operator=(iObjectData const& other)
    {
        flags = other.flags;
        savedNodeMask = other.savedNodeMask;
        layerId = other.layerId;
        return *this;
    }
    iObjectData& operator=(iObjectData&& other)
    {
        flags = other.flags;
        savedNodeMask = other.savedNodeMask;
        layerId = std::move(other.layerId);
        return *this;
    }

    std::bitset<32> flags;
    unsigned int savedNodeMask = 1;
    std::string layerId;

protected:
    ~iObjectData() override = default;
};

#endif
