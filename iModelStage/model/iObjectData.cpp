#include <iModelStage/model/iObjectData.h>

iObjectData::iObjectData(iObjectData const& other)
    : osg::UserDataContainer(), flags(other.flags), savedNodeMask(other.savedNodeMask), layerId(other.layerId)
{
}

iObjectData::iObjectData(iObjectData&& other)
    : osg::UserDataContainer(), flags(other.flags), savedNodeMask(other.savedNodeMask),
      layerId(std::move(other.layerId))
{
}

iObjectData::iObjectData(iObjectData const& other, osg::CopyOp const& copyop)
    : osg::UserDataContainer(other, copyop), flags(other.flags), savedNodeMask(other.savedNodeMask),
      layerId(other.layerId), _ownData(other._ownData)
{
    if (other._contents)
        _contents = new osg::DefaultUserDataContainer(*other._contents, copyop);
}

iObjectData::~iObjectData() = default;

iObjectData& iObjectData::operator=(iObjectData const& other)
{
    flags = other.flags;
    savedNodeMask = other.savedNodeMask;
    layerId = other.layerId;
    return *this;
}

iObjectData& iObjectData::operator=(iObjectData&& other)
{
    flags = other.flags;
    savedNodeMask = other.savedNodeMask;
    layerId = std::move(other.layerId);
    return *this;
}

osg::DefaultUserDataContainer& iObjectData::contents()
{
    if (!_contents)
        _contents = new osg::DefaultUserDataContainer;
    return *_contents;
}

void iObjectData::setUserData(osg::Referenced* data)
{
    // The block itself is never held by its own container: that would be a
    // reference cycle.
    _ownData = data == this;
    if (!_ownData && data)
        contents().setUserData(data);
    else if (_contents)
        _contents->setUserData(nullptr);
}

osg::Referenced* iObjectData::getUserData()
{
    if (_ownData)
        return this;
    return _contents ? _contents->getUserData() : nullptr;
}

osg::Referenced const* iObjectData::getUserData() const
{
    return const_cast<iObjectData*>(this)->getUserData();
}

unsigned int iObjectData::addUserObject(osg::Object* object)
{
    return contents().addUserObject(object);
}

void iObjectData::setUserObject(unsigned int i, osg::Object* object)
{
    contents().setUserObject(i, object);
}

void iObjectData::removeUserObject(unsigned int i)
{
    if (_contents)
        _contents->removeUserObject(i);
}

osg::Object* iObjectData::getUserObject(unsigned int i)
{
    return _contents ? _contents->getUserObject(i) : nullptr;
}

osg::Object const* iObjectData::getUserObject(unsigned int i) const
{
    return _contents ? _contents->getUserObject(i) : nullptr;
}

unsigned int iObjectData::getNumUserObjects() const
{
    return _contents ? _contents->getNumUserObjects() : 0;
}

unsigned int iObjectData::getUserObjectIndex(osg::Object const* object, unsigned int startPos) const
{
    return _contents ? _contents->getUserObjectIndex(object, startPos) : 0;
}

unsigned int iObjectData::getUserObjectIndex(std::string const& name, unsigned int startPos) const
{
    return _contents ? _contents->getUserObjectIndex(name, startPos) : 0;
}

void iObjectData::setDescriptions(DescriptionList const& descriptions)
{
    contents().setDescriptions(descriptions);
}

osg::UserDataContainer::DescriptionList& iObjectData::getDescriptions()
{
    return contents().getDescriptions();
}

osg::UserDataContainer::DescriptionList const& iObjectData::getDescriptions() const
{
    static DescriptionList const none;
    return _contents ? static_cast<osg::DefaultUserDataContainer const&>(*_contents).getDescriptions() : none;
}

unsigned int iObjectData::getNumDescriptions() const
{
    return _contents ? _contents->getNumDescriptions() : 0;
}

void iObjectData::addDescription(std::string const& description)
{
    contents().addDescription(description);
}
