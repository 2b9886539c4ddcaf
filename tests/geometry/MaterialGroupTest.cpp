#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iImageGroup.h>
#include <iModelStage/geometry/iImagesLayer.h>
#include <iModelStage/geometry/iMaterialGroup.h>
#include <iModelStage/geometry/iMaterialsLayer.h>

#include <QImage>

#include <osg/Geode>

namespace {

osg::Material* materialOf(osg::StateSet* stateSet)
{
    return dynamic_cast<osg::Material*>(stateSet->getAttribute(osg::StateAttribute::MATERIAL));
}

osg::Texture2D* textureOf(osg::StateSet* stateSet)
{
    return dynamic_cast<osg::Texture2D*>(stateSet->getTextureAttribute(0, osg::StateAttribute::TEXTURE));
}

// A small PNG of one colour, written by Qt so that the image readers have
// something real to load.
std::string writePng(TempFiles& files, std::string const& name, int width, QColor colour)
{
    std::string const path = files.path(name + ".png");
    QImage image(width, 2, QImage::Format_RGB32);
    image.fill(colour);
    EXPECT_TRUE(image.save(QString::fromStdString(path), "PNG"));
    return path;
}

// A state set entry that only a fresh fill of the state set removes.
void markStateSet(iMaterialGroup* material)
{
    material->getStateSet()->setMode(GL_BLEND, osg::StateAttribute::ON);
}

bool stillMarked(iMaterialGroup* material)
{
    return material->getStateSet()->getMode(GL_BLEND) == osg::StateAttribute::ON;
}

} // namespace

TEST(MaterialGroup, ClassesAndDefaults)
{
    std::string parent;
    EXPECT_TRUE(iRoot::getParentClassName("iMaterialGroup", parent));
    EXPECT_EQ(parent, "iNodeGroup");
    EXPECT_TRUE(iRoot::getParentClassName("iImageGroup", parent));
    EXPECT_EQ(parent, "iNodeGroup");
    EXPECT_TRUE(iRoot::getParentClassName("iMaterialsLayer", parent));
    EXPECT_EQ(parent, "iNodeLayer");
    EXPECT_TRUE(iRoot::getParentClassName("iImagesLayer", parent));
    EXPECT_EQ(parent, "iNodeLayer");

    std::unique_ptr<iRoot> created(iRoot::newClass("iMaterialsLayer"));
    osg::ref_ptr<iMaterialsLayer> materials = dynamic_cast<iMaterialsLayer*>(created.release());
    ASSERT_TRUE(materials);
    EXPECT_EQ(materials->getInstantiableClasses(), std::vector<std::string>{"iMaterialGroup"});
    osg::ref_ptr<iImagesLayer> images = new iImagesLayer;
    EXPECT_EQ(images->getInstantiableClasses(), std::vector<std::string>{"iImageGroup"});

    osg::ref_ptr<iMaterialGroup> material = new iMaterialGroup;
    EXPECT_EQ(material->get_preview().get(), material.get());
    EXPECT_EQ(material->get_ambient(), osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(material->get_diffuse(), osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(material->get_specular(), osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(material->get_emission(), osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(material->get_shininess(), 0.0);
    EXPECT_EQ(material->get_transparency(), 0.0);
    EXPECT_FALSE(material->get_textureimage().valid());
    EXPECT_EQ(material->getImageUid(), -1);
    // Nothing is filled before the first update.
    EXPECT_EQ(material->getStateSet(), nullptr);

    osg::Texture2D* texture = material->getTexture();
    ASSERT_TRUE(texture);
    EXPECT_EQ(texture->getDataVariance(), osg::Object::DYNAMIC);
    EXPECT_EQ(texture->getFilter(osg::Texture::MIN_FILTER), osg::Texture::LINEAR_MIPMAP_LINEAR);
    EXPECT_EQ(texture->getFilter(osg::Texture::MAG_FILTER), osg::Texture::LINEAR);
    EXPECT_EQ(texture->getWrap(osg::Texture::WRAP_S), osg::Texture::REPEAT);
    EXPECT_EQ(texture->getWrap(osg::Texture::WRAP_T), osg::Texture::REPEAT);

    osg::ref_ptr<iImageGroup> image = new iImageGroup;
    EXPECT_EQ(image->get_filename(), "");
    EXPECT_EQ(image->get_preview(), "");
    EXPECT_EQ(image->getImage(), nullptr);
}

TEST(MaterialGroup, AnyPropertyFillsTheStateSetForEveryUser)
{
    osg::ref_ptr<iMaterialGroup> material = new iMaterialGroup;
    material->set_shininess(12.5);
    osg::StateSet* stateSet = material->getStateSet();
    ASSERT_TRUE(stateSet);
    ASSERT_EQ(materialOf(stateSet), material->getMaterial());
    EXPECT_EQ(stateSet->getAttributePair(osg::StateAttribute::MATERIAL)->second, osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(textureOf(stateSet), nullptr);
    EXPECT_EQ(material->getMaterial()->getDiffuse(osg::Material::FRONT), osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(material->getMaterial()->getShininess(osg::Material::BACK), 12.5f);

    // A user shares the state set; it sees every later change at once.
    osg::ref_ptr<osg::Geode> user = new osg::Geode;
    user->setStateSet(stateSet);
    material->set_diffuse(osg::Vec4f(0, 0, 1, 1));
    material->set_emission(osg::Vec4f(0.25f, 0.5f, 0.75f, 1));
    material->set_transparency(0.5);
    EXPECT_EQ(material->getStateSet(), stateSet);
    osg::Material* seen = materialOf(user->getStateSet());
    ASSERT_TRUE(seen);
    // Transparency comes last and sets the alpha of every colour.
    EXPECT_EQ(seen->getDiffuse(osg::Material::FRONT), osg::Vec4f(0, 0, 1, 0.5f));
    EXPECT_EQ(seen->getDiffuse(osg::Material::BACK), osg::Vec4f(0, 0, 1, 0.5f));
    EXPECT_EQ(seen->getEmission(osg::Material::FRONT), osg::Vec4f(0.25f, 0.5f, 0.75f, 0.5f));

    // A copy has state of its own.
    osg::ref_ptr<iMaterialGroup> copy = new iMaterialGroup(*material);
    EXPECT_EQ(copy->get_preview().get(), copy.get());
    ASSERT_TRUE(copy->getStateSet());
    EXPECT_NE(copy->getStateSet(), stateSet);
    EXPECT_NE(copy->getMaterial(), material->getMaterial());
    copy->set_diffuse(osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(seen->getDiffuse(osg::Material::FRONT), osg::Vec4f(0, 0, 1, 0.5f));
}

TEST(MaterialGroup, TextureFollowsItsImage)
{
    TempFiles files;
    osg::ref_ptr<iImageGroup> first = new iImageGroup;
    std::string const red = writePng(files, "red", 4, Qt::red);
    first->set_filename(red);
    ASSERT_TRUE(first->getImage());
    EXPECT_EQ(first->getImage()->s(), 4);
    EXPECT_EQ(first->get_preview(), red);

    osg::ref_ptr<iMaterialGroup> material = new iMaterialGroup;
    material->set_textureimage(first.get());
    EXPECT_EQ(material->getImageUid(), first->getUniqueId());
    osg::StateSet* stateSet = material->getStateSet();
    ASSERT_EQ(textureOf(stateSet), material->getTexture());
    EXPECT_EQ(stateSet->getTextureAttributePair(0, osg::StateAttribute::TEXTURE)->second, osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(stateSet->getTextureMode(0, GL_TEXTURE_2D), osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    EXPECT_EQ(material->getTexture()->getImage(), first->getImage());

    // A new file in the image reaches the texture.
    first->set_filename(writePng(files, "wide", 8, Qt::green));
    ASSERT_TRUE(first->getImage());
    EXPECT_EQ(material->getTexture()->getImage(), first->getImage());
    EXPECT_EQ(material->getTexture()->getImage()->s(), 8);

    // After a replacement the old image is no longer heard.
    osg::ref_ptr<iImageGroup> second = new iImageGroup;
    second->set_filename(red);
    material->set_textureimage(second.get());
    EXPECT_EQ(material->getImageUid(), second->getUniqueId());
    markStateSet(material);
    first->set_filename(red);
    EXPECT_TRUE(stillMarked(material));
    second->set_filename(files.path("missing.png"));
    EXPECT_FALSE(stillMarked(material));
    EXPECT_EQ(second->getImage(), nullptr);
    EXPECT_EQ(material->getTexture()->getImage(), nullptr);

    // An emptied link drops the texture and keeps the stored id.
    material->set_textureimage(iImageObserver());
    EXPECT_EQ(textureOf(material->getStateSet()), nullptr);
    EXPECT_EQ(material->getImageUid(), second->getUniqueId());
}

TEST(MaterialGroup, PersistentFormIsByteExact)
{
    osg::ref_ptr<iMaterialGroup> material = new iMaterialGroup;
    material->set_name("steel");
    material->set_ambient(osg::Vec4f(0.5f, 0.25f, 0.125f, 1));
    material->set_specular(osg::Vec4f(1, 1, 1, 0.75f));
    material->set_shininess(64);
    material->set_transparency(0.25);
    osg::ref_ptr<iImageGroup> image = new iImageGroup;
    material->set_textureimage(image.get());

    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    iRoot::writeObject(material.get(), out);

    std::string expected = str("iMaterialGroup") + i32(2) + i32(1) + i32(1);
    expected += i32(material->getUniqueId()) + str("steel");
    expected += i32(0xffffffff) + str("");
    for (double value : {0.5, 0.25, 0.125, 1.0, 1.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0, 0.75, 0.0, 0.0, 0.0, 1.0})
        expected += f64(value);
    expected += f64(64) + f64(0.25) + i32(image->getUniqueId());
    EXPECT_EQ(buffer.str(), expected);

    // Read back through the setters; without its image the link stays
    // empty, and the id is kept to be written again.
    osg::ref_ptr<iMaterialGroup> back = new iMaterialGroup;
    iMemoryBuffer in(expected);
    iInStream stream(&in);
    iRoot::readObject(back.get(), stream);
    EXPECT_EQ(back->get_ambient(), osg::Vec4f(0.5f, 0.25f, 0.125f, 1));
    EXPECT_EQ(back->get_specular(), osg::Vec4f(1, 1, 1, 0.75f));
    EXPECT_EQ(back->get_shininess(), 64.0);
    EXPECT_EQ(back->get_transparency(), 0.25);
    EXPECT_EQ(back->getImageUid(), image->getUniqueId());
    ASSERT_TRUE(back->getStateSet());
    EXPECT_EQ(back->getMaterial()->getShininess(osg::Material::FRONT), 64.0f);
    back->resolveLinks();
    EXPECT_FALSE(back->get_textureimage().valid());
    EXPECT_EQ(back->getImageUid(), image->getUniqueId());

    iMemoryBuffer again;
    iOutStream rewrite(&again);
    iRoot::writeObject(back.get(), rewrite);
    EXPECT_EQ(again.str(), expected);
}

TEST(MaterialGroup, ImagePersistsItsFileName)
{
    TempFiles files;
    std::string const path = writePng(files, "blue", 3, Qt::blue);
    osg::ref_ptr<iImageGroup> image = new iImageGroup;
    image->set_name("picture");
    image->set_filename(path);

    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    iRoot::writeObject(image.get(), out);
    std::string const expected = str("iImageGroup") + i32(2) + i32(1) + i32(1) + i32(image->getUniqueId()) +
                                 str("picture") + i32(0xffffffff) + str("") + str(path);
    EXPECT_EQ(buffer.str(), expected);

    // Reading loads the image.
    osg::ref_ptr<iImageGroup> back = new iImageGroup;
    iMemoryBuffer in(expected);
    iInStream stream(&in);
    iRoot::readObject(back.get(), stream);
    ASSERT_TRUE(back->getImage());
    EXPECT_EQ(back->getImage()->s(), 3);
    EXPECT_EQ(back->get_preview(), path);
}

// A document with an images layer and a materials layer beside the two
// plain ones.
class MaterialDocument : public LayersTest {
protected:
    void SetUp() override
    {
        LayersTest::SetUp();
        materials = iLayersManager::registerNodeLayerClass("iMaterialsLayer", "materials");
        images = iLayersManager::registerNodeLayerClass("iImagesLayer", "images");
    }
    template <class T>
    T* only(iNodeLayer* layer)
    {
        NodeList objects;
        layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
        EXPECT_EQ(objects.size(), 1u);
        return objects.empty() ? nullptr : dynamic_cast<T*>(objects.front().get());
    }

    iNodeLayer* materials = nullptr;
    iNodeLayer* images = nullptr;
};

TEST_F(MaterialDocument, TextureLinkIsResolvedAfterLoading)
{
    ASSERT_TRUE(dynamic_cast<iMaterialsLayer*>(materials));
    ASSERT_TRUE(dynamic_cast<iImagesLayer*>(images));
    osg::ref_ptr<iImageGroup> image = make<iImageGroup>("wood");
    image->set_filename(writePng(files, "wood", 5, Qt::darkYellow));
    images->addObject(image.get(), true);
    osg::ref_ptr<iMaterialGroup> material = make<iMaterialGroup>("oak");
    material->set_diffuse(osg::Vec4f(0.5f, 0.25f, 0, 1));
    material->set_textureimage(image.get());
    materials->addObject(material.get(), true);
    long const imageId = image->getUniqueId();

    std::string const bytes = save();
    image = nullptr;
    material = nullptr;
    load(bytes);

    iImageGroup* loadedImage = only<iImageGroup>(images);
    iMaterialGroup* loaded = only<iMaterialGroup>(materials);
    ASSERT_TRUE(loadedImage && loaded);
    EXPECT_EQ(loadedImage->getUniqueId(), imageId);
    ASSERT_TRUE(loadedImage->getImage());
    EXPECT_EQ(loaded->get_textureimage().get(), loadedImage);
    EXPECT_EQ(loaded->get_diffuse(), osg::Vec4f(0.5f, 0.25f, 0, 1));
    ASSERT_TRUE(loaded->getStateSet());
    EXPECT_EQ(textureOf(loaded->getStateSet()), loaded->getTexture());
    EXPECT_EQ(loaded->getTexture()->getImage(), loadedImage->getImage());

    // The bound link is live: a new file reaches the loaded material.
    loadedImage->set_filename(writePng(files, "birch", 7, Qt::white));
    EXPECT_EQ(loaded->getTexture()->getImage()->s(), 7);
}

TEST_F(MaterialDocument, StaleImageIdIsKeptThroughASave)
{
    osg::ref_ptr<iImageGroup> image = make<iImageGroup>("gone");
    images->addObject(image.get(), true);
    osg::ref_ptr<iMaterialGroup> material = make<iMaterialGroup>("plain");
    material->set_textureimage(image.get());
    materials->addObject(material.get(), true);
    long const imageId = image->getUniqueId();
    images->removeObject(image.get(), true);
    image = nullptr;
    material = nullptr;

    load(save());
    iMaterialGroup* loaded = only<iMaterialGroup>(materials);
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->get_textureimage().valid());
    EXPECT_EQ(loaded->getImageUid(), imageId);
    ASSERT_TRUE(loaded->getStateSet());
    EXPECT_EQ(textureOf(loaded->getStateSet()), nullptr);

    load(save());
    loaded = only<iMaterialGroup>(materials);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->getImageUid(), imageId);
}
