#ifndef IMODELSTAGE_TESTS_WORKBENCH_SHAPE_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_WORKBENCH_SHAPE_TEST_SUPPORT_H

#include "support/GeometricsDocumentTest.h"

#include "shapes/wbRegistry.h"

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geode>
#include <osg/Geometry>

#include <string>
#include <vector>

// A document with the workbench's classes registered.
class ShapeDocumentTest : public GeometricsDocumentTest {
protected:
    void SetUp() override
    {
        wbRegisterClasses();
        GeometricsDocumentTest::SetUp();
    }
};

// The renderer of a group that has been updated, by class name.
inline osg::Group* rendererOf(iGeometricGroup* group, std::string const& rendererClass)
{
    if (group->getNumChildren() == 0)
        return nullptr;
    osg::Group* container = group->getChild(0)->asGroup();
    if (!container || container->getName() != "__#iGeometricRendererNodes#__")
        return nullptr;
    for (unsigned int i = 0; i < container->getNumChildren(); ++i)
        if (auto* renderer = dynamic_cast<iGeometryRenderer*>(container->getChild(i)))
            if (rendererClass == renderer->getClassName())
                return renderer;
    return nullptr;
}

// Every osg::Geometry below a node.
inline std::vector<osg::Geometry*> geometriesBelow(osg::Node* node)
{
    std::vector<osg::Geometry*> out;
    if (!node)
        return out;
    if (osg::Geode* geode = node->asGeode()) {
        for (unsigned int i = 0; i < geode->getNumDrawables(); ++i)
            if (osg::Geometry* geometry = geode->getDrawable(i)->asGeometry())
                out.push_back(geometry);
        return out;
    }
    if (osg::Group* group = node->asGroup())
        for (unsigned int i = 0; i < group->getNumChildren(); ++i)
            for (osg::Geometry* geometry : geometriesBelow(group->getChild(i)))
                out.push_back(geometry);
    return out;
}

inline unsigned int vertexCount(osg::Geometry* geometry)
{
    return geometry->getVertexArray() ? geometry->getVertexArray()->getNumElements() : 0;
}

// The box around the drawables below a node, in the node's parent frame.
inline osg::BoundingBox boundsOf(osg::Node* node)
{
    osg::ComputeBoundsVisitor bounds;
    node->accept(bounds);
    return bounds.getBoundingBox();
}

#endif
