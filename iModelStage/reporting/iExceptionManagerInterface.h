#ifndef IMODELSTAGE_REPORTING_IEXCEPTIONMANAGERINTERFACE_H
#define IMODELSTAGE_REPORTING_IEXCEPTIONMANAGERINTERFACE_H

#include <iModelStage/frame/iObjectMacros.h>

#include <string>

class iExceptionBlock;

// The receiver of the findings of document checks, implemented by the
// application. Every default does nothing.
class IMODELSTAGE_EXPORT iExceptionManagerInterface : public iRoot {
    I_CLASS(iExceptionManagerInterface, iRoot, 1)
public:
    virtual void start(std::string const& title);
    virtual void end();
    virtual void clear();
    virtual void handleBlock(iExceptionBlock* block);
};

#endif
