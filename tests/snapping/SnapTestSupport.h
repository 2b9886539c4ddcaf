#ifndef IMODELSTAGE_TESTS_SNAPPING_SNAP_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_SNAPPING_SNAP_TEST_SUPPORT_H

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/snapping/iBaseSnap.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <vector>

// A group whose renderer draws its points with one primitive mode.
class iSnapTestGroup : public iGeometricGroup {
    I_CLASS(iSnapTestGroup, iGeometricGroup, 3)
    I_OSG_NODE(iSnapTestGroup)
public:
    iSnapTestGroup() = default;
    iSnapTestGroup(iSnapTestGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop), points(other.points), mode(other.mode)
    {
    }

    std::vector<osg::Vec3f> points;
    GLenum mode = GL_LINES;

protected:
    ~iSnapTestGroup() override = default;
};

class iSnapTestRenderer : public iGeometryRenderer {
    I_CLASS(iSnapTestRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iSnapTestRenderer)
public:
    iSnapTestRenderer() = default;
    iSnapTestRenderer(iSnapTestRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }

    void rebuildGeometry(iGeometricGroup* group) override
    {
        auto* source = dynamic_cast<iSnapTestGroup*>(group);
        if (!source || source->points.empty())
            return;
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array(source->points.begin(), source->points.end());
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        geometry->setVertexArray(vertices.get());
        geometry->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
        geometry->addPrimitiveSet(new osg::DrawArrays(source->mode, 0, static_cast<GLsizei>(vertices->size())));
        auto* geode = new osg::Geode;
        geode->addDrawable(geometry.get());
        addChild(geode);
    }

protected:
    ~iSnapTestRenderer() override = default;
};

// A group of the test class with these points, in layer, rebuilt.
inline osg::ref_ptr<iSnapTestGroup> addSnapTestGroup(iGeometricsLayer* layer, std::vector<osg::Vec3f> const& points,
                                                      GLenum mode = GL_LINES)
{
    iGeometryRendererManager::registerGeometricRenderer("iSnapTestGroup", "iSnapTestRenderer", 1);
    osg::ref_ptr<iSnapTestGroup> group = new iSnapTestGroup;
    group->points = points;
    group->mode = mode;
    layer->addObject(group.get(), true);
    group->updateGeometry(true);
    return group;
}

// Registers the library's five snap kinds, as a host does.
inline void registerSnapKinds()
{
    for (char const* name : {"iPointSnap", "iNearestSnap", "iIntersectionSnap", "iCentroidSnap", "iGridSnap"})
        iGeometricsLayer::registerSnapClass(name);
}

// The registered snap objects of the given classes, each active, every
// other one inactive.
inline std::vector<iBaseSnap*> onlySnaps(std::vector<char const*> const& names)
{
    std::vector<iBaseSnap*> const& all = iGeometricsLayer::getSnapObjectsList();
    for (iBaseSnap* snap : all)
        snap->setActive(false);
    for (char const* name : names)
        if (iBaseSnap* snap = iGeometricsLayer::getSnapObject(name))
            snap->setActive(true);
    return all;
}

#endif
