#ifndef IMODELSTAGE_REPORTING_IDBSCANNER_H
#define IMODELSTAGE_REPORTING_IDBSCANNER_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/model/NodeList.h>

#include <set>
#include <string>
#include <vector>

class iDBScannerHandler;
class iNodeLayer;

// The files to merge and the layers to take from them; the handler, which
// is not owned, does the work.
class IMODELSTAGE_EXPORT iDBScanner {
public:
    explicit iDBScanner(iDBScannerHandler* handler);

    // A path that is listed already is not added again.
    void addFilePath(std::string const& path);
    void setFilesPaths(std::vector<std::string> const& paths) { m_paths = paths; }
    std::vector<std::string> const& getFilesPaths() const { return m_paths; }
    void setLayerFilter(std::set<std::string> const& layers) { m_filter = layers; }
    std::set<std::string> const& getLayerFilter() const { return m_filter; }

    // Every listed file in turn; failures pass out to the caller.
    void collectObjects(iNodeLayer* target);
    void collectObjectsFromFile(std::string const& path, iNodeLayer* target);
    void addObjectsToDB(NodeList const& list);
    bool isValidFile(std::string const& path);

private:
    iDBScannerHandler* m_handler;
    std::vector<std::string> m_paths;
    std::set<std::string> m_filter;
};

#endif
