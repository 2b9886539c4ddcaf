#include "model/ModelTestSupport.h"

#include <iModelStage/frame/iObjectPool.h>

namespace {

typedef osg::PositionAttitudeTransform Base;

} // namespace

// Objects react to their own name and transform properties without a
// connection, so renaming and moving them allocates nothing.
TEST(ObjectFootprintTest, OwnReactionsAllocateNothing)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    std::size_t const before = iObjectPool::bytesInUse();
    t->set_name("moved");
    t->set_position(osg::Vec3f(1, 2, 3));
    t->set_rotation(osg::Vec3f(0.5f, 0, 0));
    t->set_scale(osg::Vec3f(2, 3, 4));
    EXPECT_EQ(t->getName(), "moved");
    EXPECT_EQ(t->Base::getPosition(), osg::Vec3d(1, 2, 3));
    EXPECT_EQ(t->Base::getScale(), osg::Vec3d(2, 3, 4));
    EXPECT_EQ(t->Base::getAttitude(), osg::Quat(0.5f, osg::X_AXIS));
    // Reading an object sets its matrix, with the property signals blocked.
    t->setMatrix(t->getMatrix());
    EXPECT_EQ(iObjectPool::bytesInUse(), before);
    EXPECT_FALSE(t->sigpositionChanged.blocked());
}

// A receiver of the after-change signals finds the node already updated;
// while the signal is blocked the node keeps what it had.
TEST(ObjectFootprintTest, ReactionsRunFirstAndFollowTheBlockedFlag)
{
    osg::ref_ptr<iTransformGroup> t = new iTransformGroup;
    Recorder recorder;
    recorder.listen(t->sigNameChanged, "name", [&] { return t->getName(); });
    recorder.listen(t->sigscaleChanged, "scale", [&] { return std::to_string(t->Base::getScale().x()); });
    t->set_name("first");
    t->set_scale(osg::Vec3f(3, 3, 3));
    EXPECT_EQ(recorder.take(), (Log{"name:first:first", "scale:3.000000"}));

    {
        sigslot::signal_blocker name(t->sigNameChanged);
        sigslot::signal_blocker scale(t->sigscaleChanged);
        t->set_name("second");
        t->set_scale(osg::Vec3f(5, 5, 5));
    }
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(t->get_name(), "second");
    EXPECT_EQ(t->getName(), "first");
    EXPECT_EQ(t->get_scale(), osg::Vec3f(5, 5, 5));
    EXPECT_EQ(t->Base::getScale(), osg::Vec3d(3, 3, 3));

    t->set_name("third");
    EXPECT_EQ(t->getName(), "third");
}

// A copy takes the transform base of its source as it is, not as its float
// properties would rebuild it, and reacts on its own afterwards.
TEST(ObjectFootprintTest, CopiesKeepTheExactBaseAndReactAlone)
{
    osg::ref_ptr<iTransformGroup> source = new iTransformGroup;
    source->set_name("source");
    iCoordinateSystem system;
    system.origin = osg::Vec3f(1, 1, 1);
    source->setCoordinateSystem(system);
    osg::Matrixd const m = osg::Matrixd::scale(1.1, 2.3, 0.7) * osg::Matrixd::rotate(0.9, osg::Vec3d(1, 2, 3)) *
                           osg::Matrixd::translate(0.1, 1e7 + 0.3, -2.7);
    source->setMatrix(m);

    osg::ref_ptr<iTransformGroup> copy = static_cast<iTransformGroup*>(source->clone(osg::CopyOp::SHALLOW_COPY));
    EXPECT_EQ(copy->Base::getPosition(), source->Base::getPosition());
    EXPECT_EQ(copy->Base::getAttitude(), source->Base::getAttitude());
    EXPECT_EQ(copy->Base::getScale(), source->Base::getScale());
    EXPECT_NE(copy->Base::getPosition(), osg::Vec3d(copy->get_position())) << "the base is finer than the floats";

    copy->set_name("copy");
    copy->set_position(osg::Vec3f(7, 8, 9));
    EXPECT_EQ(copy->getName(), "copy");
    EXPECT_EQ(source->getName(), "source");
    EXPECT_EQ(copy->Base::getPosition(), osg::Vec3d(7, 8, 9));
    EXPECT_NE(source->Base::getPosition(), osg::Vec3d(7, 8, 9));
}
