#ifndef IMODELSTAGE_REPORTING_IDBSCANNERHANDLER_H
#define IMODELSTAGE_REPORTING_IDBSCANNERHANDLER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/NodeList.h>

#include <set>
#include <string>

class iInStream;
class iNodeLayer;

// Merges objects out of other document files into the open document. The
// file is read layer by layer into scratch layers, never into the
// document's own; objects are handed over with new ids, as one undo step.
// A host may derive to read files of its own kind.
class IMODELSTAGE_EXPORT iDBScannerHandler : public iRoot {
    I_CLASS(iDBScannerHandler, iRoot, 1)
public:
    // The file's objects of the registered layers that filter names (all
    // of them for an empty filter) go into target, top objects with their
    // subtrees. A file that is not a document, or does not end where it
    // says, throws "Invalid file" as char const*; objects added before
    // stay in target.
    virtual void collectObjects(iInStream& in, iNodeLayer* target, std::string const& path,
                                std::set<std::string> const& filter);
    // Whether path names a document file; never throws.
    virtual bool isValidFile(std::string const& path);
    // Clones the objects into the layers they came from, with new ids and
    // their own names; references among them follow to the new ids.
    virtual void addObjectsToDB(NodeList const& list);
};

#endif
