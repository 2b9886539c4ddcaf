#include <iModelStage/frame/iObjectPool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

namespace {

// A size no class of the library has, so that other tests' blocks do not
// share its slabs.
constexpr std::size_t kSize = 4000;

} // namespace

TEST(ObjectPoolTest, BlocksFreedInAnyOrderComeBackInAddressOrder)
{
    std::size_t const before = iObjectPool::bytesInUse();
    std::vector<void*> blocks;
    for (int i = 0; i < 50; ++i)
        blocks.push_back(iObjectPool::allocate(kSize - static_cast<std::size_t>(i % 3)));
    EXPECT_EQ(iObjectPool::bytesInUse() - before, 50 * kSize);
    EXPECT_TRUE(std::is_sorted(blocks.begin(), blocks.end(), std::less<void*>()));
    EXPECT_TRUE(iObjectPool::sameSlab(blocks[0], blocks[1]));
    for (std::size_t i = 1; i < blocks.size(); ++i)
        EXPECT_NE(blocks[i], blocks[i - 1]);

    // Free a few from the middle: the next blocks fill those holes first,
    // lowest first.
    std::vector<void*> holes{blocks[30], blocks[7], blocks[19]};
    for (void* hole : holes)
        iObjectPool::deallocate(hole, kSize);
    std::sort(holes.begin(), holes.end(), std::less<void*>());
    for (void* hole : holes)
        EXPECT_EQ(iObjectPool::allocate(kSize), hole);

    // All freed in scrambled order, then taken again: in address order.
    std::shuffle(blocks.begin(), blocks.end(), std::mt19937(3));
    for (void* block : blocks)
        iObjectPool::deallocate(block, kSize);
    EXPECT_EQ(iObjectPool::bytesInUse(), before);
    std::vector<void*> again;
    for (int i = 0; i < 50; ++i)
        again.push_back(iObjectPool::allocate(kSize));
    EXPECT_TRUE(std::is_sorted(again.begin(), again.end(), std::less<void*>()));
    for (void* block : again)
        iObjectPool::deallocate(block, kSize);
}

TEST(ObjectPoolTest, LargeBlocksGoToTheGlobalAllocator)
{
    std::size_t const before = iObjectPool::bytesInUse();
    void* large = iObjectPool::allocate(iObjectPool::maxBlockSize + 1);
    EXPECT_EQ(iObjectPool::bytesInUse(), before);
    static_cast<char*>(large)[iObjectPool::maxBlockSize] = 1;
    iObjectPool::deallocate(large, iObjectPool::maxBlockSize + 1);
    iObjectPool::deallocate(nullptr, 16);
}
