#ifndef IMODELSTAGE_FRAME_ISTARTUP_H
#define IMODELSTAGE_FRAME_ISTARTUP_H

#include <iModelStage/frame/iExport.h>

// Registers the stream handlers of the default value types, "iMapList" and
// "iColor4". Acts once per process.
IMODELSTAGE_EXPORT void iModelStage_initDefaultTypesIOHandler();

// The library's start-up routine. It runs by itself once the library is
// loaded, after every class has registered; later calls do nothing.
IMODELSTAGE_EXPORT void iModelStage_startUp();

#endif
