#include <iModelStage/geometry/iTextEntity.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(iTextEntity)

iTextEntity::iTextEntity(std::string const& text, osg::Vec3f const& pos, double size, iAlignment alignment)
    : iGeometricEntity(TEXT_ENTITY, {pos}), _text(text), _size(size), _alignment(alignment)
{
}

bool iTextEntity::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    double const width = static_cast<double>(_text.size()) * _size;
    osg::Vec3f const pos = getPos();
    return boundsOfTwo(pos, pos + osg::Vec3f(static_cast<float>(width), static_cast<float>(_size), 0.0f), min, max,
                       m);
}

void iTextEntity::read(iInStream& stream, int)
{
    _text = stream.readString();
    _size = stream.readDouble();
    _alignment = static_cast<iAlignment>(stream.readInt());
}

void iTextEntity::write(iOutStream& stream)
{
    stream.writeString(_text);
    stream.writeDouble(_size);
    stream.writeInt(static_cast<int>(_alignment));
}
