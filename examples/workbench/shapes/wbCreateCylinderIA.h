#pragma once

#include "shapes/wbCreateShapeIA.h"
#include "shapes/wbCylinder.h"

// Draws an upright cylinder in three clicks: the centre of its base, a
// point on its rim, then the height, which is how far the third point lies
// from the second in the input plane. A third click on the rim point keeps
// the tool's height.
class wbCreateCylinderIA : public wbCreateShapeIA {
    I_CLASS(wbCreateCylinderIA, wbCreateShapeIA, 1)
    I_PROPERTY(double, height)
    I_PROPERTY(int, segments)
public:
    wbCreateCylinderIA();

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

protected:
    iGeometricGroup* newShape() override;

private:
    wbCylinder* cylinder() { return static_cast<wbCylinder*>(_shape.get()); }
    void apply(int step, iIAPoint const& p);
};
