#ifndef IMODELSTAGE_FRAME_IMAPLIST_H
#define IMODELSTAGE_FRAME_IMAPLIST_H

#include <iModelStage/frame/iExport.h>

#include <map>
#include <string>

// A choice among named integer codes. Maps can be registered under a name
// once per process, so that later lists are built from the name alone.
class IMODELSTAGE_EXPORT iMapList {
public:
    iMapList() = default;
    // The items of the map registered under that name; an unknown name
    // gives an empty list whose current value is not set.
    iMapList(int current, std::string const& registeredName);
    // Each name is translated and entered with its code; the map is then
    // registered under registeredName, if one is given.
    iMapList(char const** names, int* codes, int count, int current, std::string const& registeredName);
    iMapList(std::map<std::string, int> const& items, int current, std::string const& registeredName);

    // False, changing nothing, when the name is taken already.
    static bool registerMapList(std::map<std::string, int> const& items, std::string const& name);

    bool findkey(int code) const;
    std::string getStrAt(int code) const;

    bool operator!=(iMapList const& other) const { return current != other.current || items != other.items; }
    bool operator==(iMapList const& other) const { return !(*this != other); }

    std::map<std::string, int> items;
    int current = 0;

protected:
    static std::map<std::string, int> const* findRegisteredMap(std::string const& name);
};

#endif
