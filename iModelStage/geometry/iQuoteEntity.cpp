#include <iModelStage/geometry/iQuoteEntity.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <algorithm>
#include <sstream>

I_REGISTER_PERSISTENT_CLASS(iQuoteEntity)

iQuoteEntity::iQuoteEntity(osg::Vec3f const& p1, osg::Vec3f const& p2, double size, double offset,
                           std::string const& text, iAlignment alignment)
    : iGeometricEntity(QUOTE_ENTITY, {p1, p2}), _text(text), _size(size), _offset(offset), _alignment(alignment)
{
}

std::string iQuoteEntity::getFullText()
{
    std::ostringstream out;
    out << _text;
    if (!_text.empty())
        out << " - ";
    out << static_cast<float>((getP2() - getP1()).length());
    return out.str();
}

bool iQuoteEntity::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    float const below = static_cast<float>(_offset + 0.05);
    float const above = static_cast<float>(std::max(_size + _offset, 0.05));
    return boundsOfTwo(getP1() - osg::Vec3f(0.0f, below, 0.0f), getP2() + osg::Vec3f(0.0f, above, 0.0f), min, max, m);
}

void iQuoteEntity::read(iInStream& stream, int)
{
    _text = stream.readString();
    _size = stream.readDouble();
    _offset = stream.readDouble();
    _alignment = static_cast<iAlignment>(stream.readInt());
}

void iQuoteEntity::write(iOutStream& stream)
{
    stream.writeString(_text);
    stream.writeDouble(_size);
    stream.writeDouble(_offset);
    stream.writeInt(static_cast<int>(_alignment));
}
