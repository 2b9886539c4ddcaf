#ifndef IMODELSTAGE_MODEL_IOBJECTDATA_H
#define IMODELSTAGE_MODEL_IOBJECTDATA_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iObjectPool.h>

#include <osg/UserDataContainer>

#include <bitset>
#include <string>

// The model's state of a node, hung on it as OSG user data so that any
// node can carry it: 32 flags, the node mask to restore when the node is
// shown again, and the id of the layer that owns it.
//
// A node has to have a user-data container to hold user data; on a node
// without one the block is its own container, and answers itself as the
// node's user data, which saves a second block per object. What a host
// puts in such a container besides (user objects, descriptions, other user
// data in place of the block) goes to a plain container made when first
// needed. On a node that has a container already, the block is ordinary
// user data in it.
class IMODELSTAGE_EXPORT iObjectData : public osg::UserDataContainer {
public:
    iObjectData() { flags.set(); }
    // The three fields only: a copy is a fresh block, never a container.
    iObjectData(iObjectData const& other);
    iObjectData(iObjectData&& other);
    // As a container: the fields, the container's contents by copyop, and
    // whether the block is the user data.
    iObjectData(iObjectData const& other, osg::CopyOp const& copyop);

    iObjectData& operator=(iObjectData const& other);
    iObjectData& operator=(iObjectData&& other);

    // Beside the objects, in the object pool.
    static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
    static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }

    osg::Object* cloneType() const override { return new iObjectData; }
    osg::Object* clone(osg::CopyOp const& copyop) const override { return new iObjectData(*this, copyop); }
    bool isSameKindAs(osg::Object const* object) const override
    {
        return dynamic_cast<iObjectData const*>(object) != nullptr;
    }
    char const* libraryName() const override { return "iModelStage"; }
    char const* className() const override { return "iObjectData"; }

    void setUserData(osg::Referenced* data) override;
    osg::Referenced* getUserData() override;
    osg::Referenced const* getUserData() const override;

    unsigned int addUserObject(osg::Object* object) override;
    void setUserObject(unsigned int i, osg::Object* object) override;
    void removeUserObject(unsigned int i) override;
    osg::Object* getUserObject(unsigned int i) override;
    osg::Object const* getUserObject(unsigned int i) const override;
    unsigned int getNumUserObjects() const override;
    unsigned int getUserObjectIndex(osg::Object const* object, unsigned int startPos = 0) const override;
    unsigned int getUserObjectIndex(std::string const& name, unsigned int startPos = 0) const override;

    void setDescriptions(DescriptionList const& descriptions) override;
    DescriptionList& getDescriptions() override;
    DescriptionList const& getDescriptions() const override;
    unsigned int getNumDescriptions() const override;
    void addDescription(std::string const& description) override;

    using osg::UserDataContainer::addUserObject;
    using osg::UserDataContainer::getUserObject;

    std::bitset<32> flags;
    unsigned int savedNodeMask = 1;
    std::string layerId;

protected:
    ~iObjectData() override;

private:
    osg::DefaultUserDataContainer& contents();

    // The container's own contents, once it has any.
    osg::ref_ptr<osg::DefaultUserDataContainer> _contents;
    // Whether the block answers itself as the user data of its container
    // role; cleared when a host sets other user data.
    bool _ownData = true;
};

#endif
