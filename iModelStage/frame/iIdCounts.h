#ifndef IMODELSTAGE_FRAME_IIDCOUNTS_H
#define IMODELSTAGE_FRAME_IIDCOUNTS_H

#include <iModelStage/frame/iExport.h>

#include <cstdint>
#include <memory>
#include <unordered_map>

// A count per unique id: how many live objects hold it (a copy shares the
// id of its source until it is re-keyed).
//
// Ids come out of a counter, so the live ones lie packed in a few ranges.
// Counts are kept in pages of 64 consecutive ids, found through a table of
// pages, with the page met last at hand: reading a document touches the
// ids in order. A page goes when its last id does, so scattered ids cost a
// page each and no more.
class IMODELSTAGE_EXPORT iIdCounts {
public:
    iIdCounts() = default;
    iIdCounts(iIdCounts const&) = delete;
    iIdCounts& operator=(iIdCounts const&) = delete;

    int count(long id) const;
    void add(long id);
    // False when the id had no count.
    bool remove(long id);
    // Ids with a count.
    std::size_t size() const { return m_size; }

private:
    static constexpr unsigned kPageBits = 6;
    struct Page {
        std::uint32_t counts[1u << kPageBits] = {};
        unsigned used = 0;
    };

    static unsigned long pageOf(long id) { return static_cast<unsigned long>(id) >> kPageBits; }
    static unsigned slotOf(long id) { return static_cast<unsigned>(id) & ((1u << kPageBits) - 1); }
    Page* find(unsigned long index) const;

    std::unordered_map<unsigned long, std::unique_ptr<Page>> m_pages;
    mutable unsigned long m_lastIndex = 0;
    mutable Page* m_lastPage = nullptr;
    std::size_t m_size = 0;
};

#endif
