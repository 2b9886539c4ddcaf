#pragma once

#include <iModelStage/reporting/iExceptionManagerInterface.h>

#include <QWidget>

#include <vector>

class QTreeWidget;
class iExceptionBlock;
class iLayersManager;

// The check report: runs the checks registered with the library over the
// document and lists what they found, by check, with the object each item
// is about; a double click selects that object.
class wbCheckReport : public QWidget, public iExceptionManagerInterface {
    Q_OBJECT
public:
    wbCheckReport(iLayersManager* document, QWidget* parent = nullptr);

    void runChecks();
    QTreeWidget* list() const { return m_list; }

    void start(std::string const& title) override;
    void end() override;
    void clear() override;
    void handleBlock(iExceptionBlock* block) override;

private:
    iLayersManager* m_document;
    QTreeWidget* m_list;
    std::vector<iExceptionBlock*> m_blocks;
};
