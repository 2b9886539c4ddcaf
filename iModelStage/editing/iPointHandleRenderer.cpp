#include <iModelStage/editing/iPointHandleRenderer.h>

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/AutoTransform>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>

#include <cfloat>

I_REGISTER_CLASS(iPointHandleRenderer)

namespace {

// Half the side of the square, in pixels.
constexpr float kHalfSide = 3.0f;
// Half the length of the unused cross of the outline.
constexpr float kCross = 8.0f;

osg::Vec3Array* squareCorners()
{
    auto* corners = new osg::Vec3Array;
    corners->push_back(osg::Vec3f(-kHalfSide, -kHalfSide, 0.0f));
    corners->push_back(osg::Vec3f(kHalfSide, -kHalfSide, 0.0f));
    corners->push_back(osg::Vec3f(kHalfSide, kHalfSide, 0.0f));
    corners->push_back(osg::Vec3f(-kHalfSide, kHalfSide, 0.0f));
    return corners;
}

osg::DrawElementsUInt* quadOfFirstFour()
{
    auto* quad = new osg::DrawElementsUInt(GL_QUADS);
    for (unsigned int i = 0; i < 4; ++i)
        quad->push_back(i);
    return quad;
}

// A geode holding the geometry, left out of snapping.
osg::Geode* unsnappableGeode(osg::Geometry* geometry)
{
    auto* geode = new osg::Geode;
    geode->addDrawable(geometry);
    iNodeGroup::setNodeFlag(geode, 4, false);
    return geode;
}

// One point at the handle's origin, so that a pick finds the handle at
// any zoom.
osg::Geode* buildPickGeode()
{
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(new osg::Vec3Array(1, new osg::Vec3f(0.0f, 0.0f, 0.0f)));
    auto* point = new osg::DrawElementsUInt(GL_POINTS);
    point->push_back(0);
    geometry->addPrimitiveSet(point);
    auto* geode = new osg::Geode;
    geode->addDrawable(geometry.get());
    return geode;
}

osg::Geode* buildSquare(osg::Geometry* square)
{
    square->setVertexArray(squareCorners());
    square->addPrimitiveSet(quadOfFirstFour());
    square->setNormalArray(new osg::Vec3Array(1, new osg::Vec3f(0.0f, 0.0f, 1.0f)), osg::Array::BIND_OVERALL);
    osg::Geode* geode = unsnappableGeode(square);
    // In front of the outline drawn on the same plane.
    geode->getOrCreateStateSet()->setAttributeAndModes(new osg::PolygonOffset(1.0f, 1.0f),
                                                       osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    return geode;
}

osg::Geode* buildOutline()
{
    osg::ref_ptr<osg::Vec3Array> vertices = squareCorners();
    vertices->push_back(osg::Vec3f(0.0f, -kCross, 0.0f));
    vertices->push_back(osg::Vec3f(0.0f, kCross, 0.0f));
    vertices->push_back(osg::Vec3f(-kCross, 0.0f, 0.0f));
    vertices->push_back(osg::Vec3f(kCross, 0.0f, 0.0f));
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(vertices.get());
    geometry->addPrimitiveSet(quadOfFirstFour());
    osg::Geode* geode = unsnappableGeode(geometry.get());

    osg::StateSet* state = geode->getOrCreateStateSet();
    state->setAttribute(new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE));
    auto* material = new osg::Material;
    material->setColorMode(osg::Material::OFF);
    osg::Vec4f const black(0.0f, 0.0f, 0.0f, 1.0f);
    material->setAmbient(osg::Material::FRONT_AND_BACK, black);
    material->setDiffuse(osg::Material::FRONT_AND_BACK, black);
    material->setSpecular(osg::Material::FRONT_AND_BACK, black);
    material->setEmission(osg::Material::FRONT_AND_BACK, osg::Vec4f(0.15f, 0.15f, 0.15f, 1.0f));
    state->setAttribute(material);
    state->setMode(GL_LIGHTING, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::OVERRIDE);
    return geode;
}

// The glyph shared by every handle. Held for the whole process on
// purpose: GL objects must not be released after the GL managers are gone.
struct Glyph {
    osg::Geometry* square = nullptr;
    osg::AutoTransform* transform = nullptr;
};

Glyph& glyph()
{
    static Glyph shared;
    return shared;
}

void buildGlyph(osg::Geode* pick)
{
    Glyph& g = glyph();
    g.square = new osg::Geometry;
    g.square->ref();
    osg::Geode* square = buildSquare(g.square);
    osg::Geode* outline = buildOutline();

    g.transform = new osg::AutoTransform;
    g.transform->ref();
    // Sizes are screen pixels.
    g.transform->setAutoRotateMode(osg::AutoTransform::ROTATE_TO_SCREEN);
    g.transform->setAutoScaleToScreen(true);
    g.transform->setMinimumScale(0.0);
    g.transform->setMaximumScale(FLT_MAX);
    g.transform->addChild(square);
    g.transform->addChild(outline);
    g.transform->addChild(pick);
}

} // namespace

iPointHandleRenderer::iPointHandleRenderer() = default;

iPointHandleRenderer::iPointHandleRenderer(iPointHandleRenderer const& other, osg::CopyOp const& copyop)
    : iGeometryRenderer(other, copyop)
{
}

iPointHandleRenderer::~iPointHandleRenderer() = default;

void iPointHandleRenderer::rebuildGeometry(iGeometricGroup* group)
{
    if (!group)
        return;
    osg::ref_ptr<osg::Geode> pick = buildPickGeode();
    if (!glyph().transform)
        buildGlyph(pick.get());
    glyph().square->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
    addChild(glyph().transform);
}
