#include <iModelStage/geometry/iComputeGeomBoundsVisitor.h>

#include <iModelStage/geometry/iGeometricGroup.h>

#include <iModelStage/model/iBaseModel.h>

namespace {

void buildAndTell(iGeometricGroup* group)
{
    group->forceGeometryUpdate();
    group->sigGeometryGroupChanged(group);
}

} // namespace

iComputeGeomBoundsVisitor::iComputeGeomBoundsVisitor(iGeometricGroup* group, bool force)
    : osg::ComputeBoundsVisitor(TRAVERSE_ALL_CHILDREN)
{
    if (!group)
        return;
    if (force && !group->_rendererContainer)
        buildAndTell(group);
    if (group->getNumChildren() == 0)
        return;
    osg::Group* container = group->getChild(0)->asGroup();
    if (!container || !iBaseModel::isRendererContainer(container))
        return;
    if (container->getNumChildren() == 0)
        return;
    osg::Node* renderer = container->getChild(0);
    osg::Group* rendererGroup = renderer->asGroup();
    if (rendererGroup && rendererGroup->getNumChildren() == 0 && force)
        buildAndTell(group);
    renderer->accept(*this);
}
