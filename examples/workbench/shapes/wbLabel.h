#pragma once

#include <iModelStage/geometry/iGeometricGroup.h>

#include <string>

// A line of text lying in the object's local XY plane, its base line
// starting at the origin, its characters height tall.
class wbLabel : public iGeometricGroup {
    I_CLASS(wbLabel, iGeometricGroup, 1)
    I_OSG_NODE(wbLabel)
    I_PROPERTY(std::string, text)
    I_PROPERTY(double, height)
public:
    wbLabel();
    wbLabel(wbLabel const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~wbLabel() override;

private:
    void connectSlots();
    void slottextChanged(iRoot* source, std::string value);
    void slotheightChanged(iRoot* source, double value);
    // Text keeps its colour in the drawable, not in the shared array: a
    // colour change rebuilds it.
    void slotclrChanged(iRoot* source, osg::Vec4f value);
};
