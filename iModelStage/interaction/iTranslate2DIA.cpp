#include <iModelStage/interaction/iTranslate2DIA.h>

I_REGISTER_CLASS(iTranslate2DIA)

iTranslate2DIA::iTranslate2DIA()
{
    setNumSteps(2);
    addTransformSteps({"Dal punto", "Al punto", "Oggetti spostati"});
}

iTranslate2DIA::~iTranslate2DIA() = default;

bool iTranslate2DIA::cursorPoint(iIAPoint const& p, osg::Vec3f& point)
{
    osg::Vec3f near;
    osg::Vec3f far;
    if (!cameraLineAt(p, near, far, _targetMatrix))
        return false;
    osg::Vec3f const origin = _planePoint * _targetMatrix;
    osg::Vec3f const n = osg::Matrixd::transform3x3(_planeNormal, _targetMatrix);
    osg::Vec3f const d = far - near;
    double const nd = n * d;
    if (nd == 0.0)
        return false;
    double const t = (n * near - n * origin) / nd;
    point = near - d * float(t);
    return true;
}

bool iTranslate2DIA::release(iIAPoint const& p)
{
    return anchorAtCursor(p);
}

bool iTranslate2DIA::move(iIAPoint const& p)
{
    return dragToCursor(p);
}

void iTranslate2DIA::applyTransform()
{
    translateFromStart(_delta);
}
