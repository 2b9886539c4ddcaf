#include <iModelStage/model/iMatrixParts.h>

#include <gtest/gtest.h>

#include <osg/Math>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

osg::Matrixd osgProduct(osg::Vec3d const& s, osg::Quat const& q, osg::Vec3d const& t)
{
    return osg::Matrixd::scale(s) * osg::Matrixd::rotate(q) * osg::Matrixd::translate(t);
}

bool sameBits(osg::Matrixd const& a, osg::Matrixd const& b)
{
    return std::memcmp(a.ptr(), b.ptr(), sizeof(double) * 16) == 0;
}

// Rotation matrices of two quaternions; q and -q are one rotation.
double rotationDistance(osg::Quat const& a, osg::Quat const& b)
{
    osg::Matrixd const ma = osg::Matrixd::rotate(a), mb = osg::Matrixd::rotate(b);
    double worst = 0;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            worst = std::max(worst, std::fabs(ma(r, c) - mb(r, c)));
    return worst;
}

osg::Quat randomRotation(std::mt19937& random)
{
    std::uniform_real_distribution<double> angle(-3.2, 3.2);
    return osg::Quat(angle(random), osg::X_AXIS) * osg::Quat(angle(random), osg::Y_AXIS) *
           osg::Quat(angle(random), osg::Z_AXIS);
}

} // namespace

TEST(MatrixPartsTest, ComposeIsBitForBitOsgsProducts)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> value(-50, 50);
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const inf = std::numeric_limits<double>::infinity();
    // Quarter turns and identity give exact zeros of both signs; negative
    // scales and a negative zero translation flip their signs again.
    osg::Quat const rotations[] = {osg::Quat(),
                                   osg::Quat(osg::PI_2, osg::Z_AXIS),
                                   osg::Quat(-osg::PI_2, osg::X_AXIS),
                                   osg::Quat(osg::PI, osg::Y_AXIS),
                                   osg::Quat(0.0, 0.0, 0.0, 2.0),
                                   osg::Quat(0.0, -0.0, 0.0, -1.0),
                                   osg::Quat(0.1, 0.2, 0.3, 0.4),
                                   randomRotation(random),
                                   osg::Quat(nan, 0.0, 0.0, 1.0),
                                   osg::Quat(0.0, 0.0, 0.0, 0.0)};
    osg::Vec3d const scales[] = {osg::Vec3d(1, 1, 1), osg::Vec3d(-2, 0.5, 3), osg::Vec3d(0, -0.0, 1),
                                 osg::Vec3d(value(random), value(random), value(random)), osg::Vec3d(inf, 1, 1)};
    osg::Vec3d const translations[] = {osg::Vec3d(0, 0, 0), osg::Vec3d(-0.0, 0.0, -0.0), osg::Vec3d(1, -2, 3),
                                       osg::Vec3d(value(random), value(random), value(random)),
                                       osg::Vec3d(0, nan, 0)};
    for (osg::Quat const& q : rotations)
        for (osg::Vec3d const& s : scales)
            for (osg::Vec3d const& t : translations) {
                osg::Matrixd const expected = osgProduct(s, q, t);
                osg::Matrixd const actual = iMatrixParts::compose(s, q, t);
                if (std::isnan(expected(0, 0)) || std::isnan(expected(3, 1))) {
                    // NaNs have many bit patterns; only their places count.
                    for (int i = 0; i < 16; ++i)
                        EXPECT_EQ(std::isnan(actual.ptr()[i]), std::isnan(expected.ptr()[i]));
                    continue;
                }
                EXPECT_TRUE(sameBits(actual, expected)) << "q " << q.x() << " " << q.y() << " " << q.z() << " "
                                                         << q.w() << " s " << s.x() << " t " << t.x();
            }
}

TEST(MatrixPartsTest, ScaledRotationsDecomposeAsOsgDoes)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> magnitude(0.05, 20);
    std::uniform_real_distribution<double> place(-100, 100);
    for (int i = 0; i < 500; ++i) {
        osg::Quat const q = randomRotation(random);
        // Non-uniform, and on every fourth matrix mirrored on one or all axes.
        osg::Vec3d s(magnitude(random), magnitude(random), magnitude(random));
        if (i % 4 == 1)
            s.y() = -s.y();
        if (i % 4 == 2)
            s = -s;
        osg::Vec3d const t(place(random), place(random), place(random));
        osg::Matrixd const m = osgProduct(s, q, t);

        osg::Vec3d osgT, osgS, ourT, ourS;
        osg::Quat osgQ, osgSo, ourQ;
        m.decompose(osgT, osgQ, osgS, osgSo);
        iMatrixParts::decompose(m, ourT, ourQ, ourS);

        EXPECT_EQ(ourT, osgT);
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(ourS[k], osgS[k], 1e-9 * std::fabs(osgS[k])) << "matrix " << i << " axis " << k;
        EXPECT_LT(rotationDistance(ourQ, osgQ), 1e-9) << "matrix " << i;
        EXPECT_NEAR(ourQ.length2(), 1.0, 1e-12);
        // Put together again, the parts give the matrix back.
        osg::Matrixd const again = iMatrixParts::compose(ourS, ourQ, ourT);
        for (int k = 0; k < 16; ++k)
            EXPECT_NEAR(again.ptr()[k], m.ptr()[k], 1e-9 * (1.0 + std::fabs(m.ptr()[k])));
    }
}

TEST(MatrixPartsTest, DiagonalMatricesComeBackExactly)
{
    // What a transform without rotation writes: decomposed and composed
    // again, it gives the same bytes, so a reloaded document saves the same.
    osg::Vec3d const scales[] = {osg::Vec3d(1.25, 0.625, 2.0), osg::Vec3d(3.0000001, 1e-3, 7.5),
                                 osg::Vec3d(-1.5, -2.0, -0.75)};
    for (osg::Vec3d const& s : scales) {
        osg::Matrixd const m = osgProduct(s, osg::Quat(), osg::Vec3d(1.5, -0.25, 3.0));
        osg::Vec3d t, scale;
        osg::Quat q;
        iMatrixParts::decompose(m, t, q, scale);
        EXPECT_EQ(scale, s);
        EXPECT_EQ(q, osg::Quat());
        EXPECT_TRUE(sameBits(iMatrixParts::compose(scale, q, t), m));
    }
}

TEST(MatrixPartsTest, OtherMatricesFallBackToTheGeneralDecomposition)
{
    // A shear, a projective column and a degenerate row are not a scale
    // times a rotation: the answer is OSG's.
    osg::Matrixd const shear(1, 0.5, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 1);
    osg::Matrixd const projective(1, 0, 0, 0.1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    osg::Matrixd const flat(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    for (osg::Matrixd const& m : {shear, projective, flat}) {
        osg::Vec3d osgT, osgS, ourT, ourS;
        osg::Quat osgQ, osgSo, ourQ;
        m.decompose(osgT, osgQ, osgS, osgSo);
        iMatrixParts::decompose(m, ourT, ourQ, ourS);
        EXPECT_EQ(std::memcmp(ourT.ptr(), osgT.ptr(), sizeof(double) * 3), 0);
        EXPECT_EQ(std::memcmp(ourS.ptr(), osgS.ptr(), sizeof(double) * 3), 0);
        EXPECT_EQ(std::memcmp(&ourQ, &osgQ, sizeof(osg::Quat)), 0);
    }
}
