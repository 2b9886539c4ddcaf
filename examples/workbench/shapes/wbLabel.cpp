#include "shapes/wbLabel.h"

#include "shapes/wbShapeValues.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(wbLabel)
I_REGISTER_PROPERTY_AS(wbLabel, std::string, "std::string", text, "Geometry")
I_REGISTER_PROPERTY(wbLabel, double, height, "Geometry")

wbLabel::wbLabel()
{
    _text = "Testo";
    _height = 0.5;
    connectSlots();
}

wbLabel::wbLabel(wbLabel const& other, osg::CopyOp const& copyop) : iGeometricGroup(other, copyop)
{
    _text = other._text;
    _height = other._height;
    connectSlots();
}

wbLabel::~wbLabel() = default;

void wbLabel::connectSlots()
{
    sigtextChanged.connect(this, &wbLabel::slottextChanged);
    sigheightChanged.connect(this, &wbLabel::slotheightChanged);
    sigclrChanged.connect(this, &wbLabel::slotclrChanged);
}

void wbLabel::slottextChanged(iRoot*, std::string)
{
    updateGeometry(false);
}

void wbLabel::slotheightChanged(iRoot*, double value)
{
    set_height(wbShapeValues::size(value));
    updateGeometry(false);
}

void wbLabel::slotclrChanged(iRoot*, osg::Vec4f)
{
    updateGeometry(false);
}

void wbLabel::read(iInStream& stream, int)
{
    set_text(stream.readString());
    set_height(stream.readDouble());
}

void wbLabel::write(iOutStream& stream)
{
    stream.writeString(_text);
    stream.writeDouble(_height);
}
