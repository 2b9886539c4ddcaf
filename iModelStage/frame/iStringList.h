#ifndef IMODELSTAGE_FRAME_ISTRINGLIST_H
#define IMODELSTAGE_FRAME_ISTRINGLIST_H

#include <iModelStage/frame/iExport.h>

#include <list>
#include <string>

// A choice among strings: the items and the index of the current one.
class IMODELSTAGE_EXPORT iStringList {
public:
    iStringList() = default;
    explicit iStringList(std::list<std::string> const& items, int current = 0);
    // count strings from names; a null array gives no items.
    iStringList(char** names, int count, int current);

    bool operator!=(iStringList const& other) const { return current != other.current || items != other.items; }
    bool operator==(iStringList const& other) const { return !(*this != other); }

    std::list<std::string> items;
    int current = 0;
};

#endif
