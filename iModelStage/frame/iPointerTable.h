#ifndef IMODELSTAGE_FRAME_IPOINTERTABLE_H
#define IMODELSTAGE_FRAME_IPOINTERTABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

// A map from pointer to value without an allocation per entry. Up to
// InlineCapacity entries live in place and are found by a scan; more move
// to an open-addressed table with linear probing. Entries come back in no
// particular order. Null and the address 1 are reserved and cannot be keys.
//
// Keys within one aligned run of 2^RunBits bytes take consecutive slots, one
// slot per 2^KeyAlign bytes, and the runs are spread over the table by a
// hash. Keys met in address order (ids handed out one after another, objects
// allocated one after another) then fill the table in order instead of
// jumping about it, which is what large tables spend their time on. Keys
// must be at least 2^KeyAlign bytes apart, and should be sparse within a run:
// a run packed with keys is one long cluster for the keys of other runs.
template <class Value, std::size_t InlineCapacity, unsigned KeyAlign = 0, unsigned RunBits = 6>
class iPointerTable {
    static_assert(KeyAlign < RunBits && RunBits < 32, "a run holds at least two keys");

public:
    iPointerTable() = default;
    iPointerTable(iPointerTable const& other) { *this = other; }
    iPointerTable& operator=(iPointerTable const& other)
    {
        if (this == &other)
            return *this;
        clear();
        other.forEach([this](void const* key, Value const& value) { insert(key, value); });
        return *this;
    }
    iPointerTable(iPointerTable&& other) noexcept { swap(other); }
    iPointerTable& operator=(iPointerTable&& other) noexcept
    {
        if (this != &other) {
            clear();
            swap(other);
        }
        return *this;
    }

    void swap(iPointerTable& other) noexcept
    {
        std::swap(m_inline, other.m_inline);
        std::swap(m_inlineSize, other.m_inlineSize);
        std::swap(m_table, other.m_table);
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_used, other.m_used);
        std::swap(m_size, other.m_size);
        std::swap(m_shift, other.m_shift);
    }

    std::size_t size() const { return m_table ? m_size : m_inlineSize; }
    bool empty() const { return size() == 0; }
    bool contains(void const* key) const { return find(key) != nullptr; }

    Value* find(void const* key)
    {
        return const_cast<Value*>(static_cast<iPointerTable const*>(this)->find(key));
    }

    Value const* find(void const* key) const
    {
        Entry const* entry = findEntry(key);
        return entry ? &entry->value : nullptr;
    }

    // The stored value and true, or the one already there and false.
    std::pair<Value*, bool> insert(void const* key, Value const& value)
    {
        if (Value* present = find(key))
            return {present, false};
        if constexpr (InlineCapacity > 0) {
            if (!m_table && m_inlineSize < InlineCapacity) {
                m_inline[m_inlineSize] = Entry{key, value};
                return {&m_inline[m_inlineSize++].value, true};
            }
        }
        if (!m_table)
            spill();
        return {&insertNew(key, value)->value, true};
    }

    bool erase(void const* key)
    {
        Entry* entry = const_cast<Entry*>(findEntry(key));
        if (!entry)
            return false;
        if (m_table) {
            entry->key = tombstone();
            --m_size;
            return true;
        }
        if constexpr (InlineCapacity > 0)
            *entry = m_inline[--m_inlineSize];
        return true;
    }

    // Room for count entries in all without a rebuild on the way.
    void reserve(std::size_t count)
    {
        if (count <= InlineCapacity || count <= m_capacity / 2)
            return;
        std::size_t capacity = 16;
        while (capacity / 2 < count)
            capacity *= 2;
        if (!m_table)
            spill();
        rebuild(capacity);
    }

    void clear()
    {
        m_table.reset();
        m_capacity = m_used = m_size = 0;
        m_inlineSize = 0;
    }

    template <class Visit>
    void forEach(Visit visit) const
    {
        if (!m_table) {
            if constexpr (InlineCapacity > 0)
                for (std::size_t i = 0; i < m_inlineSize; ++i)
                    visit(m_inline[i].key, m_inline[i].value);
            return;
        }
        for (std::size_t i = 0; i < m_capacity; ++i)
            if (isKey(m_table[i].key))
                visit(m_table[i].key, m_table[i].value);
    }

private:
    struct Entry {
        void const* key;
        Value value;
    };

    static void const* tombstone() { return reinterpret_cast<void const*>(std::uintptr_t(1)); }
    static bool isKey(void const* key) { return key && key != tombstone(); }

    std::size_t slotOf(void const* key) const
    {
        // Fibonacci hashing spreads the runs: its top bits depend on every
        // bit of the run number.
        std::uint64_t const k = std::uint64_t(reinterpret_cast<std::uintptr_t>(key));
        std::uint64_t const run = (k >> RunBits) * 0x9E3779B97F4A7C15ull;
        std::uint64_t const inRun = (k >> KeyAlign) & ((std::uint64_t(1) << (RunBits - KeyAlign)) - 1);
        return static_cast<std::size_t>((run >> m_shift) + inRun) & (m_capacity - 1);
    }

    Entry const* findEntry(void const* key) const
    {
        if (!m_table) {
            if constexpr (InlineCapacity > 0)
                for (std::size_t i = 0; i < m_inlineSize; ++i)
                    if (m_inline[i].key == key)
                        return &m_inline[i];
            return nullptr;
        }
        for (std::size_t i = slotOf(key);; i = (i + 1) & (m_capacity - 1)) {
            Entry const& entry = m_table[i];
            if (entry.key == key)
                return &entry;
            if (!entry.key)
                return nullptr;
        }
    }

    void spill()
    {
        rebuild(16);
        if constexpr (InlineCapacity > 0)
            for (std::size_t i = 0; i < m_inlineSize; ++i)
                insertNew(m_inline[i].key, m_inline[i].value);
        m_inlineSize = 0;
    }

    Entry* insertNew(void const* key, Value const& value)
    {
        // Keep at least a quarter of the slots truly empty, so that every
        // probe ends; tombstones count as used until the next rebuild.
        if ((m_used + 1) * 4 > m_capacity * 3)
            rebuild(m_size * 2 + 16 > m_capacity ? m_capacity * 2 : m_capacity);
        for (std::size_t i = slotOf(key);; i = (i + 1) & (m_capacity - 1)) {
            Entry& entry = m_table[i];
            if (entry.key && entry.key != tombstone())
                continue;
            if (!entry.key)
                ++m_used;
            entry = Entry{key, value};
            ++m_size;
            return &entry;
        }
    }

    void rebuild(std::size_t capacity)
    {
        std::unique_ptr<Entry[]> old = std::move(m_table);
        std::size_t const oldCapacity = m_capacity;
        m_table.reset(new Entry[capacity]());
        m_capacity = capacity;
        m_shift = 64;
        for (std::size_t c = capacity; c > 1; c >>= 1)
            --m_shift;
        m_used = m_size = 0;
        for (std::size_t i = 0; i < oldCapacity; ++i)
            if (isKey(old[i].key))
                insertNew(old[i].key, old[i].value);
    }

    std::array<Entry, InlineCapacity> m_inline{};
    std::size_t m_inlineSize = 0;
    std::unique_ptr<Entry[]> m_table;
    std::size_t m_capacity = 0;
    std::size_t m_used = 0;
    std::size_t m_size = 0;
    unsigned m_shift = 64;
};

#endif
