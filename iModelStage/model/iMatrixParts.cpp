#include <iModelStage/model/iMatrixParts.h>

#include <cmath>

namespace {

// Rows closer to orthogonal than this, relative to their lengths, count as
// a scale times a rotation.
constexpr double kOrthogonal = 1e-12;

double dot3(osg::Matrixd const& m, int a, int b)
{
    return m(a, 0) * m(b, 0) + m(a, 1) * m(b, 1) + m(a, 2) * m(b, 2);
}

bool allFinite(double const* values, int count)
{
    for (int i = 0; i < count; ++i)
        if (!std::isfinite(values[i]))
            return false;
    return true;
}

// A sum of one product and exact zeros, one of them positive: a zero
// result is a positive zero.
double positiveZero(double v)
{
    return v == 0.0 ? 0.0 : v;
}

} // namespace

osg::Matrixd iMatrixParts::compose(osg::Vec3d const& scale, osg::Quat const& rotation,
                                   osg::Vec3d const& translation)
{
    osg::Matrixd const r = osg::Matrixd::rotate(rotation);
    // Infinities and NaNs spread through OSG's products into the zeros the
    // short form knows in advance.
    if (!allFinite(r.ptr(), 16) || !allFinite(scale.ptr(), 3) || !allFinite(translation.ptr(), 3))
        return osg::Matrixd::scale(scale) * r * osg::Matrixd::translate(translation);
    osg::Matrixd m;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            m(i, j) = positiveZero(scale[i] * r(i, j));
        m(i, 3) = 0.0;
        m(3, i) = positiveZero(translation[i]);
    }
    m(3, 3) = 1.0;
    return m;
}

osg::Quat iMatrixParts::rotationOf(osg::Matrixd const& m)
{
    // The inverse of osg::Matrixd::makeRotate, from the largest of w, x, y,
    // z, so that no division is by a small number.
    double const trace = m(0, 0) + m(1, 1) + m(2, 2);
    if (trace > 0.0) {
        double const w4 = std::sqrt(1.0 + trace) * 2.0;
        return osg::Quat((m(1, 2) - m(2, 1)) / w4, (m(2, 0) - m(0, 2)) / w4, (m(0, 1) - m(1, 0)) / w4, w4 / 4.0);
    }
    if (m(0, 0) >= m(1, 1) && m(0, 0) >= m(2, 2)) {
        double const x4 = std::sqrt(1.0 + m(0, 0) - m(1, 1) - m(2, 2)) * 2.0;
        return osg::Quat(x4 / 4.0, (m(0, 1) + m(1, 0)) / x4, (m(0, 2) + m(2, 0)) / x4, (m(1, 2) - m(2, 1)) / x4);
    }
    if (m(1, 1) >= m(2, 2)) {
        double const y4 = std::sqrt(1.0 - m(0, 0) + m(1, 1) - m(2, 2)) * 2.0;
        return osg::Quat((m(0, 1) + m(1, 0)) / y4, y4 / 4.0, (m(1, 2) + m(2, 1)) / y4, (m(2, 0) - m(0, 2)) / y4);
    }
    double const z4 = std::sqrt(1.0 - m(0, 0) - m(1, 1) + m(2, 2)) * 2.0;
    return osg::Quat((m(0, 2) + m(2, 0)) / z4, (m(1, 2) + m(2, 1)) / z4, z4 / 4.0, (m(0, 1) - m(1, 0)) / z4);
}

bool iMatrixParts::decomposeScaledRotation(osg::Matrixd const& m, osg::Vec3d& translation, osg::Quat& rotation,
                                           osg::Vec3d& scale)
{
    if (!allFinite(m.ptr(), 16) || m(0, 3) != 0.0 || m(1, 3) != 0.0 || m(2, 3) != 0.0 || m(3, 3) != 1.0)
        return false;
    double length[3];
    for (int i = 0; i < 3; ++i) {
        double const square = dot3(m, i, i);
        // Squares near the bottom of the range have lost their precision.
        if (!(square > 1e-200) || !std::isfinite(square))
            return false;
        length[i] = std::sqrt(square);
    }
    for (int a = 0; a < 3; ++a)
        for (int b = a + 1; b < 3; ++b)
            if (std::fabs(dot3(m, a, b)) > kOrthogonal * length[a] * length[b])
                return false;
    double const determinant = m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
                               m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
                               m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
    double const sign = determinant < 0.0 ? -1.0 : 1.0;
    osg::Matrixd unit;
    for (int i = 0; i < 3; ++i) {
        scale[i] = sign * length[i];
        for (int j = 0; j < 3; ++j)
            unit(i, j) = m(i, j) / scale[i];
    }
    rotation = rotationOf(unit);
    translation.set(m(3, 0), m(3, 1), m(3, 2));
    return true;
}

void iMatrixParts::decompose(osg::Matrixd const& m, osg::Vec3d& translation, osg::Quat& rotation,
                             osg::Vec3d& scale)
{
    if (decomposeScaledRotation(m, translation, rotation, scale))
        return;
    osg::Quat scaleOrientation;
    m.decompose(translation, rotation, scale, scaleOrientation);
}
