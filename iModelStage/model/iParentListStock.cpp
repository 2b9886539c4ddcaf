#include <iModelStage/model/iParentListStock.h>

#include <vector>

namespace {

// Lists kept at most per thread; a larger document allocates the rest.
constexpr std::size_t kMaxLists = std::size_t(1) << 20;

struct Stock {
    ~Stock();
    std::vector<osg::Node::ParentList> lists;
};

// Whether this thread's stock is not made yet, in use, or already gone:
// objects destroyed after the thread's own objects find no stock.
enum class State : unsigned char { None, Alive, Gone };
thread_local State state = State::None;
thread_local Stock stock;

Stock::~Stock()
{
    state = State::Gone;
}

Stock* current()
{
    if (state == State::Gone)
        return nullptr;
    state = State::Alive;
    return &stock;
}

} // namespace

void iParentListStock::give(osg::Node::ParentList& list)
{
    if (list.capacity() == 0)
        return;
    Stock* s = current();
    if (!s || s->lists.size() >= kMaxLists)
        return;
    list.clear();
    s->lists.emplace_back();
    s->lists.back().swap(list);
}

void iParentListStock::take(osg::Node::ParentList& list)
{
    Stock* s = current();
    if (!s || s->lists.empty() || list.capacity() > 0)
        return;
    list.swap(s->lists.back());
    s->lists.pop_back();
}
