#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/viewing/iChromaticScaleBuilder.h>

#include <osg/Geometry>
#include <osg/PolygonMode>
#include <osgText/Text>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

osg::Vec4f const kBlack(0, 0, 0, 1);
osg::Vec4f const kBlue(0, 0, 1, 1);
osg::Vec4f const kRed(1, 0, 0, 1);

class TestScale : public iChromaticScaleBuilder {
public:
    using iChromaticScaleBuilder::buildGeode;
    using iChromaticScaleBuilder::getIndicator;
    using iChromaticScaleBuilder::getRoot;
    using iChromaticScaleBuilder::unitConvert;

    osg::ref_ptr<osg::Geode> build() { return buildGeode(); }
};

osg::Geometry* geometryAt(osg::Geode* geode, unsigned int i)
{
    return geode->getDrawable(i)->asGeometry();
}

std::vector<osgText::Text*> textsOf(osg::Geode* geode)
{
    std::vector<osgText::Text*> texts;
    for (unsigned int i = 0; i < geode->getNumDrawables(); ++i)
        if (auto* text = dynamic_cast<osgText::Text*>(geode->getDrawable(i)))
            texts.push_back(text);
    return texts;
}

std::vector<std::string> numbersOf(osg::Geode* geode)
{
    std::vector<std::string> numbers;
    std::vector<osgText::Text*> const texts = textsOf(geode);
    for (std::size_t i = 0; i + 1 < texts.size(); ++i)
        numbers.push_back(texts[i]->getText().createUTF8EncodedString());
    return numbers;
}

void expectColor(osg::Vec4f const& expected, osg::Vec4f const& actual)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(expected[i], actual[i], 1e-6) << i;
}

double timesTen(double value, void* calls)
{
    ++*static_cast<int*>(calls);
    return value * 10.0;
}

osg::ref_ptr<TestScale> scaleFrom0To10()
{
    osg::ref_ptr<TestScale> scale = new TestScale;
    scale->setValMin(0.0);
    scale->setValMax(10.0);
    scale->setNumSteps(5);
    return scale;
}

} // namespace

TEST(ChromaticScaleBuilder, BarOfGradedQuadsWithANumberAtEachStep)
{
    osg::ref_ptr<TestScale> scale = scaleFrom0To10();
    scale->setTitle("Pressione");
    osg::ref_ptr<osg::Geode> geode = scale->build();
    ASSERT_TRUE(geode.valid());
    ASSERT_EQ(1u + 6u + 1u, geode->getNumDrawables());

    osg::Geometry* bar = geometryAt(geode.get(), 0);
    ASSERT_NE(nullptr, bar);
    auto* vertices = dynamic_cast<osg::Vec3Array*>(bar->getVertexArray());
    auto* colors = dynamic_cast<osg::Vec4Array*>(bar->getColorArray());
    ASSERT_TRUE(vertices && colors);
    ASSERT_EQ(12u, vertices->size());
    ASSERT_EQ(12u, colors->size());
    EXPECT_EQ(osg::Vec3f(-15, 0, 0), (*vertices)[0]);
    EXPECT_EQ(osg::Vec3f(15, 0, 0), (*vertices)[1]);
    EXPECT_EQ(osg::Vec3f(-15, 160, 0), (*vertices)[4]);
    EXPECT_EQ(osg::Vec3f(15, 400, 0), (*vertices)[11]);
    // Value 2 lies 0.8 of the way from blue to cyan, value 4 0.6 from cyan to green.
    expectColor(kBlue, (*colors)[0]);
    expectColor(osg::Vec4f(0, 0.8f, 1, 1), (*colors)[3]);
    expectColor(osg::Vec4f(0, 1, 0.4f, 1), (*colors)[4]);
    expectColor(kRed, (*colors)[11]);
    EXPECT_EQ(osg::Array::BIND_PER_VERTEX, bar->getColorBinding());
    auto* strip = dynamic_cast<osg::DrawArrays*>(bar->getPrimitiveSet(0));
    ASSERT_NE(nullptr, strip);
    EXPECT_EQ(GLenum(GL_QUAD_STRIP), strip->getMode());
    EXPECT_EQ(12, strip->getCount());
    EXPECT_EQ(osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED,
              geode->getStateSet()->getMode(GL_LIGHTING));

    EXPECT_EQ((std::vector<std::string>{"0.00", "2.00", "4.00", "6.00", "8.00", "10.00"}), numbersOf(geode.get()));
    std::vector<osgText::Text*> const texts = textsOf(geode.get());
    // Right of the bar by half a character; the end numbers in the end colours.
    EXPECT_EQ(osg::Vec3f(21, 160, 0), texts[2]->getPosition());
    EXPECT_EQ(osgText::Text::LEFT_CENTER, texts[2]->getAlignment());
    expectColor(kBlue, texts[0]->getColor());
    expectColor(kBlack, texts[2]->getColor());
    expectColor(kRed, texts[5]->getColor());
    osgText::Text* title = texts.back();
    EXPECT_EQ("Pressione", title->getText().createUTF8EncodedString());
    EXPECT_EQ(osgText::Text::CENTER_BOTTOM, title->getAlignment());
    EXPECT_EQ(0.0f, title->getPosition().x());
    EXPECT_GT(title->getPosition().y(), 400.0f);

    // Numbers on the left side.
    scale->setTextValuesPosition(iChromaticScaleBuilder::iTextLeft);
    scale->setTextSize(20.0f);
    geode = scale->build();
    osgText::Text* number = textsOf(geode.get())[1];
    EXPECT_EQ(osg::Vec3f(-25, 80, 0), number->getPosition());
    EXPECT_EQ(osgText::Text::RIGHT_CENTER, number->getAlignment());
    EXPECT_EQ(20.0f, number->getCharacterHeight());
}

TEST(ChromaticScaleBuilder, InvalidRangesGiveNoGeodeAndAnEmptyRangeOneColour)
{
    osg::ref_ptr<TestScale> scale = scaleFrom0To10();
    scale->setNumSteps(0);
    EXPECT_EQ(nullptr, scale->build());
    scale->setNumSteps(5);
    scale->setValMin(11.0);
    EXPECT_EQ(nullptr, scale->build());
    scale->setValMin(0.0);
    scale->setHeight(0.0);
    EXPECT_EQ(nullptr, scale->build());
    scale->setHeight(400.0);
    scale->setWidth(-1.0);
    EXPECT_EQ(nullptr, scale->build());

    scale->setWidth(30.0);
    scale->setValMin(3.0);
    scale->setValMax(3.0);
    scale->setColorsRange({kRed, kBlue});
    osg::ref_ptr<osg::Geode> geode = scale->build();
    ASSERT_TRUE(geode.valid());
    auto* colors = dynamic_cast<osg::Vec4Array*>(geometryAt(geode.get(), 0)->getColorArray());
    for (osg::Vec4f const& color : *colors)
        expectColor(kRed, color);
    EXPECT_EQ(std::vector<std::string>(6, "3.00"), numbersOf(geode.get()));
}

TEST(ChromaticScaleBuilder, NumbersFollowPrecisionAndTheUnitConverter)
{
    osg::ref_ptr<TestScale> scale = new TestScale;
    scale->setValMax(1000.0);
    scale->setNumSteps(4);
    scale->setPrecision(0);
    osg::ref_ptr<osg::Geode> geode = scale->build();
    EXPECT_EQ((std::vector<std::string>{"0", "250", "500", "750", "1000"}), numbersOf(geode.get()));

    // Without its data the converter is not called.
    int calls = 0;
    scale->setUnitConverterCallbackAndData(&timesTen, nullptr);
    EXPECT_EQ(7.0, scale->unitConvert(7.0));
    EXPECT_EQ(0, calls);
    scale->setUnitConverterCallbackAndData(&timesTen, &calls);
    scale->setPrecision(1);
    geode = scale->build();
    EXPECT_EQ((std::vector<std::string>{"0.0", "2500.0", "5000.0", "7500.0", "10000.0"}), numbersOf(geode.get()));
    EXPECT_EQ(5, calls);

    // A negative precision prints whole numbers too.
    scale->setUnitConverterCallbackAndData(nullptr, nullptr);
    scale->setPrecision(-3);
    EXPECT_EQ("250", numbersOf(scale->build().get())[1]);
}

TEST(ChromaticScaleBuilder, AFrameDrawsTheStripInBlackLines)
{
    osg::ref_ptr<TestScale> scale = scaleFrom0To10();
    scale->setDrawRect(true);
    EXPECT_TRUE(scale->getDrawRect());
    osg::ref_ptr<osg::Geode> geode = scale->build();
    ASSERT_EQ(2u + 6u + 1u, geode->getNumDrawables());
    osg::Geometry* bar = geometryAt(geode.get(), 0);
    osg::Geometry* frame = geometryAt(geode.get(), 1);
    ASSERT_NE(nullptr, frame);
    EXPECT_EQ(bar->getVertexArray(), frame->getVertexArray());
    EXPECT_EQ(GLenum(GL_QUAD_STRIP), frame->getPrimitiveSet(0)->getMode());
    EXPECT_EQ(osg::Array::BIND_OVERALL, frame->getColorBinding());
    auto* mode = dynamic_cast<osg::PolygonMode*>(frame->getStateSet()->getAttribute(osg::StateAttribute::POLYGONMODE));
    ASSERT_NE(nullptr, mode);
    EXPECT_EQ(osg::PolygonMode::LINE, mode->getMode(osg::PolygonMode::FRONT));
    EXPECT_EQ(osg::PolygonMode::LINE, mode->getMode(osg::PolygonMode::BACK));

    // The end numbers take the frame's black.
    std::vector<osgText::Text*> const texts = textsOf(geode.get());
    expectColor(kBlack, texts.front()->getColor());
    expectColor(kBlack, texts[5]->getColor());
}

TEST(ChromaticScaleBuilder, TheMarkerShowsOnlyInsideTheRange)
{
    osg::ref_ptr<TestScale> scale = scaleFrom0To10();
    iTransformGroup* marker = scale->getIndicator();
    scale->setCurrentValue(5.0);
    EXPECT_EQ(0u, marker->getNodeMask());
    scale->showCurrentValue(true);
    EXPECT_NE(0u, marker->getNodeMask());
    // Numbers right: the marker comes from the left, its tip on the bar's edge.
    osg::Vec3d const tip = osg::Vec3d() * marker->getMatrix();
    EXPECT_NEAR(-15.0, tip.x(), 1e-9);
    EXPECT_NEAR(200.0, tip.y(), 1e-9);
    EXPECT_LT((osg::Vec3d(-15.0, 0.0, 0.0) * marker->getMatrix()).x(), tip.x());

    scale->setCurrentValue(10.5);
    EXPECT_EQ(0u, marker->getNodeMask());
    EXPECT_FALSE(iNodeGroup::isNodeFlagSet(marker, 0));
    scale->setTextValuesPosition(iChromaticScaleBuilder::iTextLeft);
    scale->setCurrentValue(2.5);
    EXPECT_NE(0u, marker->getNodeMask());
    // Numbers left: it comes from the right.
    osg::Vec3d const right = osg::Vec3d() * marker->getMatrix();
    EXPECT_NEAR(15.0, right.x(), 1e-9);
    EXPECT_NEAR(100.0, right.y(), 1e-9);
    EXPECT_GT((osg::Vec3d(-15.0, 0.0, 0.0) * marker->getMatrix()).x(), right.x());

    scale->showCurrentValue(false);
    EXPECT_EQ(0u, marker->getNodeMask());

    // Without a viewer nothing is built, and the size is nought.
    scale->rebuildGeometry();
    float width = -1.0f;
    float height = -1.0f;
    scale->getSize(width, height);
    EXPECT_EQ(0.0f, width);
    EXPECT_EQ(0.0f, height);
    int pixelsWide = -1;
    int pixelsHigh = -1;
    scale->getViewportSize(pixelsWide, pixelsHigh);
    EXPECT_EQ(0, pixelsWide);
    EXPECT_EQ(0, pixelsHigh);
}
