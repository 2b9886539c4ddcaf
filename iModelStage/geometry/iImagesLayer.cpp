#include <iModelStage/geometry/iImagesLayer.h>

I_REGISTER_CLASS(iImagesLayer)

iImagesLayer::iImagesLayer()
{
    registerInstantiableClass("iImageGroup");
}

iImagesLayer::iImagesLayer(iImagesLayer const& other, osg::CopyOp const& copyop) : iNodeLayer(other, copyop)
{
    registerInstantiableClass("iImageGroup");
}

iImagesLayer::~iImagesLayer() = default;
