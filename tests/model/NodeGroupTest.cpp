#include "model/ModelTestSupport.h"

#include <iModelStage/model/iObjectData.h>

#include <stdexcept>

namespace {

struct FlagRecorder : Recorder {
    explicit FlagRecorder(iNodeGroup* o)
    {
        listen(o->sigFlagChanged, "flag");
        listen(o->sigFlagsChanged, "flags");
        o->sigFlagsChanged.connect(&last, &LastFlags::on);
    }
    // What the signal carries as the new flags.
    struct LastFlags : iSlot {
        void on(iNodeGroup*, std::bitset<32>, std::bitset<32> now) { value = now; }
        std::bitset<32> value;
    } last;
};

} // namespace

TEST(NodeGroupTest, FreshNodesReadAllFlagsSetAndBadBitsThrow)
{
    osg::ref_ptr<osg::Node> plain = new osg::Node;
    EXPECT_EQ(iNodeGroup::getNodeLayerId(plain.get()), "");
    EXPECT_EQ(plain->getUserData(), nullptr) << "reading the layer id must not create the block";
    EXPECT_TRUE(iNodeGroup::getNodeFlags(plain.get()).all());
    EXPECT_NE(dynamic_cast<iObjectData*>(plain->getUserData()), nullptr);

    osg::ref_ptr<iNodeGroup> o = make("alone");
    EXPECT_TRUE(o->isFlagSet(31));
    EXPECT_THROW(o->setFlag(32, true), std::out_of_range);
    EXPECT_THROW(o->isFlagSet(40), std::out_of_range);
    EXPECT_TRUE(o->getFlags().all());
    EXPECT_EQ(o->getName(), "alone");
    EXPECT_EQ(o->findObjectByUniqueId(o->getUniqueId()), nullptr) << "a detached object reaches no document";
}

TEST(NodeGroupTest, ClearedBitFiveFreezesEveryOtherFlag)
{
    osg::ref_ptr<iNodeGroup> n = make("n");
    FlagRecorder recorder(n.get());
    n->setNodeMask(0x7);
    n->setFlag(5, false);
    std::bitset<32> const frozen = n->getFlags();
    recorder.take();

    n->setFlag(0, false);
    n->setFlag(2, false);
    EXPECT_EQ(n->getFlags(), frozen);
    EXPECT_EQ(n->getNodeMask(), 0x7u);
    EXPECT_TRUE(recorder.take().empty());

    n->setFlag(5, true);
    n->setFlag(0, false);
    n->setFlag(0, false); // neither signal compares
    EXPECT_EQ(n->getNodeMask(), 0u);
    EXPECT_EQ(recorder.take(), (Log{"flag:n:5:1", "flags:n", "flag:n:0:0", "flags:n", "flag:n:0:0", "flags:n"}));
}

TEST(NodeGroupTest, ShowingRestoresTheMaskFromBeforeTheFirstHide)
{
    osg::ref_ptr<iNodeGroup> n = make("n");
    n->setNodeMask(0x24);
    n->setFlag(0, false);
    n->setFlag(0, false);
    EXPECT_EQ(n->getNodeMask(), 0u);
    n->setFlag(0, true);
    EXPECT_EQ(n->getNodeMask(), 0x24u);

    // setNodeFlags stores bits only: no mask, no guard, no single-flag signal.
    FlagRecorder recorder(n.get());
    std::bitset<32> flags = n->getFlags();
    flags.reset(0).reset(5).reset(3);
    n->setFlags(flags);
    EXPECT_EQ(n->getNodeMask(), 0x24u);
    EXPECT_EQ(recorder.take(), Log{"flags:n"});
    EXPECT_EQ(recorder.last.value, flags);
    n->setFlags(std::bitset<32>().set());
    EXPECT_TRUE(n->getFlags().all());
}

TEST(NodeGroupTest, CopiesNeverShareTheFlagBlock)
{
    for (unsigned int op : {0u, 0x7fffffffu}) {
        SCOPED_TRACE(op);
        osg::ref_ptr<iNodeGroup> source = make("source");
        source->setLayerId("layer");
        source->setFlag(1, false);
        osg::ref_ptr<iNodeGroup> copy = static_cast<iNodeGroup*>(source->clone(osg::CopyOp(op)));
        EXPECT_EQ(copy->getFlags(), source->getFlags());
        EXPECT_EQ(copy->getLayerId(), "layer");
        EXPECT_EQ(copy->getUniqueId(), source->getUniqueId());

        copy->setFlag(2, false);
        copy->setLayerId("other");
        source->setFlag(1, true);
        EXPECT_TRUE(source->isFlagSet(2));
        EXPECT_FALSE(copy->isFlagSet(1));
        EXPECT_EQ(source->getLayerId(), "layer");
        copy->set_name("copy");
        EXPECT_EQ(copy->getName(), "copy");
        EXPECT_EQ(source->getName(), "source");
    }
}
