#include <iModelStage/geometry/iGridsLayer.h>

I_REGISTER_CLASS(iGridsLayer)

iGridsLayer::iGridsLayer()
{
    registerInstantiableClass("iGridGroup");
}

iGridsLayer::iGridsLayer(iGridsLayer const& other, osg::CopyOp const& copyop) : iGeometricsLayer(other, copyop)
{
    registerInstantiableClass("iGridGroup");
}

iGridsLayer::~iGridsLayer() = default;
