#include "geometry/GeometryTestSupport.h"

#include <iModelStage/geometry/iGeometryEvaluator.h>
#include <iModelStage/geometry/iGeometryEvaluatorObject.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

GEOMETRY_TEST_GROUP(iEvaluatedGroup)

// A subclass two levels below a registered class, and one with no
// registered ancestor.
class iEvaluatedChild : public iEvaluatedGroup {
    I_CLASS(iEvaluatedChild, iEvaluatedGroup, 1)
    I_OSG_NODE(iEvaluatedChild)
public:
    iEvaluatedChild() = default;
    iEvaluatedChild(iEvaluatedChild const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iEvaluatedGroup(other, copyop)
    {
    }

protected:
    ~iEvaluatedChild() override = default;
};

class iEvaluatedGrandChild : public iEvaluatedChild {
    I_CLASS(iEvaluatedGrandChild, iEvaluatedChild, 1)
    I_OSG_NODE(iEvaluatedGrandChild)
public:
    iEvaluatedGrandChild() = default;
    iEvaluatedGrandChild(iEvaluatedGrandChild const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iEvaluatedChild(other, copyop)
    {
    }

protected:
    ~iEvaluatedGrandChild() override = default;
};

GEOMETRY_TEST_GROUP(iUnevaluatedGroup)

// Area is the group's x position, volume 2, load 3; counts its instances.
class iTestEvaluator : public iGeometryEvaluatorObject {
    I_CLASS(iTestEvaluator, iGeometryEvaluatorObject, 1)
public:
    iTestEvaluator() { ++alive; }
    ~iTestEvaluator() override { --alive; }
    double _computeAreaImpl(iLayersManager*, iGeometricGroup* group) override { return group->getPosition().x(); }
    double _computeVolumeImpl(iLayersManager*, iGeometricGroup*) override { return 2.0; }
    double _computeLoadImpl(iLayersManager*, iGeometricGroup*) override { return 3.0; }
    static int alive;
};

class iOtherTestEvaluator : public iGeometryEvaluatorObject {
    I_CLASS(iOtherTestEvaluator, iGeometryEvaluatorObject, 1)
public:
    double _computeVolumeImpl(iLayersManager*, iGeometricGroup*) override { return 20.0; }
};

int iTestEvaluator::alive = 0;

} // namespace

I_REGISTER_CLASS(iEvaluatedGroup)
I_REGISTER_CLASS(iEvaluatedChild)
I_REGISTER_CLASS(iEvaluatedGrandChild)
I_REGISTER_CLASS(iUnevaluatedGroup)
I_REGISTER_CLASS(iTestEvaluator)
I_REGISTER_CLASS(iOtherTestEvaluator)

TEST(GeometryEvaluator, RegistryTakesGeometricClassesOnceEach)
{
    EXPECT_FALSE(iGeometryEvaluator::registerNewEvaluator("iTestEvaluator", "iNodeGroup"));
    EXPECT_FALSE(iGeometryEvaluator::registerNewEvaluator("iNoSuchEvaluator", "iEvaluatedGroup"));
    EXPECT_FALSE(iGeometryEvaluator::registerNewEvaluator("iTestEvaluator", "iNoSuchGroup"));
    EXPECT_FALSE(iGeometryEvaluator::registerNewEvaluator(nullptr, "iEvaluatedGroup"));
    EXPECT_TRUE(iGeometryEvaluator::registerNewEvaluator("iTestEvaluator", "iEvaluatedGroup"));
    EXPECT_FALSE(iGeometryEvaluator::registerNewEvaluator("iOtherTestEvaluator", "iEvaluatedGroup"));
    // An entry that names something other than an evaluator yields none.
    EXPECT_TRUE(iGeometryEvaluator::registerNewEvaluator("iGeometricGroup", "iUnevaluatedGroup"));

    std::unique_ptr<iGeometryEvaluatorObject> made(iGeometryEvaluator::getEvaluatorForClass("iEvaluatedGroup"));
    EXPECT_TRUE(dynamic_cast<iTestEvaluator*>(made.get()));
    EXPECT_EQ(iGeometryEvaluator::getEvaluatorForClass("iUnevaluatedGroup"), nullptr);
    EXPECT_EQ(iGeometryEvaluator::getEvaluatorForClass("iGeometricGroup"), nullptr);
    EXPECT_EQ(iGeometryEvaluator::getEvaluatorForClass("iNoSuchGroup"), nullptr);
    EXPECT_EQ(iGeometryEvaluator::getEvaluatorForClass("iRoot"), nullptr);
    EXPECT_EQ(iGeometryEvaluator::getEvaluatorForClass(nullptr), nullptr);

    // Subclasses fall back to the nearest registered ancestor.
    made.reset(iGeometryEvaluator::getEvaluatorForClass("iEvaluatedGrandChild"));
    EXPECT_TRUE(dynamic_cast<iTestEvaluator*>(made.get()));
    EXPECT_TRUE(iGeometryEvaluator::registerNewEvaluator("iOtherTestEvaluator", "iEvaluatedChild"));
    made.reset(iGeometryEvaluator::getEvaluatorForClass("iEvaluatedGrandChild"));
    EXPECT_TRUE(dynamic_cast<iOtherTestEvaluator*>(made.get()));
}

TEST(GeometryEvaluator, CopiesShareOneEvaluator)
{
    iGeometryEvaluator::registerNewEvaluator("iTestEvaluator", "iEvaluatedGroup");
    osg::ref_ptr<iEvaluatedGroup> group = new iEvaluatedGroup;
    group->setPosition(osg::Vec3f(7, 0, 0));
    {
        iGeometryEvaluator evaluator(group.get());
        EXPECT_EQ(iTestEvaluator::alive, 1);
        EXPECT_EQ(evaluator.computeArea(), 7.0);
        EXPECT_EQ(evaluator.computeVolume(), 2.0);
        EXPECT_EQ(evaluator.computeLoad(), 3.0);
        iGeometryEvaluator copy(evaluator);
        osg::ref_ptr<iUnevaluatedGroup> other = new iUnevaluatedGroup;
        iGeometryEvaluator assigned(other.get());
        EXPECT_EQ(assigned.computeArea(), 0.0);
        assigned = copy;
        EXPECT_EQ(iTestEvaluator::alive, 1);
        {
            iGeometryEvaluator inner(copy);
            inner = evaluator;
        }
        EXPECT_EQ(copy.computeArea(), 7.0);
        EXPECT_EQ(assigned.computeLoad(), 3.0);
    }
    EXPECT_EQ(iTestEvaluator::alive, 0);
    // The evaluator held its own reference on the group.
    EXPECT_EQ(group->referenceCount(), 1);
}
