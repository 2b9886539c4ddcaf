#pragma once

#include <iModelStage/geometry/iGeometricGroup.h>

// An upright cylinder standing on the object's origin: its base circle of
// radius lies in the local XY plane, and it rises height along local Z.
// The round is drawn with segments sides, kept between 3 and 512.
class wbCylinder : public iGeometricGroup {
    I_CLASS(wbCylinder, iGeometricGroup, 1)
    I_OSG_NODE(wbCylinder)
    I_PROPERTY(double, radius)
    I_PROPERTY(double, height)
    I_PROPERTY(int, segments)
public:
    static constexpr int DefaultSegments = 32;

    wbCylinder();
    wbCylinder(wbCylinder const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~wbCylinder() override;

private:
    void connectSlots();
    void slotsizeChanged(iRoot* source, double value);
    void slotsegmentsChanged(iRoot* source, int value);
};
