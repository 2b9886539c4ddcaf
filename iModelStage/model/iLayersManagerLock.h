#ifndef IMODELSTAGE_MODEL_ILAYERSMANAGERLOCK_H
#define IMODELSTAGE_MODEL_ILAYERSMANAGERLOCK_H

#include <iModelStage/frame/iExport.h>

#include <string>

// Holds the current layer for its lifetime: setCurrentLayer refuses, and
// the layer current at the start is set again at the end.
class IMODELSTAGE_EXPORT iLayersManagerLock {
public:
    iLayersManagerLock();
    ~iLayersManagerLock();
    iLayersManagerLock(iLayersManagerLock const&) = default;
    iLayersManagerLock& operator=(iLayersManagerLock const&) = default;

private:
    bool _previous;
    std::string _layerName;
};

#endif
