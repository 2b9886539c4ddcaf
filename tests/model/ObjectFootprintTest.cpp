#include "model/ModelTestSupport.h"

#include <iModelStage/frame/iObjectPool.h>
#include <iModelStage/model/iObjectData.h>

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

// The flag block of an object is its node's user-data container as well;
// what a host keeps in that container stays apart from the flags.
TEST(ObjectFootprintTest, TheFlagBlockServesAsTheUserDataContainer)
{
    osg::ref_ptr<iNodeGroup> object = new iNodeGroup;
    object->setFlag(1, false);
    ASSERT_NE(dynamic_cast<iObjectData*>(object->getUserData()), nullptr);
    EXPECT_EQ(object->getUserData(), static_cast<osg::Referenced*>(object->getUserDataContainer()));
    EXPECT_EQ(object->getUserDataContainer()->getNumUserObjects(), 0u);
    EXPECT_EQ(object->getNumDescriptions(), 0u);

    osg::ref_ptr<osg::Node> extra = new osg::Node;
    extra->setName("extra");
    object->getOrCreateUserDataContainer()->addUserObject(extra.get());
    object->addDescription("note");
    EXPECT_EQ(object->getUserDataContainer()->getUserObject("extra"), extra.get());
    EXPECT_EQ(object->getDescriptions(), osg::Node::DescriptionList{"note"});
    EXPECT_FALSE(object->isFlagSet(1));

    // A shallow copy gets its own block with the same flags, and shares the
    // user objects as a shallow copy of a plain container would.
    osg::ref_ptr<iNodeGroup> copy = static_cast<iNodeGroup*>(object->clone(osg::CopyOp::SHALLOW_COPY));
    EXPECT_NE(copy->getUserData(), object->getUserData());
    EXPECT_FALSE(copy->isFlagSet(1));
    copy->setFlag(1, true);
    EXPECT_FALSE(object->isFlagSet(1));
    EXPECT_EQ(copy->getUserDataContainer()->getUserObject(0), extra.get());
    EXPECT_EQ(copy->getDescriptions(), osg::Node::DescriptionList{"note"});

    // Other user data replaces the block, as in any container: the next
    // flag access starts from a fresh one.
    osg::ref_ptr<osg::Referenced> other = new osg::Referenced;
    object->setUserData(other.get());
    EXPECT_EQ(object->getUserData(), other.get());
    EXPECT_EQ(object->getUserDataContainer()->getUserObject(0), extra.get());
    EXPECT_TRUE(object->isFlagSet(1));
    EXPECT_NE(dynamic_cast<iObjectData*>(object->getUserData()), nullptr);
    object->setUserData(nullptr);
    EXPECT_EQ(object->getUserData(), nullptr);
    EXPECT_EQ(object->getLayerId(), "");
    EXPECT_EQ(object->getUserData(), nullptr) << "reading the layer id creates nothing";
}

// A node that already has a container gets the block inside it.
TEST(ObjectFootprintTest, AHostContainerKeepsTheBlockAsUserData)
{
    osg::ref_ptr<osg::Node> node = new osg::Node;
    node->addDescription("host");
    osg::UserDataContainer* container = node->getUserDataContainer();
    iNodeGroup::setNodeFlag(node.get(), 4, false);
    EXPECT_EQ(node->getUserDataContainer(), container);
    EXPECT_NE(dynamic_cast<iObjectData*>(node->getUserData()), nullptr);
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(node.get(), 4));
    EXPECT_EQ(node->getDescriptions(), osg::Node::DescriptionList{"host"});
}
