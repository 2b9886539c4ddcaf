#include <iModelStage/dimensioning/iQuoteHandOver.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/Transform>

namespace {

// The first parent that is not the feedback layer.
osg::Group* documentParent(osg::Node* object, osg::Group* feedback)
{
    for (osg::Group* parent : object->getParents())
        if (parent != feedback)
            return parent;
    return nullptr;
}

osg::Matrixd worldOf(osg::Group* group)
{
    osg::NodePathList const paths = group->getParentalNodePaths();
    if (paths.empty())
        return osg::Matrixd::identity();
    return osg::computeLocalToWorld(paths.front());
}

} // namespace

bool iQuoteHandOver::handOver(iTransformGroup* object, iGeometricsLayer* layer, osg::Group* feedback,
                              bool keepInFeedback)
{
    if (!object || !layer)
        return false;
    osg::Matrixd const world = object->getWorldMatrix();
    layer->addObject(object, true);
    if (!keepInFeedback) {
        if (feedback)
            feedback->removeChild(object);
        object->setWorldMatrix(world);
        return true;
    }
    if (osg::Group* parent = documentParent(object, feedback))
        object->setMatrix(world * osg::Matrixd::inverse(worldOf(parent)));
    return true;
}
