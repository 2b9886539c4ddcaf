#ifndef IMODELSTAGE_FRAME_ISIMPLEMAPLISTPTR_H
#define IMODELSTAGE_FRAME_ISIMPLEMAPLISTPTR_H

#include <iModelStage/frame/iExport.h>

#include <map>
#include <string>

// A choice among named integer codes held elsewhere and shared; it does
// not own them.
class IMODELSTAGE_EXPORT iSimpleMapListPtr {
public:
    iSimpleMapListPtr() = default;
    iSimpleMapListPtr(std::map<std::string, int> const* items, int current) : items(items), current(current) {}

    // Whether code is among the codes; false without a map.
    bool findkey(int code) const;
    // The first name, in key order, with that code; empty when none.
    std::string getStrAt(int code) const;

    bool operator!=(iSimpleMapListPtr const& other) const
    {
        return items != other.items || current != other.current;
    }
    bool operator==(iSimpleMapListPtr const& other) const { return !(*this != other); }

    std::map<std::string, int> const* items = nullptr;
    int current = 0;
};

#endif
