#include "workbench/ShapeTestSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbCylinder.h"
#include "shapes/wbLabel.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/dimensioning/iLeader.h>
#include <iModelStage/dimensioning/iLinearQuote.h>

#include <osgText/Text>

namespace {

class ShapeRenderers : public testing::Test {
protected:
    void SetUp() override { wbRegisterClasses(); }

    // The geometries of a group's renderer after a forced update.
    std::vector<osg::Geometry*> built(iGeometricGroup* group, std::string const& renderer)
    {
        group->updateGeometry(true);
        osg::Group* node = rendererOf(group, renderer);
        EXPECT_NE(node, nullptr) << renderer;
        return geometriesBelow(node);
    }

    // The number of indices of the primitive sets of a mode.
    static unsigned int indices(osg::Geometry* geometry, GLenum mode)
    {
        unsigned int count = 0;
        for (unsigned int i = 0; i < geometry->getNumPrimitiveSets(); ++i)
            if (geometry->getPrimitiveSet(i)->getMode() == mode)
                count += geometry->getPrimitiveSet(i)->getNumIndices();
        return count;
    }

    static osgText::Text* textBelow(osg::Group* renderer)
    {
        for (unsigned int i = 0; renderer && i < renderer->getNumChildren(); ++i)
            if (osg::Geode* geode = renderer->getChild(i)->asGeode())
                if (auto* text = dynamic_cast<osgText::Text*>(geode->getDrawable(0)))
                    return text;
        return nullptr;
    }
};

bool near(osg::Vec3f const& a, osg::Vec3f const& b, float tolerance = 1e-5f)
{
    return (a - b).length() <= tolerance;
}

} // namespace

TEST_F(ShapeRenderers, BoxSpansItsSizeFromTheOriginInItsColour)
{
    osg::ref_ptr<wbBox> box = new wbBox;
    box->setSize(osg::Vec3d(2, 3, 0.5));
    std::vector<osg::Geometry*> geometries = built(box.get(), "wbBoxRenderer");
    ASSERT_EQ(geometries.size(), 1u);
    EXPECT_EQ(vertexCount(geometries[0]), 8u);
    EXPECT_EQ(indices(geometries[0], GL_QUADS), 24u);
    osg::BoundingBox const bounds = boundsOf(rendererOf(box.get(), "wbBoxRenderer"));
    EXPECT_TRUE(near(bounds._min, osg::Vec3f(0, 0, 0)));
    EXPECT_TRUE(near(bounds._max, osg::Vec3f(2, 3, 0.5f)));
    // The colour is the group's shared one: a new colour needs no rebuild.
    EXPECT_EQ(geometries[0]->getColorArray(), box->getSharedColorArray());

    // A size change builds anew.
    box->set_sizex(5);
    box->updateGeometry(true);
    EXPECT_FLOAT_EQ(boundsOf(rendererOf(box.get(), "wbBoxRenderer")).xMax(), 5.0f);
}

TEST_F(ShapeRenderers, PolylineDrawsOneSegmentPerPairAndClosesOnRequest)
{
    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    polyline->addVertex(osg::Vec3f(0, 0, 0));
    EXPECT_TRUE(built(polyline.get(), "wbPolylineRenderer").empty());

    for (osg::Vec3f const& v : {osg::Vec3f(4, 0, 0), osg::Vec3f(4, 3, 0), osg::Vec3f(0, 3, 1)})
        polyline->addVertex(v);
    std::vector<osg::Geometry*> open = built(polyline.get(), "wbPolylineRenderer");
    ASSERT_EQ(open.size(), 1u);
    EXPECT_EQ(vertexCount(open[0]), 4u);
    EXPECT_EQ(indices(open[0], GL_LINES), 6u);
    EXPECT_EQ(open[0]->getColorArray(), polyline->getSharedColorArray());

    polyline->set_closed(true);
    std::vector<osg::Geometry*> closed = built(polyline.get(), "wbPolylineRenderer");
    ASSERT_EQ(closed.size(), 1u);
    EXPECT_EQ(indices(closed[0], GL_LINES), 8u);
    osg::BoundingBox const bounds = boundsOf(rendererOf(polyline.get(), "wbPolylineRenderer"));
    EXPECT_TRUE(near(bounds._max, osg::Vec3f(4, 3, 1)));

    // Two closed points are still one segment.
    osg::ref_ptr<osg::Vec3Array> two = new osg::Vec3Array;
    two->push_back(osg::Vec3f(0, 0, 0));
    two->push_back(osg::Vec3f(1, 0, 0));
    polyline->setVertices(*two);
    EXPECT_EQ(indices(built(polyline.get(), "wbPolylineRenderer")[0], GL_LINES), 2u);
}

TEST_F(ShapeRenderers, CylinderStandsOnItsBaseCircle)
{
    osg::ref_ptr<wbCylinder> cylinder = new wbCylinder;
    cylinder->set_radius(1.5);
    cylinder->set_height(4);
    cylinder->set_segments(12);
    std::vector<osg::Geometry*> geometries = built(cylinder.get(), "wbCylinderRenderer");
    ASSERT_EQ(geometries.size(), 1u);
    EXPECT_EQ(vertexCount(geometries[0]), 48u);
    EXPECT_EQ(indices(geometries[0], GL_QUADS), 48u);
    EXPECT_EQ(indices(geometries[0], GL_POLYGON), 24u);
    osg::BoundingBox const bounds = boundsOf(rendererOf(cylinder.get(), "wbCylinderRenderer"));
    EXPECT_TRUE(near(bounds._min, osg::Vec3f(-1.5f, -1.5f, 0), 1e-4f));
    EXPECT_TRUE(near(bounds._max, osg::Vec3f(1.5f, 1.5f, 4), 1e-4f));
}

TEST_F(ShapeRenderers, LabelShowsItsTextAndAnAnchor)
{
    osg::ref_ptr<wbLabel> label = new wbLabel;
    label->set_text("Pilastro");
    label->set_height(0.4);
    label->set_clr(osg::Vec4f(0, 1, 0, 1));
    std::vector<osg::Geometry*> geometries = built(label.get(), "wbLabelRenderer");
    ASSERT_EQ(geometries.size(), 1u);
    EXPECT_EQ(indices(geometries[0], GL_POINTS), 1u);
    osgText::Text* text = textBelow(rendererOf(label.get(), "wbLabelRenderer"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->getText().createUTF8EncodedString(), "Pilastro");
    EXPECT_FLOAT_EQ(text->getCharacterHeight(), 0.4f);
    EXPECT_EQ(text->getColor(), osg::Vec4(0, 1, 0, 1));

    // Text keeps its colour in the drawable: a colour change rebuilds it.
    label->set_clr(osg::Vec4f(1, 0, 1, 1));
    EXPECT_EQ(textBelow(rendererOf(label.get(), "wbLabelRenderer"))->getColor(), osg::Vec4(1, 0, 1, 1));
}

TEST_F(ShapeRenderers, LinearQuoteShowsLinesArrowsAndTheMeasure)
{
    osg::ref_ptr<iLinearQuote> quote = new iLinearQuote;
    quote->setNormal(osg::Vec3f(0, 0, 1));
    quote->setStartPoint(osg::Vec3f(1, 1, 0));
    quote->setEndPoint(osg::Vec3f(5, 1, 0));
    quote->set_offset(2.0);
    quote->set_extlineoffset(0.25);
    std::vector<osg::Geometry*> geometries = built(quote.get(), "wbLinearQuoteRenderer");
    ASSERT_EQ(geometries.size(), 1u);
    // Dimension line and two extension lines, two arrowheads.
    EXPECT_EQ(indices(geometries[0], GL_LINES), 6u);
    EXPECT_EQ(indices(geometries[0], GL_TRIANGLES), 6u);
    osg::Vec3Array const& v = *static_cast<osg::Vec3Array*>(geometries[0]->getVertexArray());
    EXPECT_TRUE(near(v[0], osg::Vec3f(0, 2, 0)));
    EXPECT_TRUE(near(v[1], osg::Vec3f(4, 2, 0)));
    // Extension lines leave the measured points a gap.
    EXPECT_TRUE(near(v[2], osg::Vec3f(0, 0.25f, 0)));
    EXPECT_TRUE(near(v[4], osg::Vec3f(4, 0.25f, 0)));
    // Arrowheads point outward from the line's ends.
    EXPECT_TRUE(near(v[6], v[0]));
    EXPECT_GT(v[7].x(), v[0].x());
    EXPECT_TRUE(near(v[9], v[1]));
    EXPECT_LT(v[10].x(), v[1].x());

    EXPECT_EQ(quote->getText(), "4.00");
    osgText::Text* text = textBelow(rendererOf(quote.get(), "wbLinearQuoteRenderer"));
    ASSERT_EQ(text, quote->getTextDrawable());
    EXPECT_GT(text->getPosition().y(), 2.0f);
    EXPECT_FLOAT_EQ(text->getPosition().x(), 2.0f);

    // Below the segment, the extension lines turn with the dimension line.
    quote->set_offset(-1.0);
    osg::Vec3Array const& below =
        *static_cast<osg::Vec3Array*>(built(quote.get(), "wbLinearQuoteRenderer")[0]->getVertexArray());
    EXPECT_TRUE(near(below[2], osg::Vec3f(0, -0.25f, 0)));
    EXPECT_LT(below[3].y(), -1.0f);
}

TEST_F(ShapeRenderers, LeaderRisesToItsLandingAndFlips)
{
    osg::ref_ptr<iLeader> leader = new iLeader;
    leader->set_bleaderline(1);
    leader->set_hleaderline(2);
    leader->set_lenlandingline(3);
    leader->setText("Nota");
    std::vector<osg::Geometry*> geometries = built(leader.get(), "wbLeaderRenderer");
    ASSERT_EQ(geometries.size(), 1u);
    osg::Vec3Array const& v = *static_cast<osg::Vec3Array*>(geometries[0]->getVertexArray());
    EXPECT_TRUE(near(v[1], osg::Vec3f(1, 2, 0)));
    EXPECT_TRUE(near(v[2], osg::Vec3f(4, 2, 0)));
    EXPECT_EQ(indices(geometries[0], GL_LINES), 4u);
    EXPECT_EQ(indices(geometries[0], GL_TRIANGLES), 3u);
    ASSERT_NE(textBelow(rendererOf(leader.get(), "wbLeaderRenderer")), nullptr);

    leader->set_flip(true);
    osg::Vec3Array const& flipped =
        *static_cast<osg::Vec3Array*>(built(leader.get(), "wbLeaderRenderer")[0]->getVertexArray());
    EXPECT_TRUE(near(flipped[2], osg::Vec3f(-4, 2, 0)));
}
