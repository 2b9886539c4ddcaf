#include <iModelStage/frame/iPropertyCache.h>

#include <iModelStage/frame/iClass.h>

iProperty const& iPropertyCache::refresh(iClass const& cls, char const* name)
{
    // A name the class does not have is reported by the look-up itself,
    // every time, as without the cache.
    iProperty const& property = cls.getProperty(name, true);
    std::lock_guard<std::mutex> lock(m_mutex);
    for (Entry const& entry : m_entries) {
        if (entry.cls == &cls) {
            m_last.store(&entry, std::memory_order_release);
            return *entry.property;
        }
    }
    m_entries.push_front(Entry{&cls, &property});
    m_last.store(&m_entries.front(), std::memory_order_release);
    return property;
}
