#include <iModelStage/geometry/iInputPlane.h>

I_REGISTER_CLASS(iInputPlane)

iInputPlane::iInputPlane()
{
    updateNormal(this);
    sigMatrixChanged.connect(this, &iInputPlane::updateNormal);
}

iInputPlane::iInputPlane(iInputPlane const& other, osg::CopyOp const& copyop)
    : iTransformGroup(other, copyop), _normal(other._normal)
{
    sigMatrixChanged.connect(this, &iInputPlane::updateNormal);
}

iInputPlane::~iInputPlane() = default;

void iInputPlane::updateNormal(iTransformGroup*)
{
    osg::Matrixd const& m = getMatrix();
    osg::Vec3f normal(static_cast<float>(m(2, 0)), static_cast<float>(m(2, 1)), static_cast<float>(m(2, 2)));
    float const length = normal.length();
    if (length > 0.0f)
        normal /= length;
    _normal = normal;
}

double iInputPlane::pointDistance(osg::Vec3f const& p)
{
    osg::Vec3f const o = getPosition();
    float const distance = (p.y() - o.y()) * _normal.y() + (p.x() - o.x()) * _normal.x() + (p.z() - o.z()) * _normal.z();
    return distance;
}
