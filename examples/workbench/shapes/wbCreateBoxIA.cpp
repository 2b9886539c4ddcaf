#include "shapes/wbCreateBoxIA.h"

#include <algorithm>
#include <cmath>

I_REGISTER_CLASS(wbCreateBoxIA)
I_REGISTER_PROPERTY(wbCreateBoxIA, double, height, "Geometry")

wbCreateBoxIA::wbCreateBoxIA()
{
    _height = 1.0;
    setNumSteps(3);
    addShapeSteps({"Inserire il primo vertice", "Inserire il vertice opposto", "Inserire l'altezza",
                   "Parallelepipedo inserito"});
}

void wbCreateBoxIA::apply(int step, iIAPoint const& p)
{
    if (!box())
        return;
    osg::Vec3f const at = p.getLocalPos();
    if (step == 0) {
        _corner = at;
        showShapeAt(at);
        box()->setSize(osg::Vec3d(0.0, 0.0, _height));
    } else if (step == 1) {
        showShapeAt(osg::Vec3f(std::min(_corner.x(), at.x()), std::min(_corner.y(), at.y()), _corner.z()));
        box()->setSize(osg::Vec3d(std::abs(at.x() - _corner.x()), std::abs(at.y() - _corner.y()), _height));
    } else if (step == 2) {
        box()->set_sizez(heightTo(p, _height));
    }
}

bool wbCreateBoxIA::flatBase(iIAPoint const& p) const
{
    osg::Vec3f const at = p.getLocalPos();
    return std::abs(at.x() - _corner.x()) < MinimumSide || std::abs(at.y() - _corner.y()) < MinimumSide;
}

bool wbCreateBoxIA::move(iIAPoint const& p)
{
    bool const result = wbCreateShapeIA::move(p);
    if (getCurrentStep() > 0)
        apply(getCurrentStep(), p);
    return result;
}

bool wbCreateBoxIA::release(iIAPoint const& p)
{
    if (getCurrentStep() == 1 && flatBase(p))
        return refusePoint();
    apply(getCurrentStep(), p);
    return wbCreateShapeIA::release(p);
}
