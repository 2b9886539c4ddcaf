#include <iModelStage/frame/iStringList.h>

iStringList::iStringList(std::list<std::string> const& items, int current) : items(items), current(current) {}

iStringList::iStringList(char** names, int count, int current) : current(current)
{
    for (int i = 0; names && i < count; ++i)
        items.push_back(names[i] ? names[i] : "");
}
