#include <iModelStage/frame/iIdCounts.h>

iIdCounts::Page* iIdCounts::find(unsigned long index) const
{
    if (m_lastPage && m_lastIndex == index)
        return m_lastPage;
    auto it = m_pages.find(index);
    if (it == m_pages.end())
        return nullptr;
    m_lastIndex = index;
    m_lastPage = it->second.get();
    return m_lastPage;
}

int iIdCounts::count(long id) const
{
    Page const* page = find(pageOf(id));
    return page ? static_cast<int>(page->counts[slotOf(id)]) : 0;
}

void iIdCounts::add(long id)
{
    unsigned long const index = pageOf(id);
    Page* page = find(index);
    if (!page) {
        page = (m_pages[index] = std::make_unique<Page>()).get();
        m_lastIndex = index;
        m_lastPage = page;
    }
    std::uint32_t& count = page->counts[slotOf(id)];
    if (count++ == 0) {
        ++page->used;
        ++m_size;
    }
}

bool iIdCounts::remove(long id)
{
    unsigned long const index = pageOf(id);
    Page* page = find(index);
    if (!page)
        return false;
    std::uint32_t& count = page->counts[slotOf(id)];
    if (count == 0)
        return false;
    if (--count > 0)
        return true;
    --m_size;
    if (--page->used == 0) {
        if (m_lastPage == page)
            m_lastPage = nullptr;
        m_pages.erase(index);
    }
    return true;
}
