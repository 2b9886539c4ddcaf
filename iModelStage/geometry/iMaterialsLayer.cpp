#include <iModelStage/geometry/iMaterialsLayer.h>

I_REGISTER_CLASS(iMaterialsLayer)

iMaterialsLayer::iMaterialsLayer()
{
    registerInstantiableClass("iMaterialGroup");
}

iMaterialsLayer::iMaterialsLayer(iMaterialsLayer const& other, osg::CopyOp const& copyop) : iNodeLayer(other, copyop)
{
    registerInstantiableClass("iMaterialGroup");
}

iMaterialsLayer::~iMaterialsLayer() = default;
