#include "shapes/wbBox.h"

#include "shapes/wbShapeValues.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(wbBox)
I_REGISTER_PROPERTY(wbBox, double, sizex, "Geometry")
I_REGISTER_PROPERTY(wbBox, double, sizey, "Geometry")
I_REGISTER_PROPERTY(wbBox, double, sizez, "Geometry")

wbBox::wbBox()
{
    _sizex = _sizey = _sizez = 1.0;
    connectSlots();
}

wbBox::wbBox(wbBox const& other, osg::CopyOp const& copyop) : iGeometricGroup(other, copyop)
{
    _sizex = other._sizex;
    _sizey = other._sizey;
    _sizez = other._sizez;
    connectSlots();
}

wbBox::~wbBox() = default;

void wbBox::connectSlots()
{
    sigsizexChanged.connect(this, &wbBox::slotsizeChanged);
    sigsizeyChanged.connect(this, &wbBox::slotsizeChanged);
    sigsizezChanged.connect(this, &wbBox::slotsizeChanged);
}

void wbBox::setSize(osg::Vec3d const& size)
{
    set_sizex(size.x());
    set_sizey(size.y());
    set_sizez(size.z());
}

// A bad value is replaced at once, which comes back here with a good one.
void wbBox::slotsizeChanged(iRoot*, double)
{
    set_sizex(wbShapeValues::size(_sizex));
    set_sizey(wbShapeValues::size(_sizey));
    set_sizez(wbShapeValues::size(_sizez));
    updateGeometry(false);
}

void wbBox::read(iInStream& stream, int)
{
    double size[3];
    stream.readDoubles(size, 3);
    setSize(osg::Vec3d(size[0], size[1], size[2]));
}

void wbBox::write(iOutStream& stream)
{
    double const size[3] = {_sizex, _sizey, _sizez};
    stream.writeDoubles(size, 3);
}
