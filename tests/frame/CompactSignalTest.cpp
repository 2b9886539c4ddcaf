#include <iModelStage/frame/iRoot.h>
#include <iModelStage/frame/iSlot.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Counter : iSlot {
    void on(int value) { seen.push_back(value); }
    void onAndConnect(int value)
    {
        seen.push_back(value);
        if (other)
            other->connect(this, &Counter::on);
    }
    std::vector<int> seen;
    sigslot::signal1<int>* other = nullptr;
};

} // namespace

TEST(CompactSignalTest, AnUnconnectedSignalIsOnePointerAndBehavesInFull)
{
    static_assert(sizeof(sigslot::signal1<int>) == sizeof(void*), "a signal is one pointer");
    sigslot::signal1<int> signal;
    signal(1); // nobody to call
    EXPECT_FALSE(signal.connected());
    EXPECT_FALSE(signal.blocked());
    signal.disconnect_all();
    // A block before the first connection holds for it.
    EXPECT_FALSE(signal.block(true));
    Counter counter;
    signal.connect(&counter, &Counter::on);
    signal(2);
    EXPECT_TRUE(counter.seen.empty());
    EXPECT_TRUE(signal.block(false));
    signal(3);
    EXPECT_EQ(counter.seen, std::vector<int>{3});

    // A copy reaches the same receivers; a copy of an unconnected signal
    // reaches none and still takes connections.
    sigslot::signal1<int> copy(signal);
    copy(4);
    EXPECT_EQ(counter.seen, (std::vector<int>{3, 4}));
    sigslot::signal1<int> empty;
    sigslot::signal1<int> emptyCopy(empty);
    emptyCopy = signal;
    emptyCopy(5);
    EXPECT_EQ(counter.seen, (std::vector<int>{3, 4, 5}));
}

TEST(CompactSignalTest, ASlotMayGiveAnotherSignalItsFirstConnection)
{
    sigslot::signal1<int> first, second;
    Counter counter;
    counter.other = &second;
    first.connect(&counter, &Counter::onAndConnect);
    first(1);
    second(2);
    first.disconnect(&counter);
    first(3);
    EXPECT_EQ(counter.seen, (std::vector<int>{1, 2}));
    {
        // The receiver going first leaves both signals empty.
        Counter shortLived;
        second.connect(&shortLived, &Counter::on);
        second(4);
        EXPECT_EQ(shortLived.seen, std::vector<int>{4});
    }
    second.disconnect(&counter);
    EXPECT_FALSE(second.connected());
    second(5);
    EXPECT_EQ(counter.seen, (std::vector<int>{1, 2, 4}));
}

TEST(CompactSignalTest, ObjectsCreatedToBeReadTakeNoIdOfTheirOwn)
{
    iRoot* made = iRoot::newClassToRead("iUCVec3fRadToGrad");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getUniqueId(), 0);
    long const fresh = iRoot::generateUniqueId(0);
    made->setUniqueId(fresh);
    // The id is held now: the generator hands out another.
    EXPECT_NE(iRoot::generateUniqueId(0), fresh);
    delete made;
    // Only the first object of the call starts without an id.
    iRoot* next = iRoot::newClass("iUCVec3fRadToGrad");
    EXPECT_NE(next->getUniqueId(), 0);
    delete next;
    EXPECT_EQ(iRoot::newClassToRead("no such class"), nullptr);
    iRoot* after = iRoot::newClass("iUCVec3fRadToGrad");
    EXPECT_NE(after->getUniqueId(), 0);
    delete after;
}

// A receiver keeps its table of senders only once it is connected; every
// path must work on a receiver that has none.
TEST(CompactSignalTest, ReceiversWithoutConnectionsWorkInFull)
{
    sigslot::signal1<int> signal;
    {
        Counter never;
        never.disconnect_all();
        signal.disconnect(&never);
        Counter copy(never);
        copy = never;
        signal.connect(&copy, &Counter::on);
        Counter second(copy);
        signal(1);
        EXPECT_EQ(copy.seen, std::vector<int>{1});
        EXPECT_EQ(second.seen, std::vector<int>{1}) << "a copy of a connected receiver is connected too";
        copy = never;
        signal(2);
        EXPECT_TRUE(copy.seen.empty()) << "assigning an unconnected receiver drops the connections";
        EXPECT_EQ(second.seen, (std::vector<int>{1, 2}));
    }
    EXPECT_FALSE(signal.connected()) << "receivers that go end their connections";
    signal(3);
}
