#include "geometry/BuilderTestSupport.h"

#include <iModelStage/geometry/iAlgoUtils.h>
#include <iModelStage/geometry/iOOBBox.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

osg::ref_ptr<osg::Vec2dArray> vec2s(std::vector<osg::Vec2d> const& values)
{
    osg::ref_ptr<osg::Vec2dArray> array = new osg::Vec2dArray;
    for (osg::Vec2d const& v : values)
        array->push_back(v);
    return array;
}

bool meet(osg::Vec3f p1, osg::Vec3f p2, osg::Vec3f p3, osg::Vec3f p4)
{
    osg::Vec3f pa, pb;
    double mua = 0, mub = 0;
    return iAlgoUtils::linelineIntersect3d(p1, p2, p3, p4, pa, pb, mua, mub, 1e-6);
}

iOOBBox axisBox(osg::Vec3f center, double h0, double h1, double h2)
{
    iOOBBox box;
    iOOBBSet(box, center, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, h0, h1, h2);
    return box;
}

} // namespace

TEST(AlgoUtils, SegmentsMeetAwayFromTheirEnds)
{
    osg::Vec3f pa, pb;
    double mua = 0, mub = 0;
    ASSERT_TRUE(iAlgoUtils::linelineIntersect3d({0, 0, 0}, {2, 0, 0}, {1.5f, -1, 1}, {1.5f, 3, 1}, pa, pb, mua, mub,
                                                1e-6));
    EXPECT_NEAR(mua, 0.75, 1e-9);
    EXPECT_NEAR(mub, 0.25, 1e-9);
    EXPECT_EQ(pa, osg::Vec3f(1.5f, 0, 0));
    EXPECT_EQ(pb, osg::Vec3f(1.5f, 0, 1));

    // Touching at an end point is no hit, on either segment.
    EXPECT_FALSE(meet({0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 1, 0}));
    EXPECT_FALSE(meet({0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {1, 1, 0}));
    EXPECT_FALSE(meet({0, 0, 0}, {2, 0, 0}, {3, -1, 0}, {3, 1, 0}));
    EXPECT_FALSE(meet({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0}));
    EXPECT_FALSE(meet({0, 0, 0}, {0, 0, 0}, {1, -1, 0}, {1, 1, 0}));
    EXPECT_TRUE(meet({0, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}));
}

TEST(AlgoUtils, SegmentAgainstAnOpenOutline)
{
    // Three sides of a square; the left side is not joined.
    osg::ref_ptr<osg::Vec3Array> open = vec3s({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}});
    EXPECT_TRUE(iAlgoUtils::lineIntersectPolygon3d(open, {1, -1, 0}, {1, 1, 0}, 0.001, 1e-6));
    EXPECT_FALSE(iAlgoUtils::lineIntersectPolygon3d(open, {-1, 1, 0}, {1, 1, 0}, 0.001, 1e-6));
    // A skew segment one unit above: the distance decides.
    EXPECT_FALSE(iAlgoUtils::lineIntersectPolygon3d(open, {1, -1, 1}, {1, 1, 1}, 0.5, 1e-6));
    EXPECT_TRUE(iAlgoUtils::lineIntersectPolygon3d(open, {1, -1, 1}, {1, 1, 1}, 1.0, 1e-6));
    EXPECT_FALSE(iAlgoUtils::lineIntersectPolygon3d(vec3s({{1, 0, 0}}), {1, -1, 0}, {1, 1, 0}, 10, 1e-6));
    EXPECT_FALSE(iAlgoUtils::lineIntersectPolygon3d(nullptr, {1, -1, 0}, {1, 1, 0}, 10, 1e-6));
}

TEST(AlgoUtils, FreeEdgesSeenFromAbove)
{
    std::vector<int> edges;
    osg::ref_ptr<osg::Vec3Array> roof = vec3s({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    EXPECT_TRUE(iAlgoUtils::extractfreeEdgeOnPolygonTop(roof, edges));
    EXPECT_EQ(edges, (std::vector<int>{0, 1, 1, 2}));

    // A closed rectangle: the bottom is under the top, the sides are
    // vertical.
    edges.clear();
    osg::ref_ptr<osg::Vec3Array> rectangle = vec3s({{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}, {0, 0, 0}});
    EXPECT_TRUE(iAlgoUtils::extractfreeEdgeOnPolygonTop(rectangle, edges));
    EXPECT_EQ(edges, (std::vector<int>{2, 3}));

    edges.clear();
    EXPECT_FALSE(iAlgoUtils::extractfreeEdgeOnPolygonTop(vec3s({{0, 0, 0}, {0, 1, 0}}), edges));
    EXPECT_TRUE(edges.empty());
}

TEST(AlgoUtils, PolygonInPolygonByEvenOdd)
{
    osg::ref_ptr<osg::Vec2dArray> outer = vec2s({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    EXPECT_TRUE(iAlgoUtils::polygonInPolygon(*vec2s({{1, 1}, {3, 1}, {3, 3}}), *outer));
    EXPECT_FALSE(iAlgoUtils::polygonInPolygon(*vec2s({{1, 1}, {5, 1}, {3, 3}}), *outer));
    EXPECT_TRUE(iAlgoUtils::polygonInPolygon(*vec2s({}), *vec2s({})));
    EXPECT_FALSE(iAlgoUtils::polygonInPolygon(*vec2s({{1, 1}}), *vec2s({})));
    // A concave outline: the notch is outside.
    osg::ref_ptr<osg::Vec2dArray> notched = vec2s({{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}});
    EXPECT_FALSE(iAlgoUtils::polygonInPolygon(*vec2s({{2, 3}}), *notched));
    EXPECT_TRUE(iAlgoUtils::polygonInPolygon(*vec2s({{2, 0.5}, {3.5, 3}}), *notched));
}

TEST(AlgoUtils, MatrixAnglesToEuler)
{
    double a = 9, b = 9, c = 9;
    iAlgoUtils::matrixAnglesToEuler(osg::Matrixd::rotate(0.3, osg::Vec3d(0, 0, 1)), a, b, c);
    EXPECT_NEAR(a, 0.0, 1e-9);
    EXPECT_NEAR(b, 0.0, 1e-9);
    EXPECT_NEAR(c, 0.3, 1e-9);
    iAlgoUtils::matrixAnglesToEuler(osg::Matrixd::rotate(0.3, osg::Vec3d(1, 0, 0)), a, b, c);
    EXPECT_NEAR(a, 0.3, 1e-9);
    EXPECT_NEAR(b, 0.0, 1e-9);
    EXPECT_NEAR(c, 0.0, 1e-9);
    iAlgoUtils::matrixAnglesToEuler(osg::Matrixd::rotate(0.3, osg::Vec3d(0, 1, 0)) * osg::Matrixd::translate(5, 6, 7),
                                    a, b, c);
    EXPECT_NEAR(b, 0.3, 1e-9);
    iAlgoUtils::matrixAnglesToEuler(osg::Matrixd::rotate(osg::PI_2, osg::Vec3d(0, 1, 0)), a, b, c);
    EXPECT_FALSE(std::isnan(b));
    EXPECT_NEAR(b, osg::PI_2, 1e-6);
}

TEST(OOBBox, PointInside)
{
    iOOBBox box;
    EXPECT_EQ(box.center, osg::Vec3f(0, 0, 0));
    EXPECT_EQ(box.axis2, osg::Vec3f(0, 0, 0));
    EXPECT_EQ(box.half1, 0.0);

    float const r = static_cast<float>(std::sqrt(0.5));
    iOOBBSet(box, {1, 1, 0}, {r, r, 0}, {-r, r, 0}, {0, 0, 1}, 2.0, 0.5, 1.0);
    EXPECT_EQ(box.axis1, osg::Vec3f(-r, r, 0));
    EXPECT_EQ(box.half0, 2.0);
    EXPECT_TRUE(iOOBBBoxPointIn(&box, {1, 1, 0}));
    EXPECT_TRUE(iOOBBBoxPointIn(&box, {2, 2, 0.999f}));
    EXPECT_FALSE(iOOBBBoxPointIn(&box, {2, 0, 0}));
    EXPECT_FALSE(iOOBBBoxPointIn(&box, {1, 1, 1.01f}));
    // On the face counts as inside.
    iOOBBox cube = axisBox({0, 0, 0}, 1, 1, 1);
    EXPECT_TRUE(iOOBBBoxPointIn(&cube, {1, -1, 1}));
    EXPECT_FALSE(iOOBBBoxPointIn(&cube, {1.0001f, 0, 0}));
    EXPECT_FALSE(iOOBBBoxPointIn(nullptr, {0, 0, 0}));
}

TEST(OOBBox, BoxesMeetUnlessAnAxisSeparatesThem)
{
    iOOBBox cube = axisBox({0, 0, 0}, 1, 1, 1);
    iOOBBox near = axisBox({1.5f, 0, 0}, 1, 1, 1);
    iOOBBox far = axisBox({0, 2.5f, 0}, 1, 1, 1);
    EXPECT_TRUE(iOOBBBoxIntBox(&cube, &near));
    EXPECT_FALSE(iOOBBBoxIntBox(&cube, &far));
    EXPECT_FALSE(iOOBBBoxIntBox(&cube, nullptr));

    // A thin rod across the vertical edge at (1, 1) of the cube, lying
    // along (1, -1, 0) and turned about its length: no face of either box
    // parts them, only the cross product of the edge and the rod.
    float const r = static_cast<float>(std::sqrt(0.5));
    osg::Vec3f const along(r, -r, 0), second(0.5f, 0.5f, r), third(-0.5f, -0.5f, r);
    auto rodAt = [&](float t) {
        iOOBBox rod;
        iOOBBSet(rod, osg::Vec3f(1, 1, 0) + osg::Vec3f(r, r, 0) * t, along, second, third, 2.0, 0.01, 0.01);
        return rod;
    };
    iOOBBox apart = rodAt(0.5f);
    iOOBBox crossing = rodAt(-0.2f);
    EXPECT_FALSE(iOOBBBoxIntBox(&cube, &apart));
    EXPECT_FALSE(iOOBBBoxIntBox(&apart, &cube));
    EXPECT_TRUE(iOOBBBoxIntBox(&cube, &crossing));
    // Its centre is outside the cube, yet its face axes do not part them.
    EXPECT_FALSE(iOOBBBoxPointIn(&cube, apart.center));
}
