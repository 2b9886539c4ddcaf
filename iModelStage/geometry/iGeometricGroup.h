#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICGROUP_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICGROUP_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/Array>
#include <osg/Group>

#include <string>
#include <vector>

class iGeometryRenderer;

// A document object with geometry. Its drawables are built by the
// renderers registered for its class name, which live in one child, the
// renderer container "__#iGeometricRendererNodes#__", always child 0.
// Subclasses may also build children of their own in rebuildGeometry().
//
// The visible and selectable properties mirror flag bits 0 and 1 in both
// directions. A colour change needs no rebuild: every drawable binds the
// one-element shared colour array as its overall colour.
class IMODELSTAGE_EXPORT iGeometricGroup : public iTransformGroup {
    I_CLASS(iGeometricGroup, iTransformGroup, 3)
    I_OSG_NODE(iGeometricGroup)
public:
    sigslot::signal2<iGeometricGroup*, std::string const&> sigGeometryGroupFinalized;
    sigslot::signal1<iGeometricGroup*> sigGeometryGroupChanged;

protected:
    osg::Vec4f _color;
    osg::ref_ptr<osg::Vec4Array> _sharedColorArray;
    bool _rendererValid = false;
    osg::ref_ptr<osg::Group> _rendererContainer;

    I_PROPERTY(iBoolSwitch, usecolor)
    I_PROPERTY(iColor4, clr)
    I_PROPERTY(iBoolSwitch, usematerial)
    I_PROPERTY(iMaterialGroupObserver, material)
    I_PROPERTY(bool, visible)
    I_PROPERTY(bool, selectable)

public:
    iGeometricGroup();
    // A copy starts without renderers: the first update makes them, and
    // drops a container that came along as an ordinary child.
    iGeometricGroup(iGeometricGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    osg::Vec4f const& getColor() const { return _color; }
    // Also when the colour is unchanged, the drawables are marked dirty.
    void setColor(osg::Vec4f const& color);
    osg::Vec4Array* getSharedColorArray() { return _sharedColorArray.get(); }

    // Rebuilds at once when forced or while the asynchronous-update flag is
    // set (a group in no layer); tells sigGeometryGroupChanged in any case.
    void updateGeometry(bool force);
    void updateGeometryLater() { updateGeometry(false); }
    // Runs rebuildGeometry(), then empties and rebuilds every renderer that
    // some viewer can show.
    void forceGeometryUpdate();
    // Tells sigGeometryGroupFinalized with id, unless it is blocked.
    void finalize(std::string const& id);

    virtual osg::Vec3Array* getVertices() { return nullptr; }
    virtual void setVertices(osg::Vec3Array const&) {}
    // The group's own drawables; the renderers come after it.
    virtual void rebuildGeometry() {}

    // Binds the material from its stored unique id.
    void resolveLinks() override;

    // Version 3 adds the colour and material switches and the material id;
    // version 1 carries a matrix and old-style flags first.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    friend class iComputeGeomBoundsVisitor;
    friend class iGeometryRendererManager;

    ~iGeometricGroup() override;

    void initialize() override;

    void invalidateRenderer() { _rendererValid = false; }
    void validateRenderer() { _rendererValid = true; }
    // Puts the container in place as child 0; false when no renderer is
    // registered for the class.
    bool initRendererContainer();
    void dirtyDrawables();
    std::vector<osg::ref_ptr<osg::Node>>& getCachedRenderer() { return _cachedRenderers; }

    // The unique id of the linked material, as the file keeps it.
    int _materialUid = -1;

private:
    void updateRendererCache();
    void placeRenderers();
    void rebuildRenderers();
    void storeColor(osg::Vec4f const& color);
    void copyProperties(iGeometricGroup const& other);

    void slotclrChanged(iRoot* source, osg::Vec4f color);
    void slotFlagsChanged(iNodeGroup* node, std::bitset<32> oldFlags, std::bitset<32> newFlags);
    void slotvisibleChanged(iRoot* source, bool value);
    void slotselectableChanged(iRoot* source, bool value);
    void slotmaterialChanged(iRoot* source, iMaterialGroupObserver material);

    std::vector<osg::ref_ptr<osg::Node>> _cachedRenderers;
    // Set while a property slot writes its flag, so that the flags signal
    // does not write the properties back.
    bool _writingFlag = false;
};

#endif
