#include <iModelStage/frame/iSimpleMapListPtr.h>

bool iSimpleMapListPtr::findkey(int code) const
{
    if (!items)
        return false;
    for (auto const& entry : *items)
        if (entry.second == code)
            return true;
    return false;
}

std::string iSimpleMapListPtr::getStrAt(int code) const
{
    if (!items)
        return std::string();
    for (auto const& entry : *items)
        if (entry.second == code)
            return entry.first;
    return std::string();
}
