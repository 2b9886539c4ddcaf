#ifndef IMODELSTAGE_FRAME_IOBJECTPOOL_H
#define IMODELSTAGE_FRAME_IOBJECTPOOL_H

#include <iModelStage/frame/iExport.h>

#include <cstddef>

// Keeps document objects and their data blocks together in memory, whatever
// the host allocates around them.
//
// Blocks are cut from slabs of 64 KiB, one block size per slab, in sizes
// rounded up to 16 bytes; larger requests go to the global allocator. A new
// block is always the lowest free one of the lowest slab of its size that
// has room, and a slab whose last block is freed goes back to a shared
// stock from which the lowest slab is taken first. So a document that is
// emptied and read again lies in reading order, slab after slab, however
// its first copy was scattered. Slabs are never returned to the system: the
// pool keeps its peak, to serve the next document.
//
// Classes take part through class-specific operator new and delete:
//
//     static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
//     static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }
//
// The size given back must be the size that was asked for, which a sized
// class-specific delete receives through a virtual destructor. Thread-safe.
class IMODELSTAGE_EXPORT iObjectPool {
public:
    static constexpr std::size_t maxBlockSize = 4096;

    static void* allocate(std::size_t size);
    static void deallocate(void* block, std::size_t size);

    // Bytes of the blocks handed out and not given back, rounded sizes.
    static std::size_t bytesInUse();
    // Whether two blocks lie in one slab.
    static bool sameSlab(void const* a, void const* b);
};

#endif
