#ifndef IMODELSTAGE_TESTS_GEOMETRY_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_GEOMETRY_TEST_SUPPORT_H

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <string>
#include <vector>

// A quad from (x0, y0) to (x1, y1) at height z, coloured overall by the
// group's shared colour array.
inline osg::Geode* colouredQuad(iGeometricGroup* group, float x0, float y0, float x1, float y1, float z = 0.0f)
{
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    corners->push_back(osg::Vec3f(x0, y0, z));
    corners->push_back(osg::Vec3f(x1, y0, z));
    corners->push_back(osg::Vec3f(x1, y1, z));
    corners->push_back(osg::Vec3f(x0, y1, z));
    osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
    quad->setVertexArray(corners.get());
    quad->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
    quad->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, 4));
    osg::Geode* geode = new osg::Geode;
    geode->addDrawable(quad.get());
    return geode;
}

// A renderer that draws a unit quad, or the quad it is given, and counts
// its rebuilds. Its priority and mask are open to the tests.
class iQuadTestRenderer : public iGeometryRenderer {
    I_CLASS(iQuadTestRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iQuadTestRenderer)
public:
    iQuadTestRenderer() = default;
    iQuadTestRenderer(iQuadTestRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        ++rebuilds;
        addChild(colouredQuad(group, corner[0], corner[1], corner[2], corner[3], height));
    }
    using iGeometryRenderer::dirtyDisplayList;
    using iGeometryRenderer::getGeometryGroup;
    using iGeometryRenderer::getPriority;
    using iGeometryRenderer::getRenderMask;
    using iGeometryRenderer::setPriority;
    using iGeometryRenderer::setGeometryGroup;
    using iGeometryRenderer::setRenderMask;

    int rebuilds = 0;
    float corner[4] = {0.0f, 0.0f, 1.0f, 1.0f};
    float height = 0.0f;

protected:
    ~iQuadTestRenderer() override = default;
};

// Group and renderer classes for one test each, so that registrations in
// the process-wide registry do not meet.
#define GEOMETRY_TEST_GROUP(Name)                                                                                     \
    class Name : public iGeometricGroup {                                                                             \
        I_CLASS(Name, iGeometricGroup, 3)                                                                             \
        I_OSG_NODE(Name)                                                                                              \
    public:                                                                                                           \
        Name() = default;                                                                                             \
        Name(Name const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometricGroup(other, copyop) \
        {                                                                                                             \
        }                                                                                                             \
        void rebuildGeometry() override { ++ownRebuilds; }                                                            \
        using iGeometricGroup::getCachedRenderer;                                                                     \
        using iGeometricGroup::invalidateRenderer;                                                                    \
        int materialUid() const { return _materialUid; }                                                              \
        int ownRebuilds = 0;                                                                                          \
                                                                                                                      \
    protected:                                                                                                        \
        ~Name() override = default;                                                                                   \
    };

#define GEOMETRY_TEST_RENDERER(Name)                                                                                  \
    class Name : public iQuadTestRenderer {                                                                           \
        I_CLASS(Name, iQuadTestRenderer, 1)                                                                           \
        I_OSG_NODE(Name)                                                                                              \
    public:                                                                                                           \
        Name() = default;                                                                                             \
        Name(Name const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)                                \
            : iQuadTestRenderer(other, copyop)                                                                        \
        {                                                                                                             \
        }                                                                                                             \
                                                                                                                      \
    protected:                                                                                                        \
        ~Name() override = default;                                                                                   \
    };

template <class T>
T* rendererAt(osg::Group* container, unsigned int index)
{
    return index < container->getNumChildren() ? dynamic_cast<T*>(container->getChild(index)) : nullptr;
}

inline osg::Group* containerOf(iGeometricGroup* group)
{
    return group->getNumChildren() > 0 && group->getChild(0)->getName() == "__#iGeometricRendererNodes#__"
               ? group->getChild(0)->asGroup()
               : nullptr;
}

inline int countContainers(osg::Group* group)
{
    int count = 0;
    for (unsigned int i = 0; i < group->getNumChildren(); ++i)
        count += group->getChild(i)->getName() == "__#iGeometricRendererNodes#__";
    return count;
}

#endif
