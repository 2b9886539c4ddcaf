#pragma once

#include <iModelStage/geometry/iGeometricGroup.h>

// A box with one corner at the object's origin, spanning sizex, sizey and
// sizez along its local axes. Sizes are never negative; a size of zero is
// kept (the zero-size check reports it).
class wbBox : public iGeometricGroup {
    I_CLASS(wbBox, iGeometricGroup, 1)
    I_OSG_NODE(wbBox)
    I_PROPERTY(double, sizex)
    I_PROPERTY(double, sizey)
    I_PROPERTY(double, sizez)
public:
    wbBox();
    wbBox(wbBox const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void setSize(osg::Vec3d const& size);
    osg::Vec3d getSize() const { return osg::Vec3d(_sizex, _sizey, _sizez); }

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~wbBox() override;

private:
    void connectSlots();
    void slotsizeChanged(iRoot* source, double value);
};
