#pragma once

#include <iModelStage/editing/iBaseManipulator.h>
// iBaseManipulator.h needs the whole class for its inline layer setter.
#include <iModelStage/geometry/iGeometricsLayer.h>

// One arrow of a translate gizmo, of a fixed size on screen, red, green or
// blue for the X, Y or Z axis of the targets. Grabbing it (press and
// release on it) starts a move along that axis from the gizmo's origin:
// the targets follow the pointer until the next click.
class wbAxisManipulator : public iBaseManipulator {
    I_CLASS(wbAxisManipulator, iBaseManipulator, 1)
    I_OSG_NODE(wbAxisManipulator)
public:
    // Arrow length and head, in pixels.
    static constexpr float Length = 60.0f;
    static constexpr float HeadLength = 14.0f;
    static constexpr float HeadWidth = 10.0f;

    wbAxisManipulator();
    wbAxisManipulator(wbAxisManipulator const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    int getAxis() const { return _axis; }
    void setAxis(int axis);

    void buildGeometry() override;
    iInteractor* execute(iIAPoint const& point, unsigned int keyMods) override;

protected:
    ~wbAxisManipulator() override;

private:
    int _axis = 0;
};
