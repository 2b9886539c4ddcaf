#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRYEVALUATOROBJECT_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRYEVALUATOROBJECT_H

#include <iModelStage/frame/iObjectMacros.h>

class iGeometricGroup;
class iLayersManager;

// Base of the application's evaluators: area, volume and load of one
// geometric object. Registered per document class with
// iGeometryEvaluator::registerNewEvaluator; the base answers 0.
class IMODELSTAGE_EXPORT iGeometryEvaluatorObject : public iRoot {
    I_CLASS(iGeometryEvaluatorObject, iRoot, 1)
public:
    iGeometryEvaluatorObject();
    ~iGeometryEvaluatorObject() override;

    virtual double _computeAreaImpl(iLayersManager* layersManager, iGeometricGroup* group);
    virtual double _computeVolumeImpl(iLayersManager* layersManager, iGeometricGroup* group);
    virtual double _computeLoadImpl(iLayersManager* layersManager, iGeometricGroup* group);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}
};

#endif
