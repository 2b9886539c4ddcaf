#ifndef IMODELSTAGE_REPORTING_IEXCEPTIONBLOCK_H
#define IMODELSTAGE_REPORTING_IEXCEPTIONBLOCK_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/reporting/iExceptionItem.h>

#include <string>
#include <vector>

// One check over a document. A host derives from it, registers the class
// with iExceptionManager under a key, and does the check in
// handleExceptions, pushing an item per finding; the interface that shows
// the findings hears the block's signals.
class IMODELSTAGE_EXPORT iExceptionBlock : public iRoot {
    I_CLASS(iExceptionBlock, iRoot, 1)
public:
    iExceptionBlock() = default;
    ~iExceptionBlock() override = default;

    sigslot::signal1<iExceptionItem&> sigItemPushed;
    sigslot::signal1<int> sigNumSteps;
    sigslot::signal1<std::string const&> sigText;
    sigslot::signal0<> sigBegin;
    sigslot::signal1<int> sigValue;
    sigslot::signal0<> sigEnd;
    sigslot::signal0<> sigCanceled;

    // The check itself.
    virtual void handleExceptions() { }
    virtual std::string getTitle() { return std::string(); }

    // Keeps a copy of the item, counted by its level.
    void pushItem(iExceptionItem& item);
    void begin() { sigBegin(); }
    void end() { sigEnd(); }
    void setNumSteps(int steps) { sigNumSteps(steps); }
    void setValue(int value) { sigValue(value); }
    void setText(std::string const& text) { sigText(text); }
    // Records the cancellation as an error item.
    void cancel(bool);
    bool isCanceled() const { return m_canceled; }

    std::vector<iExceptionItem> const& getItems() const { return m_items; }
    int getNumItems() const { return static_cast<int>(m_items.size()); }
    int getNumErrors() const { return m_errors; }
    int getNumWarnings() const { return m_warnings; }
    int getNumInformations() const { return m_informations; }
    iRoot* getDataObject() const { return m_data; }
    void setDataObject(iRoot* data) { m_data = data; }

private:
    std::vector<iExceptionItem> m_items;
    int m_errors = 0;
    int m_warnings = 0;
    int m_informations = 0;
    bool m_canceled = false;
    iRoot* m_data = nullptr;
};

#endif
