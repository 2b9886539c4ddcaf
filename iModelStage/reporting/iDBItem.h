#ifndef IMODELSTAGE_REPORTING_IDBITEM_H
#define IMODELSTAGE_REPORTING_IDBITEM_H

#include <iModelStage/frame/iExport.h>

#include <string>

// What a scanner handler may note of an object found in a file: where its
// record starts, its name, its layer, and one text of the handler's own.
class IMODELSTAGE_EXPORT iDBItem {
public:
    iDBItem() = default;
    iDBItem(long offset, std::string const& name, std::string const& layerId, std::string const& extra = std::string())
        : m_offset(offset), m_name(name), m_layerId(layerId), m_extra(extra)
    {
    }

    long getOffset() const { return m_offset; }
    std::string const& getName() const { return m_name; }
    std::string const& getLayerId() const { return m_layerId; }
    std::string const& getExtra() const { return m_extra; }

private:
    long m_offset = 0;
    std::string m_name;
    std::string m_layerId;
    std::string m_extra;
};

#endif
