#include "model/ModelTestSupport.h"

#include <iModelStage/model/iMatrixParts.h>

#include <osg/Math>
#include <osg/io_utils>

namespace {

typedef osg::PositionAttitudeTransform Base;

struct TransformRecorder : Recorder {
    explicit TransformRecorder(iTransformGroup* t)
    {
        listen(t->sigpositionChanging, "changing");
        for (auto* changed : {&t->sigpositionChanged, &t->sigrotationChanged, &t->sigscaleChanged})
            listen(*changed, "changed");
        listen(t->sigMatrixChanged, "matrix");
        listen(t->sigPropertyChanged, "property");
    }
};

void expectNear(osg::Matrixd const& actual, osg::Matrixd const& expected)
{
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            EXPECT_NEAR(actual(r, c), expected(r, c), 1e-5) << "at (" << r << "," << c << ")";
}

void expectNear(osg::Vec3f const& actual, osg::Vec3f const& expected)
{
    EXPECT_LT((actual - expected).length(), 1e-5f) << actual << " vs " << expected;
}

// Scale, then rotation about X, Y, Z in that order, then translation.
osg::Matrixd composed(osg::Vec3f const& scale, osg::Vec3f const& euler, osg::Vec3f const& position)
{
    osg::Quat const q = osg::Quat(euler.x(), osg::X_AXIS) * osg::Quat(euler.y(), osg::Y_AXIS) *
                        osg::Quat(euler.z(), osg::Z_AXIS);
    return osg::Matrixd::scale(scale) * osg::Matrixd::rotate(q) * osg::Matrixd::translate(position);
}

} // namespace

TEST(TransformGroupTest, PropertiesEmitOnChangeOnlyAndDriveTheMatrix)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    TransformRecorder recorder(t.get());
    t->set_position(osg::Vec3f(0, 0, 0));
    EXPECT_TRUE(recorder.log.empty());

    t->set_position(osg::Vec3f(1, 2, 3));
    // The class's own slot was connected first: the matrix signal comes
    // inside the after-change step.
    EXPECT_EQ(recorder.log, (Log{"changing", "matrix", "changed", "property:position"}));
    EXPECT_EQ(t->Base::getPosition(), osg::Vec3d(1, 2, 3));

    t->set_rotation(osg::Vec3f(0.3f, -0.2f, 1.1f));
    t->set_scale(osg::Vec3f(2, 2, 2));
    expectNear(t->getMatrix(), composed(osg::Vec3f(2, 2, 2), osg::Vec3f(0.3f, -0.2f, 1.1f), osg::Vec3f(1, 2, 3)));
    expectNear(t->getInverseMatrix() * t->getMatrix(), osg::Matrixd::identity());
}

TEST(TransformGroupTest, SetMatrixEmitsOnceAndKeepsTheExactDecomposition)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    t->set_position(osg::Vec3f(4, -5, 6));
    t->set_rotation(osg::Vec3f(0.7f, -0.4f, 2.3f));
    t->set_scale(osg::Vec3f(2, 2, 2));
    osg::Matrixd const m = t->getMatrix();
    TransformRecorder recorder(t.get());

    t->setMatrix(m);
    EXPECT_EQ(std::count(recorder.log.begin(), recorder.log.end(), "matrix"), 1);
    EXPECT_EQ(std::count(recorder.log.begin(), recorder.log.end(), "changed"), 0) << "after-change is blocked";

    // The base holds the decomposition itself, not what the float Euler
    // angles and scale would recompose to.
    osg::Vec3d translation, scale;
    osg::Quat q;
    iMatrixParts::decompose(m, translation, q, scale);
    EXPECT_EQ(t->Base::getAttitude(), q);
    EXPECT_EQ(t->Base::getPosition(), translation);
    EXPECT_EQ(t->Base::getScale(), scale);
    EXPECT_LT((scale - osg::Vec3d(2, 2, 2)).length(), 1e-12);

    t->set_position(osg::Vec3f(0, 0, 0));
    EXPECT_EQ(t->Base::getPosition(), osg::Vec3d(0, 0, 0)) << "the slots work again afterwards";
}

TEST(TransformGroupTest, TranslationFreedomBindsSetPositionAndSetMatrixOnly)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    EXPECT_EQ(t->get_dof(), iTransformGroup::DOF_ALL);
    t->set_dof(iTransformGroup::DOF_TRANSLATE_X);
    EXPECT_TRUE(t->testDOF(1));
    EXPECT_FALSE(t->testDOF(2 | 4));

    t->setPosition(osg::Vec3f(1, 2, 3));
    EXPECT_EQ(t->get_position(), osg::Vec3f(1, 0, 0));
    t->set_position(osg::Vec3f(1, 2, 3));
    EXPECT_EQ(t->get_position(), osg::Vec3f(1, 2, 3));
    t->setMatrix(osg::Matrixd::translate(1, 2, 3));
    EXPECT_EQ(t->get_position(), osg::Vec3f(1, 0, 0));
    EXPECT_EQ(t->Base::getPosition(), osg::Vec3d(1, 0, 0));

    t->set_dof(iTransformGroup::DOF_NONE);
    osg::Vec3f const v(3, -4, 5);
    EXPECT_EQ(t->applyScaleDOF(v), v);
    EXPECT_EQ(t->applyRotateDOF(v), v);
    EXPECT_EQ(t->applyTranslateDOF(v), osg::Vec3f(0, 0, 0));
}

TEST(TransformGroupTest, WorldMatrixCrossesHiddenAncestorsAndRestoresMasks)
{
    osg::ref_ptr<osg::Group> top = new osg::Group;
    top->setNodeMask(0x10);
    osg::ref_ptr<iTransformGroup> parent = new iTransformGroup;
    osg::ref_ptr<iTransformGroup> child = new iTransformGroup;
    top->addChild(parent);
    parent->addChild(child);
    parent->set_position(osg::Vec3f(10, 0, 0));
    parent->set_scale(osg::Vec3f(2, 2, 2));
    parent->set_rotation(osg::Vec3f(0, 0, 0.5f));
    child->set_position(osg::Vec3f(1, 2, 3));
    child->setFlag(0, false);
    parent->setFlag(0, false);

    osg::Matrixd const expected = child->getMatrix() * parent->getMatrix();
    expectNear(child->getWorldMatrix(), expected);
    expectNear(child->getInverseWorldMatrix() * expected, osg::Matrixd::identity());
    EXPECT_EQ(child->getNodeMask(), 0u);
    EXPECT_EQ(parent->getNodeMask(), 0u);
    EXPECT_EQ(top->getNodeMask(), 0x10u);

    osg::Matrixd const target = osg::Matrixd::rotate(0.3, osg::Y_AXIS) * osg::Matrixd::translate(12, 1, -4);
    child->setWorldMatrix(target);
    expectNear(child->getWorldMatrix(), target);
    expectNear(child->getMatrix(), target * osg::Matrixd::inverse(parent->getMatrix()));
    EXPECT_EQ(parent->getNodeMask(), 0u);

}

TEST(TransformGroupTest, CoordinateSystemIsTheLocalMatrixByRows)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    EXPECT_EQ(t->getCoordinateSystem(), iCoordinateSystem());
    iCoordinateSystem const turned(osg::Vec3f(1, 2, 3), osg::Vec3f(0, 1, 0), osg::Vec3f(-1, 0, 0), osg::Vec3f(0, 0, 1));
    t->setCoordinateSystem(turned);
    expectNear(t->get_position(), osg::Vec3f(1, 2, 3));
    expectNear(t->get_rotation(), osg::Vec3f(0, 0, osg::PI_2f));
    t->set_scale(osg::Vec3f(2, 2, 2));
    iCoordinateSystem const read = t->getCoordinateSystem();
    expectNear(read.origin, turned.origin);
    expectNear(read.xAxis, osg::Vec3f(0, 2, 0)); // the axes keep the scale
    expectNear(read.yAxis, osg::Vec3f(-2, 0, 0));
}

TEST(TransformGroupTest, SaveAndLoadKeepsTheMatrixNotTheEulerTriple)
{
    osg::ref_ptr<iTransformGroup> source = new iTransformGroup;
    source->set_scale(osg::Vec3f(2, 2, 2));
    // A Y angle past a right angle reads back as another triple.
    source->set_rotation(osg::Vec3f(0.4f, 2.0f, -0.9f));
    source->set_position(osg::Vec3f(-3, 5, 1));
    source->set_dof(static_cast<iTransformGroup::iDegreeOfFreedom>(1 | 4));
    osg::Matrixd const m = source->getMatrix();

    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    iRoot::writeObject(source.get(), out);
    iInStream in(&buffer);
    osg::ref_ptr<iTransformGroup> loaded = new iTransformGroup;
    iRoot::readObject(loaded.get(), in);

    expectNear(loaded->getMatrix(), m);
    EXPECT_EQ(loaded->get_dof(), source->get_dof());
    osg::Vec3f const euler = loaded->get_rotation();
    EXPECT_GT((euler - source->get_rotation()).length(), 0.1f);
    expectNear(composed(loaded->get_scale(), euler, loaded->get_position()), m);
}
