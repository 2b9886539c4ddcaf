#include "shapes/wbCreateCylinderIA.h"

I_REGISTER_CLASS(wbCreateCylinderIA)
I_REGISTER_PROPERTY(wbCreateCylinderIA, double, height, "Geometry")
I_REGISTER_PROPERTY(wbCreateCylinderIA, int, segments, "Geometry")

wbCreateCylinderIA::wbCreateCylinderIA()
{
    _height = 1.0;
    _segments = wbCylinder::DefaultSegments;
    setNumSteps(3);
    addShapeSteps({"Inserire il centro", "Inserire un punto della circonferenza", "Inserire l'altezza",
                   "Cilindro inserito"});
}

iGeometricGroup* wbCreateCylinderIA::newShape()
{
    auto* shape = new wbCylinder;
    shape->set_segments(_segments);
    shape->set_height(_height);
    return shape;
}

// What a point means at each step: the centre, the rim, the top.
void wbCreateCylinderIA::apply(int step, iIAPoint const& p)
{
    if (!cylinder())
        return;
    if (step == 0)
        showShapeAt(p.getLocalPos());
    else if (step == 1)
        cylinder()->set_radius(planeDistance(p));
    else if (step == 2)
        cylinder()->set_height(heightTo(p, _height));
}

bool wbCreateCylinderIA::move(iIAPoint const& p)
{
    bool const result = wbCreateShapeIA::move(p);
    if (getCurrentStep() > 0)
        apply(getCurrentStep(), p);
    return result;
}

bool wbCreateCylinderIA::release(iIAPoint const& p)
{
    if (getCurrentStep() == 1 && tooClose(p))
        return refusePoint();
    apply(getCurrentStep(), p);
    return wbCreateShapeIA::release(p);
}
