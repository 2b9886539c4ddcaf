#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICGROUPCALLBACK_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICGROUPCALLBACK_H

#include <iModelStage/frame/iObjectMacros.h>

class iGeometricGroup;
class iGeometricsLayer;

// Deferred work that the geometrics layer runs when a group finalizes.
// Subclasses override the three implementation hooks.
class IMODELSTAGE_EXPORT iGeometricGroupCallback : public iRoot {
    I_CLASS(iGeometricGroupCallback, iRoot, 1)
public:
    iGeometricGroupCallback() = default;
    ~iGeometricGroupCallback() override = default;

    // Runs finalizeImplementation with the group's finalized signal blocked
    // or not as block says, and puts its previous state back afterwards.
    void finalize(iGeometricsLayer* layer, iGeometricGroup* group, bool block);

    virtual void finalizeImplementation(iGeometricsLayer*, iGeometricGroup*) {}
    virtual void beginFinalizeImplementation(iGeometricsLayer*, iGeometricGroup*) {}
    virtual void endFinalizeImplementation(iGeometricsLayer*, iGeometricGroup*) {}

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    void beginFinalizing(iGeometricsLayer* layer, iGeometricGroup* group) { beginFinalizeImplementation(layer, group); }
    void endFinalizing(iGeometricsLayer* layer, iGeometricGroup* group) { endFinalizeImplementation(layer, group); }
};

#endif
