#include <iModelStage/geometry/iInputPlanesLayer.h>

I_REGISTER_CLASS(iInputPlanesLayer)

iInputPlanesLayer::iInputPlanesLayer()
{
    registerInstantiableClass("iInputPlane");
}

iInputPlanesLayer::iInputPlanesLayer(iInputPlanesLayer const& other, osg::CopyOp const& copyop)
    : iNodeLayer(other, copyop)
{
    registerInstantiableClass("iInputPlane");
}

iInputPlanesLayer::~iInputPlanesLayer() = default;
