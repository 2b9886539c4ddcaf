#include "model/ModelTestSupport.h"

#include <iModelStage/dimensioning/iLeader.h>
#include <iModelStage/dimensioning/iLinearQuote.h>
#include <iModelStage/dimensioning/iPointQuote.h>

namespace {

std::string f64s(std::initializer_list<double> values)
{
    std::string out;
    for (double v : values)
        out += f64(v);
    return out;
}

std::string one(bool value)
{
    return std::string(1, value ? '\1' : '\0');
}

// Header, then the levels up to the geometric group: id 77, name "q", no
// layer, a pure translation, every freedom, a colour with its switches.
std::string quoteRecordStart(std::string const& cls, std::vector<int> const& versions, double x, double y, double z)
{
    return str(cls) + ints(versions) + i32(77) + str("q") + i32(-1) + str("") +
           f64s({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1}) + i32(0xffffff) + f64s({0.5, 0.25, 1, 0}) +
           one(true) + one(false) + i32(-1);
}

template <class T>
void prepare(T* quote)
{
    quote->setUniqueId(77);
    quote->set_name("q");
    quote->set_clr(osg::Vec4f(0.5f, 0.25f, 1.0f, 0.0f));
    quote->set_usecolor(true);
    quote->set_usematerial(false);
}

std::string written(iRoot* object)
{
    iMemoryBuffer buffer;
    iOutStream stream(&buffer);
    iRoot::writeObject(object, stream);
    return buffer.str();
}

template <class T>
osg::ref_ptr<T> readBack(std::string const& bytes)
{
    osg::ref_ptr<T> object = new T;
    iMemoryBuffer buffer(bytes);
    iInStream stream(&buffer);
    iRoot::readObject(object.get(), stream);
    EXPECT_EQ(stream.bytesLeft(), 0);
    return object;
}

} // namespace

TEST(LinearQuoteFile, WrittenLevelByLevel)
{
    osg::ref_ptr<iLinearQuote> quote = new iLinearQuote;
    prepare(quote.get());
    quote->setNormal(osg::Vec3f(0, 0, 1));
    quote->setStartPoint(osg::Vec3f(1, 2, 3));
    quote->setEndPoint(osg::Vec3f(4, 2, 3));
    quote->set_charsize(0.25);
    quote->set_arrowheadlength(0.5);
    quote->set_offset(-1.5);
    quote->set_textoffset(0.125);
    quote->set_fliptext(true);

    std::string const expected = quoteRecordStart("iLinearQuote", {1, 1, 3, 2, 2}, 1, 2, 3) +
                                 f64s({0.25, 0.5, 0.005}) + f64s({1, 2, 3, 4, 2, 3, 0, 0, 1}) +
                                 f64s({-1.5, 0.125}) + one(true) + f64(0.01);
    EXPECT_EQ(written(quote.get()), expected);
}

TEST(LinearQuoteFile, ReadKeepsTheStoredMatrixAndOldVersionsKeepDefaults)
{
    // Points that would give another frame: the stored matrix stays.
    osg::ref_ptr<iLinearQuote> back =
        readBack<iLinearQuote>(quoteRecordStart("iLinearQuote", {1, 1, 3, 2, 2}, 7, 8, 9) + f64s({0.2, 0.3, 0.4}) +
                               f64s({1, 1, 1, 1, 5, 1, 0, 0, 1}) + f64s({2, 3}) + one(true) + f64(0.7));
    EXPECT_EQ(back->getPosition(), osg::Vec3f(7, 8, 9));
    EXPECT_EQ(back->getStartPoint(), osg::Vec3f(1, 1, 1));
    EXPECT_EQ(back->getEndPoint(), osg::Vec3f(1, 5, 1));
    EXPECT_EQ(back->getNormal(), osg::Vec3f(0, 0, 1));
    EXPECT_DOUBLE_EQ(back->get_charsize(), 0.2);
    EXPECT_DOUBLE_EQ(back->get_arrowheadbase(), 0.4);
    EXPECT_DOUBLE_EQ(back->get_offset(), 2);
    EXPECT_DOUBLE_EQ(back->get_textoffset(), 3);
    EXPECT_TRUE(back->get_fliptext());
    EXPECT_DOUBLE_EQ(back->get_extlineoffset(), 0.7);

    // A negative size read from a file is corrected like any other.
    back = readBack<iLinearQuote>(quoteRecordStart("iLinearQuote", {1, 1, 3, 2, 1}, 0, 0, 0) +
                                  f64s({-0.2, -0.3, 0.4}));
    EXPECT_DOUBLE_EQ(back->get_charsize(), 0.0);
    EXPECT_DOUBLE_EQ(back->get_arrowheadlength(), 0.0);
    EXPECT_DOUBLE_EQ(back->get_extlineoffset(), 0.01);
    EXPECT_EQ(back->getEndPoint(), osg::Vec3f());

    // Version 1 of both quote levels: nothing after the geometric level.
    back = readBack<iLinearQuote>(quoteRecordStart("iLinearQuote", {1, 1, 3, 1, 1}, 0, 0, 0));
    EXPECT_DOUBLE_EQ(back->get_charsize(), 0.1);
    EXPECT_DOUBLE_EQ(back->get_arrowheadlength(), 0.01);
    EXPECT_DOUBLE_EQ(back->get_arrowheadbase(), 0.005);
    EXPECT_DOUBLE_EQ(back->get_extlineoffset(), 0.01);
    EXPECT_FALSE(back->get_fliptext());
}

TEST(LeaderFile, WrittenAndReadWithoutVersionCondition)
{
    osg::ref_ptr<iLeader> leader = new iLeader;
    prepare(leader.get());
    leader->setPosition(osg::Vec3f(1, 2, 3));
    leader->set_hleaderline(0.75);
    leader->set_flip(true);
    std::string const record = quoteRecordStart("iLeader", {1, 1, 3, 2, 1}, 1, 2, 3) +
                               f64s({0.1, 0.01, 0.005}) + f64s({0.05, 0.75, 0.05}) + one(true);
    EXPECT_EQ(written(leader.get()), record);

    osg::ref_ptr<iLeader> back = readBack<iLeader>(quoteRecordStart("iLeader", {1, 1, 3, 1, 1}, 0, 0, 0) +
                                                   f64s({0.5, 0.25, 2}) + std::string(1, '\7'));
    EXPECT_DOUBLE_EQ(back->get_charsize(), 0.1);
    EXPECT_DOUBLE_EQ(back->get_bleaderline(), 0.5);
    EXPECT_DOUBLE_EQ(back->get_hleaderline(), 0.25);
    EXPECT_DOUBLE_EQ(back->get_lenlandingline(), 2);
    EXPECT_TRUE(back->get_flip());
    EXPECT_EQ(osg::ref_ptr<iLeader>(new iLeader)->getColor(), osg::Vec4f(1, 1, 1, 1));
}

TEST(PointQuoteFile, NothingOfItsOwn)
{
    osg::ref_ptr<iPointQuote> quote = new iPointQuote;
    prepare(quote.get());
    EXPECT_EQ(written(quote.get()),
              quoteRecordStart("iPointQuote", {1, 1, 3, 2, 1}, 0, 0, 0) + f64s({0.1, 0.01, 0.005}));
}

TEST(LinearQuote, FrameFollowsThePointsAndSizesStayPositive)
{
    osg::ref_ptr<iLinearQuote> quote = new iLinearQuote;
    quote->setPoints(osg::Vec3f(1, 1, 0), osg::Vec3f(1, 3, 0));
    EXPECT_EQ(quote->getPosition(), osg::Vec3f());
    quote->setNormal(osg::Vec3f(0, 0, 1));
    // Along y: the across direction is z cross y, minus x.
    osg::Vec3d const across = osg::Vec3d(0, 1, 0) * quote->getMatrix() - osg::Vec3d(1, 1, 0);
    EXPECT_NEAR(across.x(), -1.0, 1e-9);
    EXPECT_NEAR(across.y(), 0.0, 1e-9);
    osg::Vec3d const along = osg::Vec3d(2, 0, 0) * quote->getMatrix();
    EXPECT_NEAR((along - osg::Vec3d(1, 3, 0)).length(), 0.0, 1e-9);

    quote->set_charsize(-1);
    quote->set_arrowheadbase(-2);
    EXPECT_EQ(quote->get_charsize(), 0.0);
    EXPECT_EQ(quote->get_arrowheadbase(), 0.0);
    quote->setText("12.5");
    EXPECT_EQ(quote->getText(), "12.5");
    EXPECT_EQ(quote->getTextDrawable()->getText().createUTF8EncodedString(), "12.5");
    EXPECT_EQ(quote->getTextTransform()->getAutoRotateMode(), osg::AutoTransform::NO_ROTATION);
    EXPECT_TRUE(quote->containsNode(quote->getTextTransform()));
}
