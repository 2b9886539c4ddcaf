#ifndef IMODELSTAGE_FRAME_IPOINTERCOUNTS_H
#define IMODELSTAGE_FRAME_IPOINTERCOUNTS_H

#include <iModelStage/frame/iPointerTable.h>

// A count per pointer, without an allocation per entry. A handful of
// entries (what most receivers hold) live in place; more move to an
// open-addressed table laid out as iPointerTable describes. Signal receivers
// keep their senders here, one count per connection, and a model holds two
// per object, so both the small and the very large case matter.
template <unsigned KeyAlign = 0, unsigned RunBits = 6>
class iPointerCountsOf {
public:
    std::size_t size() const { return m_table.size(); }
    bool empty() const { return m_table.empty(); }

    int count(void const* key) const
    {
        int const* value = m_table.find(key);
        return value ? *value : 0;
    }

    // One more for key.
    void add(void const* key) { ++*m_table.insert(key, 0).first; }

    // One fewer for key; the entry goes at zero. False when key is absent.
    bool remove(void const* key)
    {
        int* value = m_table.find(key);
        if (!value)
            return false;
        if (--*value == 0)
            m_table.erase(key);
        return true;
    }

    void clear() { m_table.clear(); }
    void swap(iPointerCountsOf& other) noexcept { m_table.swap(other.m_table); }

    template <class Visit>
    void forEach(Visit visit) const
    {
        m_table.forEach(visit);
    }

private:
    iPointerTable<int, 4, KeyAlign, RunBits> m_table;
};

// For keys handed out one after another, such as ids.
typedef iPointerCountsOf<> iPointerCounts;

// For addresses inside objects allocated one after another: 8-byte keys in
// runs of a megabyte.
typedef iPointerCountsOf<3, 20> iAddressCounts;

#endif
