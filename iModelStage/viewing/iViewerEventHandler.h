#ifndef IMODELSTAGE_VIEWING_IVIEWEREVENTHANDLER_H
#define IMODELSTAGE_VIEWING_IVIEWEREVENTHANDLER_H

#include <iModelStage/frame/iExport.h>

// Where input meets the document: the handler a host attaches to each
// viewer. For now it holds the process-wide switches that the tools read.
class IMODELSTAGE_EXPORT iViewerEventHandler {
public:
    // Whether odd steps of a snapping tool are held to the axes of the
    // input plane, through the last released point.
    static bool getOrthoEnabled();
    static void setOrthoEnabled(bool on);

private:
    static bool orthoenabled;
};

#endif
