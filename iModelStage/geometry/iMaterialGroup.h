#ifndef IMODELSTAGE_GEOMETRY_IMATERIALGROUP_H
#define IMODELSTAGE_GEOMETRY_IMATERIALGROUP_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/Material>
#include <osg/Texture2D>
#include <osg/ref_ptr>

class iImageGroup;

// A surface of the document: colours, an optional image as texture, and a
// ready state set on the node itself. Users of the material share that
// state set, which is cleared and filled in place on every change, so that
// they all follow an edit without being touched.
class IMODELSTAGE_EXPORT iMaterialGroup : public iNodeGroup {
    I_CLASS(iMaterialGroup, iNodeGroup, 1)
    I_OSG_NODE(iMaterialGroup)
    // Points at the material itself, for an editor that pictures it.
    I_PROPERTY(iMaterialPreview, preview)
    I_PROPERTY(iColor4, ambient)
    I_PROPERTY(iColor4, diffuse)
    I_PROPERTY(iColor4, specular)
    I_PROPERTY(iColor4, emission)
    I_PROPERTY(double, shininess)
    I_PROPERTY(double, transparency)
    I_PROPERTY(iImageObserver, textureimage)
public:
    iMaterialGroup();
    // The copy has its own material, texture and state set.
    iMaterialGroup(iMaterialGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    osg::Material* getMaterial() { return _material.get(); }
    osg::Texture2D* getTexture() { return _texture.get(); }
    // The id of the texture image as stored; -1 when none was ever linked.
    int getImageUid() const { return _imageUid; }

    // Clears the node's state set and fills it again from the properties.
    void updateMaterial();
    // Binds the texture image through its stored id, then fills the state
    // set: this is what a loaded material needs.
    void resolveLinks() override;

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iMaterialGroup() override;

    void slotMaterialPropertyChanged(iRoot* source, char const* property);
    void slottextureimageChanging(iRoot* source, iImageObserver link);
    void slottextureimageChanged(iRoot* source, iImageObserver link);
    void slotTextureImageFileChanged(iRoot* source, std::string name);

private:
    void connectSlots();

    int _imageUid = -1;
    osg::ref_ptr<osg::Material> _material;
    osg::ref_ptr<osg::Texture2D> _texture;
};

#endif
