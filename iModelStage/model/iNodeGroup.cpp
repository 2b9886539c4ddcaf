#include <iModelStage/model/iNodeGroup.h>

#include <iModelStage/frame/iFastCast.h>
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iForEachNode.h>
#include <iModelStage/model/iNodeFinder.h>
#include <iModelStage/model/iObjectData.h>
#include <iModelStage/model/iParentListStock.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/UserDataContainer>

#include <typeinfo>

#include <vector>

I_REGISTER_PERSISTENT_CLASS(iNodeGroup)

namespace {

iObjectData* findData(osg::Node* node)
{
    osg::Referenced* data = node->getUserData();
    if (!data)
        return nullptr;
    // The block is almost always exactly an iObjectData, and every flag
    // read comes here: compare the type before a full dynamic cast.
    if (typeid(*data) == typeid(iObjectData))
        return static_cast<iObjectData*>(data);
    return dynamic_cast<iObjectData*>(data);
}

} // namespace

iNodeGroup::iNodeGroup()
{
    iParentListStock::take(_parents);
}

iNodeGroup::iNodeGroup(iNodeGroup const& other, osg::CopyOp const& copyop)
    : iRoot(other), osg::PositionAttitudeTransform(other, copyop), _asyncUpdate(other._asyncUpdate)
{
    if (iObjectData* data = findData(const_cast<iNodeGroup*>(&other))) {
        // A shallow copy shares the source's user-data container; give the
        // copy its own before replacing the block in it. A block that is
        // its own container is copied whole by that clone.
        osg::UserDataContainer* own = getUserDataContainer();
        if (own == other.getUserDataContainer()) {
            own = osg::clone(own, osg::CopyOp::SHALLOW_COPY);
            setUserDataContainer(own);
        }
        if (!own)
            setUserDataContainer(new iObjectData(*data));
        else if (getUserData() != static_cast<osg::Referenced*>(own))
            setUserData(new iObjectData(*data));
    }
    iParentListStock::take(_parents);
}

iNodeGroup::~iNodeGroup()
{
    iParentListStock::give(_parents);
}

iNodeGroup* iNodeGroup::fromNode(osg::Node* node)
{
    return iFastCast<iNodeGroup>(node);
}

void iNodeGroup::addReadChild(iNodeGroup* child)
{
    bool const plainParent = typeid(*this) == typeid(iNodeGroup) || typeid(*this) == typeid(iTransformGroup);
    bool const plainChild = child->getNumChildrenRequiringUpdateTraversal() == 0 && !child->getUpdateCallback() &&
                            child->getNumChildrenRequiringEventTraversal() == 0 && !child->getEventCallback() &&
                            child->getNumChildrenWithCullingDisabled() == 0 && child->getCullingActive() &&
                            child->getNumChildrenWithOccluderNodes() == 0;
    if (!plainParent || !plainChild) {
        addChild(child);
        return;
    }
    _children.push_back(child);
    child->addParent(this);
    childInserted(static_cast<unsigned int>(_children.size() - 1));
    dirtyBound();
}

void iNodeGroup::updateTargetUid(long, long) {}

iObjectData* iNodeGroup::initUserData(osg::Node* node)
{
    if (!node)
        return nullptr;
    iObjectData* data = findData(node);
    if (!data) {
        data = new iObjectData;
        if (node->getUserDataContainer())
            node->setUserData(data);
        else
            node->setUserDataContainer(data);
    }
    return data;
}

std::bitset<32> iNodeGroup::getNodeFlags(osg::Node* node)
{
    iObjectData* data = initUserData(node);
    return data ? data->flags : std::bitset<32>();
}

bool iNodeGroup::isNodeFlagSet(osg::Node* node, unsigned int bit)
{
    iObjectData* data = initUserData(node);
    return data && data->flags.test(bit);
}

void iNodeGroup::setNodeFlag(osg::Node* node, unsigned int bit, bool value)
{
    iObjectData* data = initUserData(node);
    if (!data)
        return;
    if (bit != 5 && !data->flags.test(5))
        return;
    std::bitset<32> old = data->flags;
    data->flags.set(bit, value);
    if (bit == 0) {
        // Only the first hide saves the mask, so a node hidden twice comes
        // back with the mask it had before.
        if (old.test(0) && !value)
            data->savedNodeMask = node->getNodeMask();
        node->setNodeMask(data->flags.test(0) ? data->savedNodeMask : 0);
    }
    if (iNodeGroup* object = fromNode(node)) {
        std::bitset<32> now = data->flags;
        object->sigFlagChanged(object, bit, value);
        object->sigFlagsChanged(object, old, now);
    }
}

void iNodeGroup::setNodeFlags(osg::Node* node, std::bitset<32> flags)
{
    storeFlags(node, fromNode(node), flags);
}

void iNodeGroup::storeFlags(osg::Node* node, iNodeGroup* object, std::bitset<32> flags)
{
    iObjectData* data = initUserData(node);
    if (!data)
        return;
    std::bitset<32> old = data->flags;
    data->flags = flags;
    if (object)
        object->sigFlagsChanged(object, old, flags);
}

void iNodeGroup::setNodeFlagToAllChildren(osg::Node* node, unsigned int bit, bool value)
{
    iForEachNode(node, [&](osg::Node* current) {
        setNodeFlag(current, bit, value);
        return iVisit::Continue;
    });
}

std::string iNodeGroup::getNodeLayerId(osg::Node* node)
{
    if (!node)
        return std::string();
    iObjectData* data = findData(node);
    return data ? data->layerId : std::string();
}

void iNodeGroup::setNodeLayerId(osg::Node* node, std::string const& layerId)
{
    if (iObjectData* data = initUserData(node))
        data->layerId = layerId;
}

iNodeGroup* iNodeGroup::findObjectByUniqueId(long id)
{
    if (getNumParents() == 0)
        return nullptr;
    return iNodeFinder(this).findObjectByUniqueId(id);
}

iNodeGroup* iNodeGroup::findObjectByUniqueIdImpl(osg::Node* start, long id, osg::Node* exclude)
{
    if (!start || start == exclude)
        return nullptr;
    iNodeGroup* found = nullptr;
    iForEachNode(start, [&](osg::Node* node) {
        iNodeGroup* object = fromNode(node);
        if (!object || object->getUniqueId() != id)
            return iVisit::Continue;
        found = object;
        return iVisit::Stop;
    });
    return found;
}

void iNodeGroup::read(iInStream& stream, int)
{
    storeFlags(this, this, std::bitset<32>(static_cast<unsigned int>(stream.readInt())));
    setNodeLayerId(this, stream.readString());
}

void iNodeGroup::write(iOutStream& stream)
{
    stream.writeInt(static_cast<int>(getNodeFlags(this).to_ulong()));
    stream.writeString(getNodeLayerId(this));
}

void iNodeGroup::slotNameChanged(iRoot*, std::string name)
{
    osg::Object::setName(name);
}

void iNodeGroup::slotdeletableChanged(iRoot*, bool value)
{
    setNodeFlag(this, 2, value);
}
