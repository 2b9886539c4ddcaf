#include "shapes/wbCylinder.h"

#include "shapes/wbShapeValues.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(wbCylinder)
I_REGISTER_PROPERTY(wbCylinder, double, radius, "Geometry")
I_REGISTER_PROPERTY(wbCylinder, double, height, "Geometry")
I_REGISTER_PROPERTY(wbCylinder, int, segments, "Geometry")

wbCylinder::wbCylinder()
{
    _radius = 0.5;
    _height = 1.0;
    _segments = DefaultSegments;
    connectSlots();
}

wbCylinder::wbCylinder(wbCylinder const& other, osg::CopyOp const& copyop) : iGeometricGroup(other, copyop)
{
    _radius = other._radius;
    _height = other._height;
    _segments = other._segments;
    connectSlots();
}

wbCylinder::~wbCylinder() = default;

void wbCylinder::connectSlots()
{
    sigradiusChanged.connect(this, &wbCylinder::slotsizeChanged);
    sigheightChanged.connect(this, &wbCylinder::slotsizeChanged);
    sigsegmentsChanged.connect(this, &wbCylinder::slotsegmentsChanged);
}

// A bad value is replaced at once, which comes back here with a good one.
void wbCylinder::slotsizeChanged(iRoot*, double)
{
    set_radius(wbShapeValues::size(_radius));
    set_height(wbShapeValues::size(_height));
    updateGeometry(false);
}

void wbCylinder::slotsegmentsChanged(iRoot*, int value)
{
    set_segments(wbShapeValues::segments(value));
    updateGeometry(false);
}

void wbCylinder::read(iInStream& stream, int)
{
    set_radius(stream.readDouble());
    set_height(stream.readDouble());
    set_segments(stream.readInt());
}

void wbCylinder::write(iOutStream& stream)
{
    stream.writeDouble(_radius);
    stream.writeDouble(_height);
    stream.writeInt(_segments);
}
