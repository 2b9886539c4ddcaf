#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/geometry/iInputPlanesLayer.h>

#include <cmath>

namespace {

void expectNear(osg::Vec3f const& actual, osg::Vec3f const& expected)
{
    EXPECT_NEAR(actual.x(), expected.x(), 1e-6);
    EXPECT_NEAR(actual.y(), expected.y(), 1e-6);
    EXPECT_NEAR(actual.z(), expected.z(), 1e-6);
}

} // namespace

TEST(InputPlane, NormalFollowsTheMatrixAndDistancesAreSigned)
{
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    expectNear(plane->getNormal(), osg::Vec3f(0, 0, 1));
    EXPECT_DOUBLE_EQ(plane->pointDistance(osg::Vec3f(3, 4, 5)), 5.0);
    EXPECT_DOUBLE_EQ(plane->pointDistance(osg::Vec3f(0, 0, -5)), -5.0);

    // Turned a quarter about X, the plane's Z axis points along -Y.
    plane->setMatrix(osg::Matrixd::rotate(osg::PI_2, osg::X_AXIS) * osg::Matrixd::translate(0, 2, 0));
    expectNear(plane->getNormal(), osg::Vec3f(0, -1, 0));
    EXPECT_NEAR(plane->pointDistance(osg::Vec3f(7, -3, 9)), 5.0, 1e-6);
    EXPECT_NEAR(plane->pointDistance(osg::Vec3f(0, 4, 0)), -2.0, 1e-6);

    // A scaled matrix still gives a unit normal.
    plane->setMatrix(osg::Matrixd::scale(2, 2, 2) * osg::Matrixd::rotate(osg::PI_2, osg::Y_AXIS));
    expectNear(plane->getNormal(), osg::Vec3f(1, 0, 0));
    EXPECT_NEAR(plane->pointDistance(osg::Vec3f(-4, 1, 1)), -4.0, 1e-6);
}

TEST(InputPlane, FlatMatrixLeavesAZeroNormalAndCopiesKeepFollowing)
{
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    plane->setMatrix(osg::Matrixd::scale(1, 1, 0));
    EXPECT_EQ(plane->getNormal(), osg::Vec3f(0, 0, 0));
    EXPECT_EQ(plane->pointDistance(osg::Vec3f(1, 2, 3)), 0.0);

    plane->setMatrix(osg::Matrixd::rotate(osg::PI, osg::X_AXIS));
    osg::ref_ptr<iInputPlane> copy = dynamic_cast<iInputPlane*>(plane->clone(osg::CopyOp::SHALLOW_COPY));
    ASSERT_NE(copy, nullptr);
    expectNear(copy->getNormal(), osg::Vec3f(0, 0, -1));
    copy->setMatrix(osg::Matrixd::identity());
    expectNear(copy->getNormal(), osg::Vec3f(0, 0, 1));
    expectNear(plane->getNormal(), osg::Vec3f(0, 0, -1));
}

TEST(InputPlane, LayerMakesPlanes)
{
    osg::ref_ptr<iInputPlanesLayer> layer = new iInputPlanesLayer;
    EXPECT_EQ(layer->getInstantiableClasses(), std::vector<std::string>{"iInputPlane"});
    osg::ref_ptr<osg::Node> made = layer->newInstantiableObject("iInputPlane");
    EXPECT_NE(dynamic_cast<iInputPlane*>(made.get()), nullptr);
}
