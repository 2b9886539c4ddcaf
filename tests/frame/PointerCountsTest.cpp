#include <iModelStage/frame/iPointerCounts.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>

namespace {

void const* key(std::uint64_t value)
{
    return reinterpret_cast<void const*>(static_cast<std::uintptr_t>(value));
}

// Compares the table with a plain map after a long run of random changes:
// inline storage, the spill to the open table, tombstones and rebuilds.
template <class Counts = iPointerCounts>
void checkAgainstMap(std::uint64_t stride)
{
    Counts table;
    std::map<std::uint64_t, int> expected;
    std::mt19937 random(7);
    for (int step = 0; step < 20000; ++step) {
        std::uint64_t const k = 2 + stride * (random() % 3000);
        if (random() % 3 == 0) {
            bool const present = expected.count(k) > 0;
            EXPECT_EQ(table.remove(key(k)), present);
            if (present && --expected[k] == 0)
                expected.erase(k);
        } else {
            table.add(key(k));
            ++expected[k];
        }
    }
    EXPECT_EQ(table.size(), expected.size());
    for (auto const& entry : expected)
        EXPECT_EQ(table.count(key(entry.first)), entry.second);
    std::size_t visited = 0;
    table.forEach([&](void const* k, int count) {
        ++visited;
        EXPECT_EQ(count, expected[reinterpret_cast<std::uintptr_t>(k)]);
    });
    EXPECT_EQ(visited, expected.size());
}

} // namespace

TEST(PointerCountsTest, MatchesAMapForDenseSparseAndCollidingKeys)
{
    checkAgainstMap(1);              // consecutive ids
    checkAgainstMap(8);              // aligned pointers
    checkAgainstMap(std::uint64_t(1) << 32); // keys that share all low bits
    // Address layout: keys packed within a run, one run a slot apart from the
    // next, and runs whose in-run offsets all coincide.
    checkAgainstMap<iAddressCounts>(8);
    checkAgainstMap<iAddressCounts>(1120);
    checkAgainstMap<iAddressCounts>(std::uint64_t(1) << 20);
    checkAgainstMap<iAddressCounts>(std::uint64_t(1) << 32);
}

TEST(PointerCountsTest, ReserveKeepsEntriesAndLeavesRoomForTheRest)
{
    iPointerTable<int, 2, 4, 20> table;
    table.insert(key(16), 1);
    table.insert(key(32), 2);
    table.reserve(1000); // spills the two in-place entries
    for (int i = 3; i <= 1000; ++i)
        EXPECT_TRUE(table.insert(key(16 * std::uint64_t(i)), i).second);
    EXPECT_FALSE(table.insert(key(32), 9).second);
    table.reserve(10); // never shrinks
    EXPECT_EQ(table.size(), 1000u);
    for (int i = 1; i <= 1000; ++i)
        ASSERT_EQ(*table.find(key(16 * std::uint64_t(i))), i);
}

TEST(PointerCountsTest, CopyMoveAndClear)
{
    iPointerCounts table;
    for (int i = 2; i < 40; ++i)
        table.add(key(i));
    table.add(key(5));
    iPointerCounts copy(table);
    EXPECT_EQ(copy.count(key(5)), 2);
    EXPECT_EQ(copy.size(), 38u);
    iPointerCounts moved(std::move(copy));
    EXPECT_EQ(moved.count(key(39)), 1);
    EXPECT_TRUE(copy.empty());
    moved.clear();
    EXPECT_TRUE(moved.empty());
    EXPECT_EQ(moved.count(key(5)), 0);
    moved.add(key(5));
    EXPECT_EQ(moved.count(key(5)), 1);
}
