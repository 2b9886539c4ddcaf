#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/frame/iUnitConverterManager.h>
#include <iModelStage/frame/iValueTypes.h>

#include <gtest/gtest.h>

#include <osg/Vec3f>

#include <cmath>
#include <limits>

typedef std::map<std::string, int> Codes;

TEST(MapListTest, RegisteredMapsAndConstructors)
{
    Codes const first{{"uno", 1}, {"due", 2}};
    std::string const numbers = freshName("tNumeri");
    EXPECT_TRUE(iMapList::registerMapList(first, numbers));
    EXPECT_FALSE(iMapList::registerMapList({{"tre", 3}}, numbers));
    iMapList named(2, numbers);
    EXPECT_EQ(named.items, first);
    EXPECT_EQ(named.current, 2);
    EXPECT_TRUE(iMapList(0, "tNessuno").items.empty());
    // Built under a taken name: keeps its own items, the registered map stays.
    EXPECT_EQ(iMapList(Codes{{"b", 8}}, 8, numbers).items, (Codes{{"b", 8}}));
    EXPECT_EQ(iMapList(0, numbers).items, first);

    // Names go through the catalogue of the bound domain.
    iLoadCatalogue(iBoundLocale().c_str(), {{"Rosso", "Red"}});
    char const* names[] = {"Rosso", "Verde"};
    int codes[] = {10, 20};
    iMapList colours(names, codes, 2, 20, "tColori");
    iLoadCatalogue(iBoundLocale().c_str(), {});
    EXPECT_EQ(colours.items, (Codes{{"Red", 10}, {"Verde", 20}}));
    EXPECT_EQ(colours.current, 20);
    EXPECT_EQ(iMapList(10, "tColori").items, colours.items);
}

TEST(MapListTest, LookupsByCode)
{
    iMapList list(Codes{{"c", 2}, {"a", 1}, {"b", 2}}, 1, "");
    EXPECT_TRUE(list.findkey(2));
    EXPECT_FALSE(list.findkey(3));
    EXPECT_EQ(list.getStrAt(2), "b");
    EXPECT_EQ(list.getStrAt(3), "");
    EXPECT_FALSE(iSimpleMapListPtr().findkey(0));
    EXPECT_EQ(iSimpleMapListPtr().getStrAt(0), "");
    EXPECT_EQ(iSimpleMapListPtr(&list.items, 1).getStrAt(1), "a");
}

TEST(ValueTypeTest, InequalityComparesEveryField)
{
    iMapList list(Codes{{"a", 1}}, 1, "");
    EXPECT_FALSE(list != iMapList(Codes{{"a", 1}}, 1, ""));
    EXPECT_TRUE(list != iMapList(Codes{{"a", 1}}, 2, ""));
    EXPECT_TRUE(list != iMapList(Codes{{"a", 2}}, 1, ""));
    // Pointer types compare the pointer, not what it points at.
    Codes same = list.items;
    EXPECT_FALSE(iSimpleMapListPtr(&same, 0) != iSimpleMapListPtr(&same, 0));
    EXPECT_TRUE(iSimpleMapListPtr(&same, 0) != iSimpleMapListPtr(&list.items, 0));
    EXPECT_TRUE(iSimpleMapListPtr(&same, 0) != iSimpleMapListPtr(&same, 1));
    std::list<std::string> texts{"x"}, sameTexts{"x"};
    EXPECT_TRUE(iptrStringList(&texts, 0) != iptrStringList(&sameTexts, 0));
    EXPECT_TRUE(iptrStringList(&texts, 0) != iptrStringList(&texts, 1));

    char x[] = "x", y[] = "y";
    char* names[] = {x, y};
    iStringList strings(names, 2, 1);
    EXPECT_FALSE(strings != iStringList({"x", "y"}, 1));
    EXPECT_TRUE(strings != iStringList({"x", "y"}, 0));
    EXPECT_TRUE(strings != iStringList({"x"}, 1));

    EXPECT_TRUE(iCheckedDouble(true, 1.5) != iCheckedDouble(false, 1.5));
    EXPECT_TRUE(iCheckedDouble(true, 1.5) != iCheckedDouble(true, 2.5));
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(iCheckedDouble(true, nan) != iCheckedDouble(true, nan));
}

TEST(UnitConverterTest, OnlyRegisteredNamesConvert)
{
    std::string const unknown = freshName("tNoSuchConverter");
    EXPECT_TRUE(iUnitConverterManager::registerConverterItem(unknown.c_str()));
    EXPECT_FALSE(iUnitConverterManager::registerConverterItem(unknown.c_str()));
    // A class of the table never registered as a converter, and a
    // registered name without a class.
    osg::Vec3f value(1, 2, 3);
    for (char const* name : {"iUnitConverterItem", unknown.c_str()}) {
        EXPECT_FALSE(iUnitConverterManager::convertTo(name, &value)) << name;
        EXPECT_FALSE(iUnitConverterManager::convertFrom(name, &value)) << name;
        EXPECT_EQ(iUnitConverterManager::getSymbol(name), "") << name;
    }
    EXPECT_EQ(value, osg::Vec3f(1, 2, 3));
    EXPECT_EQ(iUnitConverterManager::getSymbol("iUCVec3fRadToGrad"), "[no_ascii_fi]");
    EXPECT_FALSE(iUnitConverterManager::convertTo("iUCVec3fRadToGrad", nullptr));
}

TEST(UnitConverterTest, RadiansAndDegreesRoundTrip)
{
    // Shown as degrees, stored as radians.
    osg::Vec3f angles(3.1415927f, 1.5707964f, -0.7853982f);
    ASSERT_TRUE(iUnitConverterManager::convertFrom("iUCVec3fRadToGrad", &angles));
    EXPECT_FLOAT_EQ(angles.x(), 180.0f);
    EXPECT_FLOAT_EQ(angles.y(), 90.0f);
    EXPECT_FLOAT_EQ(angles.z(), -45.0f);

    osg::Vec3f const original(0.3f, -2.0f, 1234.5f);
    osg::Vec3f value = original;
    ASSERT_TRUE(iUnitConverterManager::convertTo("iUCVec3fRadToGrad", &value));
    EXPECT_FLOAT_EQ(value.z(), 21.546090f);
    ASSERT_TRUE(iUnitConverterManager::convertFrom("iUCVec3fRadToGrad", &value));
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(value[i], original[i], std::fabs(original[i]) * 1e-6f) << i;
}
