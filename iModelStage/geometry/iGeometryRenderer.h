#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRYRENDERER_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRYRENDERER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/geometry/iEntityGroup.h>

#include <osg/Array>
#include <osg/Group>
#include <osg/Quat>

#include <set>
#include <string>
#include <vector>

class iGeometricGroup;

// Builds the drawables of one geometric group, as children of itself. The
// group keeps one instance of every renderer class registered under its
// class name (iGeometryRendererManager) in its renderer container, and
// empties and rebuilds each at every update.
//
// The node mask is the render mask, or 0 while the group's class is in the
// class filter; renderers are never written to a document.
class IMODELSTAGE_EXPORT iGeometryRenderer : public iRoot, public osg::Group {
    I_CLASS(iGeometryRenderer, iRoot, 1)
    I_OSG_NODE(iGeometryRenderer)
    I_PROPERTY(bool, visible)
public:
    iGeometryRenderer();
    iGeometryRenderer(iGeometryRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Emitted by the group just before applyRenderMask at each update.
    sigslot::signal1<iGeometricGroup*> sigRendererUpdating;

    // Adds what this renderer draws as entity groups; none here.
    virtual bool getGeometricEntities(std::vector<iEntityGroup>& out);
    // Adds the drawables of group as children; each update starts empty.
    virtual void rebuildGeometry(iGeometricGroup* group);
    // Sets the node mask from the render mask and the class filter, when a
    // geometrics layer exists and a group is set.
    virtual void applyRenderMask();

    // Class names of groups whose renderers are switched off.
    static std::set<std::string> const& getClassFilter();
    static void setClassFilter(std::set<std::string> const& filter);
    // Queues every group of the geometrics layer for a rebuild, if there is
    // such a layer.
    static void forceGeometricLayerUpdate();

protected:
    friend class iGeometricGroup;

    ~iGeometryRenderer() override;

    // Stores the mask and shows it at once, whatever the class filter says.
    void setRenderMask(int mask);
    int getRenderMask() const { return _renderMask; }
    // The child index wanted in the container; -1 appends.
    void setPriority(int priority) { _priority = priority; }
    int getPriority() const { return _priority; }
    void setGeometryGroup(iGeometricGroup* group) { _geometryGroup = group; }
    iGeometricGroup* getGeometryGroup() const { return _geometryGroup; }
    // Marks every drawable below this renderer for a new display list.
    void dirtyDisplayList();

    // A cylinder along local X centred on the origin, placed by rotation
    // then position: two disc caps and two crossed double-sided strips,
    // appended as six new entities that the caller owns.
    static bool getCylinderEntities(double radius, double length, osg::Vec4f const& color,
                                    std::vector<iGeometricEntity*>& out, osg::Vec3f const& position,
                                    osg::Quat const& rotation);
    // The outline as bottom and top polygons with one quad per side along
    // direction * length. The outline is not closed for it: an outline that
    // should be closed repeats its first point at its end.
    static bool getExtrudedPolygonEntities(osg::Vec3Array const& vertices, osg::Vec3f const& direction,
                                           double length, osg::Vec4f const& color, iEntityGroup& out);

private:
    void slotvisibleChanged(iRoot* source, bool value);
    void lockFlags();

    int _priority = -1;
    int _renderMask = 1;
    iGeometricGroup* _geometryGroup = nullptr;

    static std::set<std::string>& classFilter();
};

#endif
