#ifndef IMODELSTAGE_FRAME_IPROPERTYCACHE_H
#define IMODELSTAGE_FRAME_IPROPERTYCACHE_H

#include <iModelStage/frame/iExport.h>

#include <atomic>
#include <forward_list>
#include <mutex>

class iClass;
class iProperty;

// The property record that one name stands for, per class, for a setter
// that runs many times on objects of few classes: the record of the class
// met last is found without a look-up. Each class's answer is looked up
// once, the ordinary way, and kept for the life of the process.
class IMODELSTAGE_EXPORT iPropertyCache {
public:
    iProperty const& find(iClass const& cls, char const* name)
    {
        Entry const* last = m_last.load(std::memory_order_acquire);
        if (last && last->cls == &cls)
            return *last->property;
        return refresh(cls, name);
    }

private:
    struct Entry {
        iClass const* cls;
        iProperty const* property;
    };

    iProperty const& refresh(iClass const& cls, char const* name);

    std::atomic<Entry const*> m_last{nullptr};
    std::mutex m_mutex;
    std::forward_list<Entry> m_entries;
};

#endif
