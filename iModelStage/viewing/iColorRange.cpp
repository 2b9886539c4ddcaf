#include <iModelStage/viewing/iColorRange.h>

#include <algorithm>
#include <cmath>

namespace {

std::vector<osg::Vec4f> defaultColors()
{
    return {
        osg::Vec4f(0.0f, 0.0f, 1.0f, 1.0f), // blue
        osg::Vec4f(0.0f, 1.0f, 1.0f, 1.0f), // cyan
        osg::Vec4f(0.0f, 1.0f, 0.0f, 1.0f), // green
        osg::Vec4f(1.0f, 1.0f, 0.0f, 1.0f), // yellow
        osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f), // red
    };
}

} // namespace

iColorRange::iColorRange(float min, float max) : osgSim::ScalarsToColors(min, max), _colors(defaultColors()) {}

iColorRange::iColorRange(float min, float max, std::vector<osg::Vec4f> const& colors)
    : osgSim::ScalarsToColors(min, max), _colors(colors)
{
}

osg::Vec4 iColorRange::getColor(float scalar) const
{
    if (_colors.empty())
        return osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f);
    if (_colors.size() == 1)
        return _colors.front();

    float const min = getMin();
    float const max = getMax();
    if (scalar < min)
        return _colors.front();
    if (scalar > max)
        return _colors.back();
    if (max == min)
        return _colors.front();

    std::size_t const last = _colors.size() - 1;
    float const x = (scalar - min) / (max - min) * static_cast<float>(last);
    // A value that is no number, or a range too wide for a float, has no
    // place on the scale.
    if (!std::isfinite(x))
        return _colors.front();
    float const lower = std::clamp(std::floor(x), 0.0f, static_cast<float>(last));
    float const upper = std::clamp(std::ceil(x), 0.0f, static_cast<float>(last));
    float const weight = x - std::floor(x);
    osg::Vec4f const& a = _colors[static_cast<std::size_t>(lower)];
    osg::Vec4f const& b = _colors[static_cast<std::size_t>(upper)];
    return a + (b - a) * weight;
}
