#pragma once

#include "shapes/wbBox.h"
#include "shapes/wbCreateShapeIA.h"

// Draws a box in three clicks: a corner, the opposite corner of the base in
// the input plane, then the height, which is how far the third point lies
// from the second in the plane. A third click on the second corner keeps
// the tool's height.
class wbCreateBoxIA : public wbCreateShapeIA {
    I_CLASS(wbCreateBoxIA, wbCreateShapeIA, 1)
    I_PROPERTY(double, height)
public:
    wbCreateBoxIA();

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

protected:
    iGeometricGroup* newShape() override { return new wbBox; }

private:
    wbBox* box() { return static_cast<wbBox*>(_shape.get()); }
    // What a point means at each step: the corner, the opposite corner,
    // the top.
    void apply(int step, iIAPoint const& p);
    bool flatBase(iIAPoint const& p) const;

    osg::Vec3f _corner;
};
