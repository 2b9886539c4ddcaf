#ifndef IMODELSTAGE_REPORTING_ISEARCHER_H
#define IMODELSTAGE_REPORTING_ISEARCHER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/reporting/iSearcherItem.h>

#include <list>
#include <string>

class iLayersManager;

// The search box: a text is split into words at blanks, and a layer, an
// object or a tool is a hit when its label contains every word, in any
// order and case. No words match everything.
class IMODELSTAGE_EXPORT iSearcher : public iRoot {
    I_CLASS(iSearcher, iRoot, 1)
public:
    iSearcher();
    ~iSearcher() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    // Hits in order: layers by name, objects layer by layer in walk order,
    // tools by class name. True when there is at least one. A null manager
    // means the document's.
    bool search(iLayersManager* manager, std::string const& text, std::list<iSearcherItem>& out);

    static bool matches(std::string const& candidate, std::string const& text);
};

#endif
