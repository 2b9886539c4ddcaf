#include <iModelStage/frame/iSlot.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

// Logs its tag on every call, then runs an optional action.
struct Rx : iSlot {
    Rx(std::vector<int>& log, int tag) : log(&log), tag(tag) {}
    void on(int)
    {
        log->push_back(tag);
        if (action)
            action();
    }
    std::vector<int>* log;
    int tag;
    std::function<void()> action;
};

struct SignalTest : testing::Test {
    std::vector<int> emit()
    {
        log.clear();
        signal(0);
        return log;
    }
    std::vector<int> log;
    sigslot::signal1<int> signal;
};

typedef std::vector<int> Calls;

} // namespace

TEST_F(SignalTest, ConnectionOrderAndDuplicates)
{
    Rx a(log, 1), b(log, 2);
    signal.connect(&a, &Rx::on);
    signal.connect(&b, &Rx::on);
    signal.connect(&a, &Rx::on);
    EXPECT_EQ(emit(), (Calls{1, 2, 1}));
    signal.disconnect(&a);
    EXPECT_EQ(emit(), (Calls{2, 1}));
    signal.disconnect(&a);
    signal.disconnect(&a);
    EXPECT_EQ(emit(), (Calls{2}));
}

TEST_F(SignalTest, SlotsMayDisconnectOrConnectDuringEmission)
{
    Rx a(log, 1), b(log, 2), c(log, 3), late(log, 5);
    auto d = std::make_unique<Rx>(log, 4);
    for (Rx* r : {&a, &b, &c, d.get()})
        signal.connect(r, &Rx::on);
    a.action = [&] { signal.disconnect(&a); }; // itself
    b.action = [&] { signal.disconnect(&c); }; // the next one
    EXPECT_EQ(emit(), (Calls{1, 2, 4}));
    b.action = [&] { d.reset(); };             // destroys the next one
    EXPECT_EQ(emit(), (Calls{2}));
    // A link made during an emission fires from the next one on.
    bool connectLate = true;
    b.action = [&] {
        if (std::exchange(connectLate, false))
            signal.connect(&late, &Rx::on);
    };
    EXPECT_EQ(emit(), (Calls{2}));
    EXPECT_EQ(emit(), (Calls{2, 5}));
}

TEST_F(SignalTest, EitherSideMayEndFirst)
{
    {
        Rx gone(log, 1);
        signal.connect(&gone, &Rx::on);
        signal.connect(&gone, &Rx::on);
    }
    EXPECT_TRUE(emit().empty());
    EXPECT_FALSE(signal.connected());

    Rx survivor(log, 2);
    {
        sigslot::signal1<int> shortLived;
        shortLived.connect(&survivor, &Rx::on);
    }
    signal.connect(&survivor, &Rx::on);
    EXPECT_EQ(emit(), (Calls{2}));
}

TEST_F(SignalTest, BlockingIsScopedByThePreviousValue)
{
    Rx a(log, 1);
    signal.connect(&a, &Rx::on);
    EXPECT_FALSE(signal.block(true));
    EXPECT_TRUE(emit().empty());
    { sigslot::signal_blocker blocker(signal); }
    EXPECT_TRUE(signal.block(false));
    {
        sigslot::signal_blocker blocker(signal);
        EXPECT_TRUE(emit().empty());
    }
    EXPECT_EQ(emit(), (Calls{1}));
}

TEST_F(SignalTest, SlotExceptionPropagatesAndSignalStaysUsable)
{
    Rx a(log, 1), b(log, 2);
    signal.connect(&a, &Rx::on);
    signal.connect(&b, &Rx::on);
    a.action = [] { throw std::runtime_error("slot failed"); };
    EXPECT_THROW(signal(0), std::runtime_error);
    a.action = nullptr;
    signal.disconnect(&b);
    // Another thread can only emit once the lock has been released.
    std::thread other([&] { signal(0); });
    other.join();
    EXPECT_EQ(log, (Calls{1, 1}));
}

TEST_F(SignalTest, CopiedReceiverGetsTheSameConnections)
{
    auto original = std::make_unique<Rx>(log, 1);
    signal.connect(original.get(), &Rx::on);
    signal.connect(original.get(), &Rx::on);
    Rx copy(*original);
    copy.tag = 2;
    EXPECT_EQ(emit(), (Calls{1, 1, 2, 2}));
    Rx assigned(log, 3);
    assigned = copy;
    assigned.tag = 3;
    original.reset();
    EXPECT_EQ(emit(), (Calls{2, 2, 3, 3}));
    signal.disconnect(&copy);
    EXPECT_EQ(emit(), (Calls{2, 3, 3}));
}
