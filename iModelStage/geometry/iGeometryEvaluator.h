#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRYEVALUATOR_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRYEVALUATOR_H

#include <iModelStage/frame/iExport.h>

#include <osg/ref_ptr>

#include <memory>

class iGeometricGroup;
class iGeometryEvaluatorObject;
class iLayersManager;

// Asks the evaluator registered for a group's class (or, failing that, for
// its nearest registered ancestor) for area, volume and load. A plain
// value: copies share the one evaluator instance, which goes with the last
// of them.
class IMODELSTAGE_EXPORT iGeometryEvaluator {
public:
    // group must not be null.
    explicit iGeometryEvaluator(iGeometricGroup* group);
    iGeometryEvaluator(iGeometryEvaluator const& other);
    iGeometryEvaluator& operator=(iGeometryEvaluator const& other);
    ~iGeometryEvaluator();

    // 0 without an evaluator.
    double computeArea();
    double computeVolume();
    double computeLoad();

    // False unless className is a geometric group class, both classes are
    // known, and className has no evaluator yet: the first one stands.
    static bool registerNewEvaluator(char const* evaluatorClass, char const* className);
    // A new instance, owned by the caller, of the evaluator registered for
    // className or else for its nearest ancestor up to iGeometricGroup;
    // null when there is none.
    static iGeometryEvaluatorObject* getEvaluatorForClass(char const* className);

private:
    typedef double (iGeometryEvaluatorObject::*Compute)(iLayersManager*, iGeometricGroup*);
    double compute(Compute what);

    osg::ref_ptr<iGeometricGroup> group;
    iLayersManager* layersManager = nullptr;
    std::shared_ptr<iGeometryEvaluatorObject> evaluator;
};

#endif
