#include <iModelStage/geometry/iMaterialGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iStreamError.h>
#include <iModelStage/frame/iStreamHandler.h>
#include <iModelStage/geometry/iImageGroup.h>

#include <osg/StateSet>

I_REGISTER_PERSISTENT_CLASS(iMaterialGroup)
I_REGISTER_PROPERTY(iMaterialGroup, iMaterialPreview, preview, "General")
I_REGISTER_PROPERTY(iMaterialGroup, iColor4, ambient, "General")
I_REGISTER_PROPERTY(iMaterialGroup, iColor4, diffuse, "General")
I_REGISTER_PROPERTY(iMaterialGroup, iColor4, specular, "General")
I_REGISTER_PROPERTY(iMaterialGroup, iColor4, emission, "General")
I_REGISTER_PROPERTY(iMaterialGroup, double, shininess, "General")
I_REGISTER_PROPERTY(iMaterialGroup, double, transparency, "General")
I_REGISTER_PROPERTY(iMaterialGroup, iImageObserver, textureimage, "Texture")

namespace {

// Colours go through the stream form of their value type.
iColor4 readColor(iInStream& stream)
{
    iStreamHandler::ReadHandler handler = iStreamHandler::getReadHandler("iColor4");
    if (!handler)
        throw iStreamError("no stream form for iColor4");
    iColor4 color;
    handler(stream, &color);
    return color;
}

void writeColor(iOutStream& stream, iColor4 color)
{
    iStreamHandler::WriteHandler handler = iStreamHandler::getWriteHandler("iColor4");
    if (!handler)
        throw iStreamError("no stream form for iColor4");
    handler(stream, &color);
}

osg::ref_ptr<osg::Texture2D> makeTexture()
{
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
    texture->setDataVariance(osg::Object::DYNAMIC);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    return texture;
}

// Set once, even if the image has died since.
bool isLinkSet(iImageObserver const& link)
{
    return link != static_cast<iImageGroup const*>(nullptr);
}

} // namespace

iMaterialGroup::iMaterialGroup() : _material(new osg::Material), _texture(makeTexture())
{
    // Defaults go in silently: a new material has no state set until its
    // first update.
    _preview = this;
    _ambient.set(0.0f, 0.0f, 0.0f, 1.0f);
    _diffuse.set(1.0f, 0.0f, 0.0f, 1.0f);
    _specular.set(0.0f, 0.0f, 0.0f, 1.0f);
    _emission.set(0.0f, 0.0f, 0.0f, 1.0f);
    _shininess = 0.0;
    _transparency = 0.0;
    connectSlots();
}

iMaterialGroup::iMaterialGroup(iMaterialGroup const& other, osg::CopyOp const& copyop)
    : iNodeGroup(other, copyop), _imageUid(other._imageUid), _material(new osg::Material), _texture(makeTexture())
{
    _preview = this;
    _ambient = other._ambient;
    _diffuse = other._diffuse;
    _specular = other._specular;
    _emission = other._emission;
    _shininess = other._shininess;
    _transparency = other._transparency;
    _textureimage = other._textureimage;
    connectSlots();
    if (iImageGroup* image = _textureimage.get())
        image->sigfilenameChanged.connect(this, &iMaterialGroup::slotTextureImageFileChanged);
    // Never fill the source's state set, which the node copy may share.
    setStateSet(nullptr);
    if (other.getStateSet())
        updateMaterial();
}

iMaterialGroup::~iMaterialGroup() = default;

void iMaterialGroup::connectSlots()
{
    sigPropertyChanged.connect(this, &iMaterialGroup::slotMaterialPropertyChanged);
    sigtextureimageChanged.connect(this, &iMaterialGroup::slottextureimageChanged);
    sigtextureimageChanging.connect(this, &iMaterialGroup::slottextureimageChanging);
}

void iMaterialGroup::updateMaterial()
{
    osg::StateSet* stateSet = getOrCreateStateSet();
    stateSet->clear();

    osg::Material::Face const face = osg::Material::FRONT_AND_BACK;
    _material->setAmbient(face, _ambient);
    _material->setDiffuse(face, _diffuse);
    _material->setSpecular(face, _specular);
    _material->setShininess(face, static_cast<float>(_shininess));
    _material->setEmission(face, _emission);
    _material->setTransparency(face, static_cast<float>(_transparency));

    iImageGroup* image = _textureimage.get();
    _texture->setImage(image ? image->getImage() : nullptr);

    unsigned const on = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;
    stateSet->setAttributeAndModes(_material.get(), on);
    if (isLinkSet(_textureimage))
        stateSet->setTextureAttributeAndModes(0, _texture.get(), on);
    else
        stateSet->removeTextureAttribute(0, osg::StateAttribute::TEXTURE);
}

void iMaterialGroup::resolveLinks()
{
    if (iImageGroup* image = dynamic_cast<iImageGroup*>(findObjectByUniqueId(_imageUid)))
        set_textureimage(image);
    updateMaterial();
}

void iMaterialGroup::slotMaterialPropertyChanged(iRoot*, char const*)
{
    updateMaterial();
}

void iMaterialGroup::slottextureimageChanging(iRoot*, iImageObserver)
{
    if (iImageGroup* old = _textureimage.get())
        old->sigfilenameChanged.disconnect(this);
}

void iMaterialGroup::slottextureimageChanged(iRoot*, iImageObserver link)
{
    if (iImageGroup* image = link.get()) {
        image->sigfilenameChanged.connect(this, &iMaterialGroup::slotTextureImageFileChanged);
        _imageUid = static_cast<int>(image->getUniqueId());
    }
    updateMaterial();
}

void iMaterialGroup::slotTextureImageFileChanged(iRoot*, std::string)
{
    updateMaterial();
}

void iMaterialGroup::read(iInStream& stream, int)
{
    set_ambient(readColor(stream));
    set_diffuse(readColor(stream));
    set_specular(readColor(stream));
    set_emission(readColor(stream));
    set_shininess(stream.readDouble());
    set_transparency(stream.readDouble());
    _imageUid = stream.readInt();
}

void iMaterialGroup::write(iOutStream& stream)
{
    writeColor(stream, _ambient);
    writeColor(stream, _diffuse);
    writeColor(stream, _specular);
    writeColor(stream, _emission);
    stream.writeDouble(_shininess);
    stream.writeDouble(_transparency);
    stream.writeInt(_imageUid);
}
