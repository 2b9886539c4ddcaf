#include <iModelStage/geometry/iImageGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <osgDB/ReadFile>
#include <osgDB/Registry>

I_REGISTER_PERSISTENT_CLASS(iImageGroup)
I_REGISTER_PROPERTY(iImageGroup, iStringFileName, filename, "General")
I_REGISTER_PROPERTY(iImageGroup, iImagePreview, preview, "General")

iImageGroup::iImageGroup()
{
    sigfilenameChanged.connect(this, &iImageGroup::slotfilenameChanged);
}

iImageGroup::iImageGroup(iImageGroup const& other, osg::CopyOp const& copyop)
    : iNodeGroup(other, copyop), _image(other._image)
{
    _filename = other._filename;
    _preview = other._preview;
    sigfilenameChanged.connect(this, &iImageGroup::slotfilenameChanged);
}

iImageGroup::~iImageGroup() = default;

void iImageGroup::slotfilenameChanged(iRoot*, std::string name)
{
    _image = nullptr;
    // An empty name is no file: spare the readers a look-up that must fail.
    if (!name.empty())
        _image = osgDB::readRefImageFile(name, osgDB::Registry::instance()->getOptions());
    set_preview(name);
}

void iImageGroup::read(iInStream& stream, int)
{
    set_filename(stream.readString());
}

void iImageGroup::write(iOutStream& stream)
{
    stream.writeString(_filename);
}
