#ifndef IMODELSTAGE_MODEL_INODEGROUP_H
#define IMODELSTAGE_MODEL_INODEGROUP_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/frame/iObjectPool.h>

#include <osg/PositionAttitudeTransform>

#include <bitset>
#include <string>

class iGhostNode;
class iObjectData;

// Base of every document object: a frame object and a scene node at once.
//
// Its model state (flags, owning layer, saved node mask) lives in an
// iObjectData block hung on the node as user data, so the static flag
// functions work on any osg::Node. Flag bits: 0 visible, 1 selectable,
// 2 deletable, 4 snappable, 5 flags editable (when clear, every other flag
// is frozen), 6 persistent, 8 has proxy selector, 9 clonable, 11 show
// selection. The others keep their default 1 and round-trip through files.
class IMODELSTAGE_EXPORT iNodeGroup : public iRoot, public osg::PositionAttitudeTransform {
    I_CLASS(iNodeGroup, iRoot, 1)
    I_OSG_NODE(iNodeGroup)
public:
    iNodeGroup();
    // A copy gets its own flag block, never the source's, and starts with
    // no connections.
    iNodeGroup(iNodeGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Objects live in the object pool, so that a document stays together
    // in memory whatever the host allocates around it.
    static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
    static void* operator new(std::size_t, void* place) { return place; }
    static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }

    sigslot::signal3<iNodeGroup*, unsigned int, bool> sigFlagChanged;
    sigslot::signal3<iNodeGroup*, std::bitset<32>, std::bitset<32>> sigFlagsChanged;
    // The object has just been removed from its model.
    sigslot::signal1<iNodeGroup*> sigRemoved;

    virtual void updateState() {}
    // Called once all objects are loaded, to bind references kept as ids.
    virtual void resolveLinks() {}
    // An object that keeps another's unique id replaces oldUid by newUid.
    virtual void updateTargetUid(long oldUid, long newUid);
    virtual iGhostNode* asGhost() { return nullptr; }

    // Flags on any node; the block is created on first use, reads included.
    // A null node reads as no flags and ignores changes; a bit of 32 or more
    // throws std::out_of_range.
    static std::bitset<32> getNodeFlags(osg::Node* node);
    static bool isNodeFlagSet(osg::Node* node, unsigned int bit);
    static void setNodeFlag(osg::Node* node, unsigned int bit, bool value);
    static void setNodeFlags(osg::Node* node, std::bitset<32> flags);
    static void setNodeFlagToAllChildren(osg::Node* node, unsigned int bit, bool value);
    // Empty when the node has no block; never creates one.
    static std::string getNodeLayerId(osg::Node* node);
    static void setNodeLayerId(osg::Node* node, std::string const& layerId);
    static iObjectData* initUserData(osg::Node* node);

    // The object side of a node, or null: a dynamic cast, with the answer
    // for the last classes met remembered, since a document holds few.
    static iNodeGroup* fromNode(osg::Node* node);

    // Adds a child just read from a file, as osg::Group::addChild does but
    // without its cast of the child to osg::OccluderNode, which fails on
    // every document object and costs more than the rest of the add. A
    // parent whose class may override addChild, and a child with any
    // traversal count to pass up, take the ordinary way.
    void addReadChild(iNodeGroup* child);
    // Room for count more children, for a reader that knows how many come.
    void reserveChildren(unsigned int count) { _children.reserve(_children.size() + count); }

    std::bitset<32> getFlags() { return getNodeFlags(this); }
    void setFlags(std::bitset<32> flags) { setNodeFlags(this, flags); }
    bool isFlagSet(unsigned int bit) { return isNodeFlagSet(this, bit); }
    void setFlag(unsigned int bit, bool value) { setNodeFlag(this, bit, value); }
    std::string getLayerId() { return getNodeLayerId(this); }
    void setLayerId(std::string const& layerId) { setNodeLayerId(this, layerId); }

    // When true a geometry update rebuilds at once; when false it waits
    // for the layer's frame.
    bool getAsyncUpdate() const { return _asyncUpdate; }
    void setAsyncUpdate(bool on) { _asyncUpdate = on; }

    // Document-wide look-up; null for an object outside any tree.
    iNodeGroup* findObjectByUniqueId(long id);

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iNodeGroup() override;

    // Depth first from start, skipping exclude; the first object with id.
    static iNodeGroup* findObjectByUniqueIdImpl(osg::Node* start, long id, osg::Node* exclude);

    void slotdeletableChanged(iRoot* source, bool value);
    // The node's name follows the object's, without a connection.
    void nameChanged(std::string const& name) override { slotNameChanged(this, name); }

private:
    // setNodeFlags with the node's object side, when the caller knows it.
    static void storeFlags(osg::Node* node, iNodeGroup* object, std::bitset<32> flags);
    void slotNameChanged(iRoot* source, std::string name);

    bool _asyncUpdate = true;
};

#endif
