#include "shapes/wbBoxManipulator.h"

#include "shapes/wbAxisManipulator.h"

I_REGISTER_CLASS(wbBoxManipulator)

wbBoxManipulator::wbBoxManipulator()
{
    addArrows();
}

// The copied child list holds the source's arrows: each gizmo has its own.
wbBoxManipulator::wbBoxManipulator(wbBoxManipulator const& other, osg::CopyOp const& copyop)
    : iBaseManipulator(other, copyop)
{
    removeChildren(0, getNumChildren());
    addArrows();
}

wbBoxManipulator::~wbBoxManipulator() = default;

void wbBoxManipulator::addArrows()
{
    for (int axis = 0; axis < 3; ++axis) {
        osg::ref_ptr<wbAxisManipulator> arrow = new wbAxisManipulator;
        arrow->setAxis(axis);
        addManipulator(arrow.get());
    }
}

void wbBoxManipulator::buildGeometry()
{
    for (osg::ref_ptr<osg::Node> const& child : getChildManipulators())
        static_cast<iBaseManipulator*>(child.get())->buildGeometry();
}
