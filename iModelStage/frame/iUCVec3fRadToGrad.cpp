#include <iModelStage/frame/iUCVec3fRadToGrad.h>

#include <osg/Vec3f>

I_REGISTER_CLASS(iUCVec3fRadToGrad)

namespace {

// Single precision throughout, multiplication before division.
constexpr float kPi = 3.1415927f;

} // namespace

bool iUCVec3fRadToGrad::convertTo(void* value)
{
    if (!value)
        return false;
    osg::Vec3f& v = *static_cast<osg::Vec3f*>(value);
    for (int i = 0; i < 3; ++i)
        v[i] = v[i] * kPi / 180.0f;
    return true;
}

bool iUCVec3fRadToGrad::convertFrom(void* value)
{
    if (!value)
        return false;
    osg::Vec3f& v = *static_cast<osg::Vec3f*>(value);
    for (int i = 0; i < 3; ++i)
        v[i] = v[i] * 180.0f / kPi;
    return true;
}

std::string iUCVec3fRadToGrad::getSymbol()
{
    return "[no_ascii_fi]";
}
