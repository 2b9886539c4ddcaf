#include "shapes/wbAxisTranslateIA.h"

I_REGISTER_CLASS(wbAxisTranslateIA)

void wbAxisTranslateIA::setAxis(int axis)
{
    _axisPoint0 = osg::Vec3f();
    _axisPoint1 = osg::Vec3f(axis == 1 ? 0.0f : (axis == 2 ? 0.0f : 1.0f), axis == 1 ? 1.0f : 0.0f,
                             axis == 2 ? 1.0f : 0.0f);
}
