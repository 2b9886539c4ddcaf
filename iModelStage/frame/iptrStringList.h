#ifndef IMODELSTAGE_FRAME_IPTRSTRINGLIST_H
#define IMODELSTAGE_FRAME_IPTRSTRINGLIST_H

#include <list>
#include <string>

// A choice among strings held elsewhere and shared; it does not own them.
class iptrStringList {
public:
    iptrStringList() = default;
    iptrStringList(std::list<std::string>* items, int current) : items(items), current(current) {}

    bool operator!=(iptrStringList const& other) const { return items != other.items || current != other.current; }
    bool operator==(iptrStringList const& other) const { return !(*this != other); }

    std::list<std::string>* items = nullptr;
    int current = 0;
};

#endif
