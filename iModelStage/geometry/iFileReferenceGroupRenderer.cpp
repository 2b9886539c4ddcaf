#include <iModelStage/geometry/iFileReferenceGroupRenderer.h>

#include <iModelStage/geometry/iFileReferenceGroup.h>

I_REGISTER_CLASS(iFileReferenceGroupRenderer)

iFileReferenceGroupRenderer::iFileReferenceGroupRenderer() = default;

iFileReferenceGroupRenderer::iFileReferenceGroupRenderer(iFileReferenceGroupRenderer const& other,
                                                         osg::CopyOp const& copyop)
    : iGeometryRenderer(other, copyop)
{
}

iFileReferenceGroupRenderer::~iFileReferenceGroupRenderer() = default;

void iFileReferenceGroupRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* reference = dynamic_cast<iFileReferenceGroup*>(group);
    if (!reference)
        return;
    iTransformGroup* wrapper = reference->getReferencedNode();
    if (!wrapper || wrapper->getNumChildren() == 0)
        return;
    if (!dynamic_cast<iGeometricGroup*>(wrapper->getChild(0)))
        addChild(wrapper);
}
