#include <iModelStage/geometry/iGeometryEvaluatorObject.h>

I_REGISTER_CLASS(iGeometryEvaluatorObject)

iGeometryEvaluatorObject::iGeometryEvaluatorObject() = default;

iGeometryEvaluatorObject::~iGeometryEvaluatorObject() = default;

double iGeometryEvaluatorObject::_computeAreaImpl(iLayersManager*, iGeometricGroup*)
{
    return 0.0;
}

double iGeometryEvaluatorObject::_computeVolumeImpl(iLayersManager*, iGeometricGroup*)
{
    return 0.0;
}

double iGeometryEvaluatorObject::_computeLoadImpl(iLayersManager*, iGeometricGroup*)
{
    return 0.0;
}
