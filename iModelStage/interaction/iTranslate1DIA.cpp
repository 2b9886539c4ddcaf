#include <iModelStage/interaction/iTranslate1DIA.h>

I_REGISTER_CLASS(iTranslate1DIA)

iTranslate1DIA::iTranslate1DIA()
{
    setNumSteps(2);
    addTransformSteps({"Dal punto", "Al punto", "Oggetti spostati"});
}

iTranslate1DIA::~iTranslate1DIA() = default;

bool iTranslate1DIA::cursorPoint(iIAPoint const& p, osg::Vec3f& point)
{
    osg::Vec3f near;
    osg::Vec3f far;
    if (!cameraLineAt(p, near, far, _targetMatrix))
        return false;
    osg::Vec3f const a0 = _axisPoint0 * _targetMatrix;
    osg::Vec3f const a1 = _axisPoint1 * _targetMatrix;
    // Closest points of two lines, both directions of unit length.
    osg::Vec3f u = far - near;
    osg::Vec3f v = a1 - a0;
    u.normalize();
    v.normalize();
    osg::Vec3f const w = near - a0;
    double const b = u * v;
    double const d = u * w;
    double const e = v * w;
    double const det = 1.0 - b * b;
    if (det == 0.0)
        return false;
    double const s = (b * e - d) / det;
    point = near + u * float(s);
    return true;
}

bool iTranslate1DIA::release(iIAPoint const& p)
{
    return anchorAtCursor(p);
}

bool iTranslate1DIA::move(iIAPoint const& p)
{
    return dragToCursor(p);
}

void iTranslate1DIA::applyTransform()
{
    translateFromStart(_delta);
}
