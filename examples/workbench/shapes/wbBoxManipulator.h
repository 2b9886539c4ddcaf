#pragma once

#include <iModelStage/editing/iBaseManipulator.h>
// iBaseManipulator.h needs the whole class for its inline layer setter.
#include <iModelStage/geometry/iGeometricsLayer.h>

// The translate gizmo of boxes: three arrows along the box's own axes at
// its origin corner, each starting a move along its axis.
class wbBoxManipulator : public iBaseManipulator {
    I_CLASS(wbBoxManipulator, iBaseManipulator, 1)
    I_OSG_NODE(wbBoxManipulator)
public:
    wbBoxManipulator();
    wbBoxManipulator(wbBoxManipulator const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void buildGeometry() override;

protected:
    ~wbBoxManipulator() override;

private:
    void addArrows();
};
