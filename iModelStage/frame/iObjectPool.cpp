#include <iModelStage/frame/iObjectPool.h>

#include <iModelStage/frame/iSpinLock.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#define I_POOL_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define I_POOL_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#else
#define I_POOL_POISON(address, size) ((void)(address), (void)(size))
#define I_POOL_UNPOISON(address, size) ((void)(address), (void)(size))
#endif

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kSlabSize = std::size_t(1) << 16;
constexpr std::size_t kRegionSize = std::size_t(1) << 21;
constexpr std::size_t kClasses = iObjectPool::maxBlockSize / kGranule + 1;
constexpr std::size_t kWords = kSlabSize / kGranule / 64;

struct SizeClass;

// The head of a slab; its blocks follow, the n-th at blocks + n * size.
struct Slab {
    SizeClass* owner;
    std::uint32_t blockSize;
    std::uint32_t capacity;
    std::uint32_t used;
    // No free block lies in a word below this one.
    std::uint32_t firstFreeWord;
    std::uint64_t taken[kWords];

    static constexpr std::size_t headSize() { return (sizeof(Slab) + 63) / 64 * 64; }
    char* blocks() { return reinterpret_cast<char*>(this) + headSize(); }
    bool full() const { return used == capacity; }

    void reset(SizeClass* cls, std::size_t size)
    {
        owner = cls;
        blockSize = static_cast<std::uint32_t>(size);
        capacity = static_cast<std::uint32_t>((kSlabSize - headSize()) / size);
        used = 0;
        firstFreeWord = 0;
        std::fill(std::begin(taken), std::end(taken), 0);
    }

    void* take()
    {
        for (std::uint32_t w = firstFreeWord;; ++w) {
            std::uint64_t const free = ~taken[w];
            if (!free)
                continue;
            unsigned const bit = static_cast<unsigned>(__builtin_ctzll(free));
            std::uint32_t const index = w * 64 + bit;
            firstFreeWord = w;
            taken[w] |= std::uint64_t(1) << bit;
            ++used;
            return blocks() + std::size_t(index) * blockSize;
        }
    }

    void give(void* block)
    {
        std::uint32_t const index =
            static_cast<std::uint32_t>((static_cast<char*>(block) - blocks()) / blockSize);
        taken[index / 64] &= ~(std::uint64_t(1) << (index % 64));
        firstFreeWord = std::min(firstFreeWord, index / 64);
        --used;
    }
};

Slab* slabOf(void const* block)
{
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(kSlabSize - 1));
}

// The slabs of one block size in address order; those before `room` are
// full.
struct SizeClass {
    std::vector<Slab*> slabs;
    std::size_t room = 0;
};

bool lowerAddress(Slab const* a, Slab const* b)
{
    return std::less<Slab const*>()(a, b);
}

bool higherAddress(Slab const* a, Slab const* b)
{
    return std::less<Slab const*>()(b, a);
}

class Pool {
public:
    void* allocate(std::size_t size)
    {
        std::size_t const rounded = (std::max<std::size_t>(size, 1) + kGranule - 1) / kGranule * kGranule;
        std::lock_guard<iSpinLock> lock(m_lock);
        SizeClass& cls = m_classes[rounded / kGranule];
        while (cls.room < cls.slabs.size() && cls.slabs[cls.room]->full())
            ++cls.room;
        if (cls.room == cls.slabs.size()) {
            Slab* slab = freshSlab();
            slab->reset(&cls, rounded);
            auto at = std::lower_bound(cls.slabs.begin(), cls.slabs.end(), slab, lowerAddress);
            cls.room = std::min(cls.room, static_cast<std::size_t>(at - cls.slabs.begin()));
            cls.slabs.insert(at, slab);
        }
        void* block = cls.slabs[cls.room]->take();
        m_inUse += rounded;
        I_POOL_UNPOISON(block, size);
        return block;
    }

    void deallocate(void* block)
    {
        std::lock_guard<iSpinLock> lock(m_lock);
        Slab* slab = slabOf(block);
        SizeClass& cls = *slab->owner;
        bool const wasFull = slab->full();
        slab->give(block);
        m_inUse -= slab->blockSize;
        I_POOL_POISON(block, slab->blockSize);
        if (slab->used > 0 && !wasFull)
            return;
        auto at = std::lower_bound(cls.slabs.begin(), cls.slabs.end(), slab, lowerAddress);
        std::size_t const index = static_cast<std::size_t>(at - cls.slabs.begin());
        if (slab->used > 0) {
            cls.room = std::min(cls.room, index);
            return;
        }
        // An empty slab returns to the stock, for any size.
        cls.slabs.erase(at);
        if (index < cls.room)
            --cls.room;
        m_stock.insert(std::lower_bound(m_stock.begin(), m_stock.end(), slab, higherAddress), slab);
    }

    std::size_t inUse()
    {
        std::lock_guard<iSpinLock> lock(m_lock);
        return m_inUse;
    }

private:
    // The lowest slab of the stock, or the next one of the current region.
    Slab* freshSlab()
    {
        if (!m_stock.empty()) {
            Slab* slab = m_stock.back();
            m_stock.pop_back();
            return slab;
        }
        if (m_regionNext == m_regionEnd) {
            void* region = std::aligned_alloc(kSlabSize, kRegionSize);
            if (!region)
                throw std::bad_alloc();
            I_POOL_POISON(region, kRegionSize);
            m_regionNext = static_cast<char*>(region);
            m_regionEnd = m_regionNext + kRegionSize;
        }
        Slab* slab = reinterpret_cast<Slab*>(m_regionNext);
        m_regionNext += kSlabSize;
        I_POOL_UNPOISON(slab, Slab::headSize());
        return slab;
    }

    iSpinLock m_lock;
    SizeClass m_classes[kClasses];
    // Empty slabs, highest address first, so the lowest is taken first.
    std::vector<Slab*> m_stock;
    char* m_regionNext = nullptr;
    char* m_regionEnd = nullptr;
    std::size_t m_inUse = 0;
};

// Never destroyed: objects may be freed by other static destructors.
Pool& pool()
{
    static Pool* instance = new Pool;
    return *instance;
}

} // namespace

void* iObjectPool::allocate(std::size_t size)
{
    if (size > maxBlockSize)
        return ::operator new(size);
    return pool().allocate(size);
}

void iObjectPool::deallocate(void* block, std::size_t size)
{
    if (!block)
        return;
    if (size > maxBlockSize) {
        ::operator delete(block);
        return;
    }
    pool().deallocate(block);
}

std::size_t iObjectPool::bytesInUse()
{
    return pool().inUse();
}

bool iObjectPool::sameSlab(void const* a, void const* b)
{
    return slabOf(a) == slabOf(b);
}
