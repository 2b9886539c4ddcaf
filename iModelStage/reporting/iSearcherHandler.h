#ifndef IMODELSTAGE_REPORTING_ISEARCHERHANDLER_H
#define IMODELSTAGE_REPORTING_ISEARCHERHANDLER_H

#include <iModelStage/frame/iExport.h>

// Base of the application's hooks on the search box; it has nothing of
// its own.
class IMODELSTAGE_EXPORT iSearcherHandler {
public:
    iSearcherHandler();
    virtual ~iSearcherHandler();
};

#endif
