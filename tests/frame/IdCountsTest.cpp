#include <iModelStage/frame/iIdCounts.h>

#include <gtest/gtest.h>

TEST(IdCountsTest, CountsHoldersPerIdAcrossPagesAndForgetsEmptiedOnes)
{
    iIdCounts counts;
    EXPECT_EQ(counts.count(5), 0);
    EXPECT_FALSE(counts.remove(5));
    // Packed ids, a page boundary between 63 and 64, and far ones.
    for (long id : {1L, 2L, 63L, 64L, 65L, 1000000L, 0x7fffffffL})
        counts.add(id);
    counts.add(64); // a copy shares the id of its source
    EXPECT_EQ(counts.size(), 7u);
    EXPECT_EQ(counts.count(64), 2);
    EXPECT_EQ(counts.count(63), 1);
    EXPECT_EQ(counts.count(62), 0);
    EXPECT_EQ(counts.count(0x7fffffffL), 1);

    EXPECT_TRUE(counts.remove(64));
    EXPECT_EQ(counts.count(64), 1);
    EXPECT_TRUE(counts.remove(64));
    EXPECT_FALSE(counts.remove(64));
    EXPECT_EQ(counts.size(), 6u);
    // A page emptied and filled again, with the last page looked at first.
    EXPECT_TRUE(counts.remove(65));
    EXPECT_EQ(counts.count(65), 0);
    counts.add(65);
    EXPECT_EQ(counts.count(65), 1);
    for (long id : {1L, 2L, 63L, 65L, 1000000L, 0x7fffffffL})
        EXPECT_TRUE(counts.remove(id));
    EXPECT_EQ(counts.size(), 0u);
    EXPECT_EQ(counts.count(1), 0);
}
