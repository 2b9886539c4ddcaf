#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iImageGroup.h>
#include <iModelStage/geometry/iMaterialGroup.h>

namespace {

// The material id as the group's own level writes it, last.
int materialUidOf(iGeometricGroup* group)
{
    iMemoryBuffer buffer;
    iOutStream stream(&buffer);
    group->write(stream);
    iMemoryBuffer tail(buffer.str().substr(buffer.str().size() - 4));
    iInStream in(&tail);
    return in.readInt();
}

std::string matrixBytes(double x, double y, double z)
{
    std::string out;
    for (double value : {1., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1., 0., x, y, z, 1.})
        out += f64(value);
    return out;
}

// Header and the levels below the geometric one: id 77, name "g", all
// flags, no layer, a translation to (1, 2, 3) with every freedom.
std::string recordStart(int version)
{
    return str("iGeometricGroup") + ints({1, 1, version}) + i32(77) + str("g") + i32(-1) + str("") +
           matrixBytes(1, 2, 3) + i32(0xffffff);
}

std::string colourBytes(double r, double g, double b, double a)
{
    return f64(r) + f64(g) + f64(b) + f64(a);
}

osg::ref_ptr<iGeometricGroup> readRecord(std::string const& bytes)
{
    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    iMemoryBuffer buffer(bytes);
    iInStream stream(&buffer);
    iRoot::readObject(group.get(), stream);
    EXPECT_EQ(stream.bytesLeft(), 0);
    return group;
}

} // namespace

TEST(GeometricGroupFile, VersionThreeIsWrittenAndReadBack)
{
    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    group->setUniqueId(77);
    group->set_name("g");
    group->setPosition(osg::Vec3f(1, 2, 3));
    group->set_clr(osg::Vec4f(0.5f, 0.25f, 1, 0));
    group->set_usecolor(false);
    group->set_usematerial(true);
    std::string const expected =
        recordStart(3) + colourBytes(0.5, 0.25, 1, 0) + std::string(1, '\0') + std::string(1, '\1') + i32(-1);
    iMemoryBuffer buffer;
    iOutStream stream(&buffer);
    iRoot::writeObject(group.get(), stream);
    EXPECT_EQ(buffer.str(), expected);

    osg::ref_ptr<iGeometricGroup> back = readRecord(recordStart(3) + colourBytes(0, 1, 0, 1) + std::string(1, '\0') +
                                                    std::string(1, '\1') + i32(4242));
    EXPECT_EQ(back->get_clr(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(back->getColor(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ((*back->getSharedColorArray())[0], osg::Vec4f(0, 1, 0, 1));
    EXPECT_FALSE(back->get_usecolor());
    EXPECT_TRUE(back->get_usematerial());
    EXPECT_EQ(materialUidOf(back.get()), 4242);
    EXPECT_EQ(back->getPosition(), osg::Vec3f(1, 2, 3));
}

TEST(GeometricGroupFile, VersionTwoEndsAfterTheColour)
{
    osg::ref_ptr<iGeometricGroup> back = readRecord(recordStart(2) + colourBytes(0, 0, 1, 1));
    EXPECT_EQ(back->get_clr(), osg::Vec4f(0, 0, 1, 1));
    EXPECT_TRUE(back->get_usecolor());
    EXPECT_FALSE(back->get_usematerial());
    EXPECT_EQ(materialUidOf(back.get()), -1);
}

TEST(GeometricGroupFile, VersionOneCarriesMatrixAndOldFlags)
{
    // Old flags: bit 2 selectable; bits 1 (visible) and 4 (deletable) clear.
    osg::ref_ptr<iGeometricGroup> back =
        readRecord(recordStart(1) + matrixBytes(7, 8, 9) + i32(0x4) + colourBytes(1, 0, 0, 1));
    EXPECT_EQ(back->getPosition(), osg::Vec3f(7, 8, 9));
    std::bitset<32> flags = back->getFlags();
    EXPECT_FALSE(flags.test(0));
    EXPECT_TRUE(flags.test(1));
    EXPECT_FALSE(flags.test(2));
    flags.set(0).set(2);
    EXPECT_TRUE(flags.all());
    EXPECT_FALSE(back->get_visible());
    EXPECT_TRUE(back->get_selectable());
    EXPECT_EQ(back->getNodeMask(), 0u);
    EXPECT_EQ(back->get_clr(), osg::Vec4f(1, 0, 0, 1));
    EXPECT_TRUE(back->get_usecolor());

    // Stored visible and deletable, not selectable.
    back = readRecord(recordStart(1) + matrixBytes(0, 0, 0) + i32(0x12) + colourBytes(1, 0, 0, 1));
    EXPECT_TRUE(back->get_visible());
    EXPECT_FALSE(back->get_selectable());
    EXPECT_TRUE(back->isFlagSet(2));
}

TEST(GeometricGroupFile, UnknownLevelVersionReadsTheColourOnly)
{
    osg::ref_ptr<iGeometricGroup> group = new iGeometricGroup;
    iMemoryBuffer buffer(colourBytes(0, 0, 0, 1) + std::string(1, '\0'));
    iInStream stream(&buffer);
    group->read(stream, 9);
    EXPECT_EQ(group->get_clr(), osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(stream.bytesLeft(), 1);
    EXPECT_TRUE(group->get_usecolor());
}

namespace {

// The first object of a layer, of the wanted class.
template <class T>
T* firstIn(iNodeLayer* layer)
{
    NodeList objects;
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    return objects.empty() ? nullptr : dynamic_cast<T*>(objects.front().get());
}

} // namespace

typedef LayersTest GeometricDocument;

TEST_F(GeometricDocument, MaterialLinkSurvivesSaveAndLoad)
{
    iNodeLayer* materials = iLayersManager::registerNodeLayerClass("iMaterialsLayer", "materials");
    iNodeLayer* images = iLayersManager::registerNodeLayerClass("iImagesLayer", "images");
    osg::ref_ptr<iImageGroup> image = make<iImageGroup>("grain");
    images->addObject(image.get(), true);
    osg::ref_ptr<iMaterialGroup> material = make<iMaterialGroup>("oak");
    material->set_textureimage(image.get());
    materials->addObject(material.get(), true);
    osg::ref_ptr<iGeometricGroup> group = make<iGeometricGroup>("table");
    group->set_material(material.get());
    group->set_usematerial(true);
    group->setColor(osg::Vec4f(0, 0, 1, 1));
    a->addObject(group.get(), true);
    long const materialId = material->getUniqueId();
    EXPECT_EQ(materialUidOf(group.get()), materialId);

    // An empty link keeps the old id.
    group->set_material(iMaterialGroupObserver());
    EXPECT_EQ(materialUidOf(group.get()), materialId);

    std::string const bytes = save();
    group = nullptr;
    material = nullptr;
    image = nullptr;
    load(bytes);

    iGeometricGroup* loaded = firstIn<iGeometricGroup>(a);
    iMaterialGroup* loadedMaterial = firstIn<iMaterialGroup>(materials);
    iImageGroup* loadedImage = firstIn<iImageGroup>(images);
    ASSERT_TRUE(loaded && loadedMaterial && loadedImage);
    EXPECT_EQ(loaded->get_material().get(), loadedMaterial);
    EXPECT_EQ(loadedMaterial->get_textureimage().get(), loadedImage);
    EXPECT_TRUE(loaded->get_usematerial());
    EXPECT_EQ(loaded->getColor(), osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(loaded->get_name(), "table");

    // With the material gone the link is empty after a load, and its id is
    // written again.
    materials->removeObject(loadedMaterial, true);
    load(save());
    loaded = firstIn<iGeometricGroup>(a);
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->get_material().valid());
    EXPECT_EQ(materialUidOf(loaded), materialId);
}
