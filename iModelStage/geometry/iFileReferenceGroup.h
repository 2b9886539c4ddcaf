#ifndef IMODELSTAGE_GEOMETRY_IFILEREFERENCEGROUP_H
#define IMODELSTAGE_GEOMETRY_IFILEREFERENCEGROUP_H

#include <iModelStage/geometry/iGeometricGroup.h>

#include <osg/observer_ptr>

class iBaseModel;

// Shows the content of an external model file, placed and scaled by this
// object; only the file name goes into the document. The content sits in a
// wrapper transform that is never written. A wrapper around a geometric
// group lives in the object tree, as a child of this object; any other is
// drawn by iFileReferenceGroupRenderer.
//
// Setting the file name loads at once; a loaded document loads at
// resolveLinks. A file that cannot be read leaves the object invalid and
// says nothing: the name is kept, and saved, for a later opening.
class IMODELSTAGE_EXPORT iFileReferenceGroup : public iGeometricGroup {
    I_CLASS(iFileReferenceGroup, iGeometricGroup, 2)
    I_OSG_NODE(iFileReferenceGroup)
    I_PROPERTY(iStringFileName, filename)
    // Shift the content so that its lower corner stands at the origin.
    I_PROPERTY(bool, movetoorig)
    // Uniform scale from the file's units to the document's.
    I_PROPERTY(iScaleUnit, scaleunit)
public:
    iFileReferenceGroup();
    // The copy shows what the source shows: its own copy of a wrapper in
    // the tree, or the source's wrapper of a plain model.
    iFileReferenceGroup(iFileReferenceGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // The wrapper of the loaded content; null when nothing is loaded.
    iTransformGroup* getReferencedNode();
    bool isValid() { return getReferencedNode() != nullptr; }

    // Loads the file; the material link is not bound for this class.
    void resolveLinks() override;

    // Sets the values without loading; version 1 has the file name only.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iFileReferenceGroup() override;

    // Drops the present content and imports the file again, through the
    // geometrics layer of the document; without one it does nothing.
    void load();
    // Places and scales the wrapper, then asks for a rebuild.
    void updateReferencedGeometry();

    void slotfilenameChanged(iRoot* source, std::string name);
    void slotmovetoorigChanged(iRoot* source, bool value);
    void slotscaleunitChanged(iRoot* source, double value);

private:
    void connectSlots();
    void dropContent(iBaseModel* layer);
    void adoptWrapperOf(iFileReferenceGroup const& other);

    osg::observer_ptr<iTransformGroup> referencedNode;
    // Keeps a wrapper that no tree holds: the renderer's hold ends at each
    // rebuild.
    osg::ref_ptr<iTransformGroup> _detachedWrapper;
};

#endif
