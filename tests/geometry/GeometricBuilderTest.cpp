#include "geometry/BuilderTestSupport.h"

#include <iModelStage/geometry/iGeometricBuilder.h>

#include <osg/AutoTransform>
#include <osg/LineStipple>
#include <osg/PolygonMode>
#include <osgText/Font>
#include <osgText/Text>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <vector>

namespace {

constexpr float kTolerance = 1e-5f;
unsigned const kForcedOn = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;

std::vector<osg::Vec2> points(osg::Vec2Array const& array)
{
    return std::vector<osg::Vec2>(array.begin(), array.end());
}

void expectNear(osg::Vec2 const& actual, osg::Vec2 const& expected)
{
    EXPECT_NEAR(actual.x(), expected.x(), kTolerance);
    EXPECT_NEAR(actual.y(), expected.y(), kTolerance);
}

void expectNear(osg::Vec3f const& actual, osg::Vec3f const& expected)
{
    EXPECT_NEAR(actual.x(), expected.x(), kTolerance);
    EXPECT_NEAR(actual.y(), expected.y(), kTolerance);
    EXPECT_NEAR(actual.z(), expected.z(), kTolerance);
}

std::vector<unsigned> indicesOf(osg::PrimitiveSet const* set)
{
    std::vector<unsigned> out;
    for (unsigned i = 0; i < set->getNumIndices(); ++i)
        out.push_back(set->index(i));
    return out;
}

osg::Vec3Array* verticesOf(osg::Geometry* geometry)
{
    return dynamic_cast<osg::Vec3Array*>(geometry->getVertexArray());
}

osg::Vec4f overallColor(osg::Geometry* geometry)
{
    auto* colors = dynamic_cast<osg::Vec4Array*>(geometry->getColorArray());
    EXPECT_TRUE(colors && colors->size() == 1 && colors->getBinding() == osg::Array::BIND_OVERALL);
    return colors && !colors->empty() ? colors->front() : osg::Vec4f();
}

osg::Geometry* firstGeometry(osg::Node* node)
{
    osg::Geode* geode = node ? node->asGeode() : nullptr;
    return geode && geode->getNumDrawables() > 0 ? geode->getDrawable(0)->asGeometry() : nullptr;
}

} // namespace

TEST(GeometricBuilderOutline, ArcStandsInThePositiveQuadrantAndCloses)
{
    osg::ref_ptr<osg::Vec2Array> arc = new osg::Vec2Array;
    ASSERT_TRUE(iGeometricBuilder::makeArc(arc, 2.0, 1.0, 0.0, 2.0 * osg::PI, 30));
    ASSERT_EQ(arc->size(), 32u);
    expectNear((*arc)[0], {4.0f, 1.0f});
    expectNear((*arc)[30], {4.0f, 1.0f});
    EXPECT_EQ((*arc)[31], (*arc)[0]);
    // A quarter turn further: the top of the ellipse centred on (rx, ry).
    expectNear((*arc)[15], {0.0f, 1.0f});
    for (osg::Vec2 const& p : *arc) {
        EXPECT_GE(p.x(), -kTolerance);
        EXPECT_GE(p.y(), -kTolerance);
    }

    // A part arc also closes back to its first point; its segment count is
    // scaled from the full turn.
    ASSERT_TRUE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, osg::PI / 2.0, 4));
    ASSERT_EQ(arc->size(), 3u);
    expectNear((*arc)[0], {2.0f, 1.0f});
    expectNear((*arc)[1], {1.0f, 2.0f});
    EXPECT_EQ((*arc)[2], (*arc)[0]);

    // An end beyond a full turn is cut to one turn, with the count taken
    // from the whole range.
    ASSERT_TRUE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, 10.0, 8));
    ASSERT_EQ(arc->size(), 14u);
    expectNear((*arc)[12], {2.0f, 1.0f});
    expectNear((*arc)[3], {1.0f, 2.0f});
}

TEST(GeometricBuilderOutline, ArcGuardsLeaveTheArray)
{
    osg::ref_ptr<osg::Vec2Array> arc = new osg::Vec2Array;
    arc->push_back(osg::Vec2(7, 7));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 1.0, 1.0, 30));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 0.0, 1.0, 0.0, 1.0, 30));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, -1.0, 0.0, 1.0, 30));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, 1.0, 2));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, NAN, 30));
    // No whole segment, or an absurd number of them.
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, 0.1, 3));
    EXPECT_FALSE(iGeometricBuilder::makeArc(arc, 1.0, 1.0, 0.0, 1e12, 30));
    EXPECT_FALSE(iGeometricBuilder::makeArc(nullptr, 1.0, 1.0, 0.0, 1.0, 30));
    EXPECT_FALSE(iGeometricBuilder::makeArcBySegmentLength(arc, 0.0, 1.0, 1.0, 0.0, 1.0));
    // floor(1 * 1 / 0.5) = 2 segments are too few.
    EXPECT_FALSE(iGeometricBuilder::makeArcBySegmentLength(arc, 0.5, 1.0, 1.0, 0.0, 1.0));
    EXPECT_EQ(points(*arc), std::vector<osg::Vec2>{osg::Vec2(7, 7)});

    ASSERT_TRUE(iGeometricBuilder::makeArcBySegmentLength(arc, 0.5, 1.0, 1.0, 0.0, osg::PI));
    ASSERT_EQ(arc->size(), 8u);
    expectNear((*arc)[6], {0.0f, 1.0f});
    EXPECT_EQ((*arc)[7], (*arc)[0]);
}

TEST(GeometricBuilderOutline, RectangleTakesTheHeightFirst)
{
    osg::ref_ptr<osg::Vec2Array> outline = new osg::Vec2Array;
    outline->push_back(osg::Vec2(9, 9));
    ASSERT_TRUE(iGeometricBuilder::makeRectangle(outline, 2.0, 3.0));
    EXPECT_EQ(points(*outline), (std::vector<osg::Vec2>{{0, 0}, {3, 0}, {3, 2}, {0, 2}, {0, 0}}));
    EXPECT_FALSE(iGeometricBuilder::makeRectangle(outline, 0.0, 3.0));
    EXPECT_FALSE(iGeometricBuilder::makeRectangle(outline, 2.0, 0.0));
    EXPECT_EQ(outline->size(), 5u);
}

TEST(GeometricBuilderOutline, RoundedRectangleIsCentredWithFourSegmentCorners)
{
    osg::ref_ptr<osg::Vec2Array> outline = new osg::Vec2Array;
    outline->push_back(osg::Vec2(9, 9));
    ASSERT_TRUE(iGeometricBuilder::makeRoundedRectangle(outline, 4.0, 2.0, 0.0, 0.5));
    EXPECT_EQ(points(*outline), (std::vector<osg::Vec2>{{-2, -1}, {2, -1}, {2, 1}, {-2, 1}, {-2, -1}}));

    EXPECT_FALSE(iGeometricBuilder::makeRoundedRectangle(outline, 4.0, 2.0, 4.0, 0.5));
    EXPECT_FALSE(iGeometricBuilder::makeRoundedRectangle(outline, 4.0, 2.0, 0.5, 2.0));
    EXPECT_FALSE(iGeometricBuilder::makeRoundedRectangle(outline, 4.0, 2.0, -0.5, 0.5));
    EXPECT_FALSE(iGeometricBuilder::makeRoundedRectangle(outline, 0.0, 2.0, 0.5, 0.5));
    EXPECT_EQ(outline->size(), 5u);

    ASSERT_TRUE(iGeometricBuilder::makeRoundedRectangle(outline, 4.0, 2.0, 0.5, 0.5));
    ASSERT_EQ(outline->size(), 21u);
    std::vector<osg::Vec2> const p = points(*outline);
    expectNear(p[0], {-1.5f, -1.0f});
    // Bottom right corner, from straight down to straight right.
    expectNear(p[1], {1.5f, -1.0f});
    float const c = static_cast<float>(std::cos(osg::PI / 8.0)) * 0.5f;
    float const s = static_cast<float>(std::sin(osg::PI / 8.0)) * 0.5f;
    expectNear(p[2], {1.5f + s, -0.5f - c});
    expectNear(p[5], {2.0f, -0.5f});
    // Top right, top left.
    expectNear(p[6], {2.0f, 0.5f});
    expectNear(p[10], {1.5f, 1.0f});
    expectNear(p[11], {-1.5f, 1.0f});
    expectNear(p[15], {-2.0f, 0.5f});
    // Bottom left stops one step before its end, which is the first point.
    expectNear(p[16], {-2.0f, -0.5f});
    expectNear(p[19], {-1.5f - s, -0.5f - c});
    EXPECT_EQ(p[20], p[0]);
}

TEST(GeometricBuilderVertices, NormalAndAlignment)
{
    osg::Vec3f normal(5, 5, 5);
    osg::ref_ptr<osg::Vec3Array> square = vec3s({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    ASSERT_TRUE(iGeometricBuilder::computeNormal(*square, normal));
    expectNear(normal, {0, 0, 1});
    std::reverse(square->begin(), square->end());
    ASSERT_TRUE(iGeometricBuilder::computeNormal(*square, normal));
    expectNear(normal, {0, 0, -1});
    osg::ref_ptr<osg::Vec3Array> straight = vec3s({{0, 0, 0}, {1, 1, 0}, {-2, -2, 0}, {3, 3, 0}});
    EXPECT_FALSE(iGeometricBuilder::computeNormal(*straight, normal));
    EXPECT_EQ(normal, osg::Vec3f(0, 0, 0));
    normal.set(5, 5, 5);
    EXPECT_FALSE(iGeometricBuilder::computeNormal(*vec3s({{0, 0, 0}, {1, 0, 0}}), normal));
    EXPECT_EQ(normal, osg::Vec3f(0, 0, 0));

    // A point behind the first vertex is still on the line.
    EXPECT_TRUE(iGeometricBuilder::alignedVerts(*straight, 0.01));
    EXPECT_TRUE(iGeometricBuilder::alignedVerts(*vec3s({{0, 0, 0}, {1, 0, 0}}), 0.0));
    osg::ref_ptr<osg::Vec3Array> bent = vec3s({{0, 0, 0}, {1, 0, 0}, {10, 0.5f, 0}});
    EXPECT_FALSE(iGeometricBuilder::alignedVerts(*bent, 0.01));
    EXPECT_TRUE(iGeometricBuilder::alignedVerts(*bent, 0.1));
}

TEST(GeometricBuilderDrawables, LineIsDashed)
{
    osg::ref_ptr<osg::Geometry> line =
        iGeometricBuilder::buildLine(osg::Vec3f(1, 2, 3), osg::Vec3f(4, 5, 6), osg::Vec4f(0, 1, 0, 1));
    ASSERT_TRUE(verticesOf(line));
    EXPECT_EQ(std::vector<osg::Vec3f>(verticesOf(line)->begin(), verticesOf(line)->end()),
              (std::vector<osg::Vec3f>{{1, 2, 3}, {4, 5, 6}}));
    ASSERT_EQ(line->getNumPrimitiveSets(), 1u);
    EXPECT_EQ(line->getPrimitiveSet(0)->getMode(), GLenum(GL_LINES));
    EXPECT_EQ(indicesOf(line->getPrimitiveSet(0)), (std::vector<unsigned>{0, 1}));
    EXPECT_EQ(overallColor(line), osg::Vec4f(0, 1, 0, 1));
    osg::StateSet* stateSet = line->getStateSet();
    ASSERT_TRUE(stateSet);
    auto* stipple = dynamic_cast<osg::LineStipple*>(stateSet->getAttribute(osg::StateAttribute::LINESTIPPLE));
    ASSERT_TRUE(stipple);
    EXPECT_EQ(stipple->getFactor(), 1);
    EXPECT_EQ(stipple->getPattern(), 0x00FF);
    EXPECT_EQ(stateSet->getMode(GL_LINE_STIPPLE), kForcedOn);
}

TEST(GeometricBuilderDrawables, ArrowHeadIsClampedToTheArrow)
{
    osg::ref_ptr<osg::Geometry> arrow = iGeometricBuilder::buildArrow(
        osg::Vec3f(0, 0, 0), osg::Vec3f(10, 0, 0), osg::Vec3f(0, 0, 2), 2.0, 1.0, osg::Vec4f(1, 0, 0, 1));
    osg::Vec3Array* v = verticesOf(arrow);
    ASSERT_TRUE(v && v->size() == 4);
    expectNear((*v)[0], {0, 0, 0});
    expectNear((*v)[1], {10, 0, 0});
    expectNear((*v)[2], {8, 0.5f, 0});
    expectNear((*v)[3], {8, -0.5f, 0});
    ASSERT_EQ(arrow->getNumPrimitiveSets(), 2u);
    EXPECT_EQ(arrow->getPrimitiveSet(0)->getMode(), GLenum(GL_LINES));
    EXPECT_EQ(indicesOf(arrow->getPrimitiveSet(0)), (std::vector<unsigned>{0, 1}));
    EXPECT_EQ(arrow->getPrimitiveSet(1)->getMode(), GLenum(GL_TRIANGLES));
    EXPECT_EQ(indicesOf(arrow->getPrimitiveSet(1)), (std::vector<unsigned>{1, 2, 3}));
    auto* normals = dynamic_cast<osg::Vec3Array*>(arrow->getNormalArray());
    ASSERT_TRUE(normals && normals->size() == 1);
    EXPECT_EQ(normals->getBinding(), osg::Array::BIND_OVERALL);
    expectNear(normals->front(), {0, 0, 1});
    EXPECT_EQ(overallColor(arrow), osg::Vec4f(1, 0, 0, 1));

    osg::ref_ptr<osg::Geometry> stubby = iGeometricBuilder::buildArrow(
        osg::Vec3f(1, 0, 0), osg::Vec3f(1, 3, 0), osg::Vec3f(0, 0, 1), 20.0, 2.0, osg::Vec4f(1, 1, 1, 1));
    v = verticesOf(stubby);
    ASSERT_TRUE(v && v->size() == 4);
    // Head as long as the arrow, across it along up x direction.
    expectNear((*v)[2], {0, 0, 0});
    expectNear((*v)[3], {2, 0, 0});
}

TEST(GeometricBuilderDrawables, BoxFacesKeepTheirNormals)
{
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(new osg::Geometry);
    iGeometricBuilder::buildBox(geode, 1.0, 2.0, 3.0);
    iGeometricBuilder::buildBox(geode, 1.0, 2.0, 3.0);
    ASSERT_EQ(geode->getNumDrawables(), 1u);
    osg::Geometry* box = geode->getDrawable(0)->asGeometry();
    ASSERT_TRUE(box);
    osg::Vec3Array* v = verticesOf(box);
    ASSERT_TRUE(v);
    EXPECT_EQ(std::vector<osg::Vec3f>(v->begin(), v->end()),
              (std::vector<osg::Vec3f>{{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {0, 2, 0}, {0, 0, 3}, {1, 0, 3}, {1, 2, 3},
                                       {0, 2, 3}}));
    std::vector<std::vector<unsigned>> const faces{{0, 1, 2, 3}, {4, 5, 6, 7}, {4, 5, 1, 0},
                                                   {5, 1, 2, 6}, {6, 2, 3, 7}, {3, 0, 4, 7}};
    ASSERT_EQ(box->getNumPrimitiveSets(), faces.size());
    for (unsigned i = 0; i < faces.size(); ++i) {
        EXPECT_EQ(box->getPrimitiveSet(i)->getMode(), GLenum(GL_QUADS));
        EXPECT_EQ(indicesOf(box->getPrimitiveSet(i)), faces[i]);
    }
    auto* normals = dynamic_cast<osg::Vec3Array*>(box->getNormalArray());
    ASSERT_TRUE(normals);
    EXPECT_EQ(normals->getBinding(), osg::Array::BIND_PER_PRIMITIVE_SET);
    EXPECT_EQ(std::vector<osg::Vec3f>(normals->begin(), normals->end()),
              (std::vector<osg::Vec3f>{{0, 0, 1}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}));
}

TEST(GeometricBuilderLabel, FontResolvesToAFreeFont)
{
    std::string const found = osgText::findFontFile(iGeometricBuilder::labelFont);
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(std::filesystem::canonical(found), "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
}

TEST(GeometricBuilderLabel, SceneAndContrast)
{
    osg::ref_ptr<osg::PositionAttitudeTransform> target = new osg::PositionAttitudeTransform;
    target->addChild(new osg::Group);
    osg::Vec4f const white(1, 1, 1, 1), black(0, 0, 0, 1), red(1, 0, 0, 1), blue(0, 0, 1, 1);
    iGeometricBuilder::buildLabel(target, "i", 2.0, white, true, red, blue);
    iGeometricBuilder::buildLabel(target, "i", 2.0, white, true, red, blue);

    ASSERT_EQ(target->getNumChildren(), 1u);
    auto* facing = dynamic_cast<osg::AutoTransform*>(target->getChild(0));
    ASSERT_TRUE(facing);
    EXPECT_EQ(facing->getAutoRotateMode(), osg::AutoTransform::ROTATE_TO_SCREEN);
    EXPECT_TRUE(facing->getAutoScaleToScreen());
    EXPECT_EQ(facing->getMinimumScale(), 0.0);
    EXPECT_EQ(facing->getMaximumScale(), double(FLT_MAX));
    ASSERT_EQ(facing->getNumChildren(), 3u);

    osg::Geode* textGeode = facing->getChild(0)->asGeode();
    ASSERT_TRUE(textGeode && textGeode->getNumDrawables() == 1);
    auto* text = dynamic_cast<osgText::Text*>(textGeode->getDrawable(0));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->getText().createUTF8EncodedString(), "i");
    EXPECT_EQ(text->getCharacterHeight(), 2.0f);
    EXPECT_EQ(text->getAlignment(), osgText::Text::CENTER_CENTER);
    ASSERT_TRUE(text->getFont());
    EXPECT_NE(text->getFont(), osgText::Font::getDefaultFont());
    // Light background: black text and border, whatever was asked.
    EXPECT_EQ(text->getColor(), black);

    osg::Geometry* background = firstGeometry(facing->getChild(1));
    osg::Geometry* border = firstGeometry(facing->getChild(2));
    ASSERT_TRUE(background && border);
    EXPECT_EQ(overallColor(background), white);
    EXPECT_EQ(overallColor(border), black);
    ASSERT_EQ(background->getNumPrimitiveSets(), 1u);
    EXPECT_EQ(background->getPrimitiveSet(0)->getMode(), GLenum(GL_POLYGON));
    EXPECT_EQ(background->getPrimitiveSet(0)->getNumIndices(), 21u);
    // A narrow text still gets a label at least as wide as high.
    osg::BoundingBox const outline = background->getBoundingBox();
    EXPECT_GE(outline.xMax() - outline.xMin(), outline.yMax() - outline.yMin() - kTolerance);
    EXPECT_EQ(outline.zMin(), 0.0f);
    EXPECT_EQ(outline.zMax(), 0.0f);

    // The border is the same outline drawn as lines.
    osg::StateSet* frame = border->getParent(0)->getStateSet();
    ASSERT_TRUE(frame);
    auto* mode = dynamic_cast<osg::PolygonMode*>(frame->getAttribute(osg::StateAttribute::POLYGONMODE));
    ASSERT_TRUE(mode);
    EXPECT_EQ(mode->getMode(osg::PolygonMode::FRONT_AND_BACK), osg::PolygonMode::LINE);

    // Dark backgrounds get white; without contrast the colours stay.
    struct Case {
        osg::Vec4f background;
        bool autoContrast;
        osg::Vec4f text;
    };
    for (Case const& c : {Case{black, true, white}, Case{blue, true, white}, Case{{0.4f, 0.4f, 0.4f, 1}, true, white},
                          Case{{0.6f, 0.6f, 0.6f, 1}, true, black}, Case{{1, 1, 0, 1}, true, black},
                          Case{white, false, red}}) {
        iGeometricBuilder::buildLabel(target, "Label", 1.0, c.background, c.autoContrast, red, c.text);
        auto* again = dynamic_cast<osg::Group*>(target->getChild(0));
        ASSERT_TRUE(again && again->getNumChildren() == 3);
        auto* label = dynamic_cast<osgText::Text*>(again->getChild(0)->asGeode()->getDrawable(0));
        ASSERT_TRUE(label);
        EXPECT_EQ(label->getColor(), c.text);
        EXPECT_EQ(overallColor(firstGeometry(again->getChild(2))), c.text);
    }
}

TEST(GeometricBuilderLabel, EmptyTextHasNoBackground)
{
    osg::ref_ptr<osg::PositionAttitudeTransform> target = new osg::PositionAttitudeTransform;
    iGeometricBuilder::buildLabel(target, "", 1.0, osg::Vec4f(1, 1, 1, 1), true, {}, {});
    ASSERT_EQ(target->getNumChildren(), 1u);
    EXPECT_EQ(target->getChild(0)->asGroup()->getNumChildren(), 1u);
    ASSERT_TRUE(target->getStateSet());
    EXPECT_EQ(target->getStateSet()->getBinNumber(), 9999);
}
