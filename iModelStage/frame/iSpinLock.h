#ifndef IMODELSTAGE_FRAME_ISPINLOCK_H
#define IMODELSTAGE_FRAME_ISPINLOCK_H

#include <atomic>
#include <thread>

// A lock for tables that the host's user-interface thread takes and gives
// back many times per object, almost never against another thread: an
// uncontended flag costs a fraction of a system mutex. A waiting thread
// yields. Not recursive.
class iSpinLock {
public:
    void lock()
    {
        while (m_flag.test_and_set(std::memory_order_acquire))
            std::this_thread::yield();
    }
    void unlock() { m_flag.clear(std::memory_order_release); }

private:
    std::atomic_flag m_flag = ATOMIC_FLAG_INIT;
};

#endif
