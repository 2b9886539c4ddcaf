#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iCircleEntity.h>
#include <iModelStage/geometry/iEntityGroup.h>
#include <iModelStage/geometry/iLineEntity.h>
#include <iModelStage/geometry/iPointEntity.h>
#include <iModelStage/geometry/iPolyLineEntity.h>
#include <iModelStage/geometry/iPolygonEntity.h>
#include <iModelStage/geometry/iQuadEntity.h>
#include <iModelStage/geometry/iQuoteEntity.h>
#include <iModelStage/geometry/iTextEntity.h>
#include <iModelStage/geometry/iTriangleEntity.h>

#include <gtest/gtest.h>

#include <osg/Quat>

namespace {

typedef std::vector<osg::Vec3f> Points;

void expectNear(osg::Vec3f const& actual, osg::Vec3f const& expected)
{
    EXPECT_NEAR(actual.x(), expected.x(), 1e-5) << "x";
    EXPECT_NEAR(actual.y(), expected.y(), 1e-5) << "y";
    EXPECT_NEAR(actual.z(), expected.z(), 1e-5) << "z";
}

osg::Matrixd const kQuarterTurnAboutX = osg::Matrixd::rotate(osg::PI_2, osg::Vec3d(1, 0, 0));

std::string written(iEntityGroup& group)
{
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    group.write(out);
    return buffer.str();
}

iEntityGroup readBack(std::string const& bytes)
{
    iEntityGroup group;
    iMemoryBuffer buffer(bytes);
    iInStream in(&buffer);
    group.read(in, 1);
    return group;
}

} // namespace

TEST(GeometricEntity, KindsDefaultsAndClassTable)
{
    struct Row {
        char const* name;
        int kind;
        std::size_t vertices;
    } const rows[] = {{"iGeometricEntity", 0, 0}, {"iTriangleEntity", 1, 0}, {"iQuadEntity", 2, 0},
                      {"iPolygonEntity", 3, 0},   {"iPointEntity", 4, 1},    {"iLineEntity", 5, 2},
                      {"iCircleEntity", 6, 1},    {"iTextEntity", 7, 1},     {"iQuoteEntity", 8, 2}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        std::string parent;
        ASSERT_TRUE(iRoot::getParentClassName(row.name, parent));
        EXPECT_EQ(parent, row.kind == 0 ? "iRoot" : "iGeometricEntity");
        osg::ref_ptr<iGeometricEntity> entity = dynamic_cast<iGeometricEntity*>(iRoot::newClass(row.name));
        ASSERT_TRUE(entity);
        EXPECT_EQ(entity->getType(), row.kind);
        EXPECT_EQ(entity->getVertices().size(), row.vertices);
        EXPECT_EQ(entity->getColor(), osg::Vec4f(1, 1, 1, 1));
        EXPECT_TRUE(entity->getMatrix().isIdentity());
        EXPECT_TRUE(entity->getVisible());
    }
    EXPECT_FALSE(iRoot::findClass("iPolyLineEntity"));
    osg::ref_ptr<iPolyLineEntity> polyline = new iPolyLineEntity(Points{{0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(polyline->getType(), iGeometricEntity::POLYLINE_ENTITY);
    EXPECT_STREQ(polyline->getClassName(), "iPolyLineEntity");

    osg::ref_ptr<iQuoteEntity> quote = new iQuoteEntity;
    quote->setVisible(2);
    EXPECT_TRUE(quote->getVisible());
    quote->setVisible(0);
    EXPECT_FALSE(quote->getVisible());

    osg::Matrixd const m = osg::Matrixd::translate(1, 2, 3);
    quote->setMatrix(m);
    EXPECT_TRUE((quote->getInverseMatrix() * m).isIdentity());
}

TEST(GeometricEntity, CopyConstructionCarriesNoGeometry)
{
    osg::ref_ptr<iCircleEntity> circle = new iCircleEntity(osg::Vec3f(1, 2, 3), 4.0, 30);
    circle->setColor(osg::Vec4f(1, 0, 0, 1));
    circle->setMatrix(osg::Matrixd::translate(5, 0, 0));
    osg::ref_ptr<iCircleEntity> copy = static_cast<iCircleEntity*>(circle->clone(osg::CopyOp::DEEP_COPY_ALL));
    EXPECT_TRUE(copy->getVertices().empty());
    EXPECT_EQ(copy->getColor(), osg::Vec4f(0, 0, 0, 0));
    EXPECT_TRUE(copy->getMatrix().isIdentity());
    EXPECT_EQ(copy->getRadius(), 4.0);
    EXPECT_EQ(copy->getSegments(), 30);
}

TEST(GeometricEntity, BoundsOfEachKind)
{
    osg::Vec3f min, max;
    osg::ref_ptr<iTriangleEntity> empty = new iTriangleEntity;
    min = max = osg::Vec3f(7, 7, 7);
    EXPECT_FALSE(empty->getBounds(min, max, osg::Matrixd()));
    EXPECT_EQ(min, osg::Vec3f());
    EXPECT_EQ(max, osg::Vec3f());

    // The entity's matrix first, then the caller's.
    osg::ref_ptr<iPolygonEntity> polygon = new iPolygonEntity(Points{{0, 0, 0}, {2, 0, 0}, {2, 1, 0}});
    polygon->setMatrix(osg::Matrixd::scale(2, 2, 2));
    EXPECT_TRUE(polygon->getBounds(min, max, osg::Matrixd::translate(10, 0, 0)));
    expectNear(min, {10, 0, 0});
    expectNear(max, {14, 2, 0});

    osg::ref_ptr<iLineEntity> line = new iLineEntity(osg::Vec3f(3, -1, 2), osg::Vec3f(1, 4, 0));
    EXPECT_TRUE(line->getBounds(min, max, osg::Matrixd()));
    expectNear(min, {1, -1, 0});
    expectNear(max, {3, 4, 2});

    // A circle is measured around its centre vertex, whatever its matrix
    // origin says.
    osg::ref_ptr<iCircleEntity> circle = new iCircleEntity(osg::Vec3f(5, 5, 1), 2.0);
    EXPECT_TRUE(circle->getBounds(min, max, osg::Matrixd()));
    expectNear(min, {3, 3, 1});
    expectNear(max, {7, 7, 1});

    osg::ref_ptr<iTextEntity> text = new iTextEntity("abcd", osg::Vec3f(1, 1, 0), 0.5);
    EXPECT_TRUE(text->getBounds(min, max, osg::Matrixd()));
    expectNear(min, {1, 1, 0});
    expectNear(max, {3, 1.5f, 0});

    osg::ref_ptr<iQuoteEntity> quote = new iQuoteEntity(osg::Vec3f(0, 0, 0), osg::Vec3f(4, 0, 0), 1.0, 0.2);
    EXPECT_TRUE(quote->getBounds(min, max, osg::Matrixd()));
    expectNear(min, {0, -0.25f, 0});
    expectNear(max, {4, 1.2f, 0});
    // A small text still reaches 0.05 above the second point.
    quote->setSize(-1.0);
    quote->getBounds(min, max, osg::Matrixd());
    expectNear(max, {4, 0.05f, 0});

    iEntityGroup group;
    EXPECT_FALSE(group.getBounds(min, max, osg::Matrixd()));
    group.pushEntity(line.get());
    group.pushEntity(empty.get());
    group.pushEntity(circle.get());
    EXPECT_TRUE(group.getBounds(min, max, osg::Matrixd()));
    expectNear(min, {1, -1, 0});
    expectNear(max, {7, 7, 2});
    // Only entities without bounds: still true, with the start limits.
    iEntityGroup hollow;
    hollow.pushEntity(empty.get());
    EXPECT_TRUE(hollow.getBounds(min, max, osg::Matrixd()));
    EXPECT_EQ(min, osg::Vec3f(9.0e9f, 9.0e9f, 9.0e9f));
    EXPECT_EQ(max, osg::Vec3f(-9.0e9f, -9.0e9f, -9.0e9f));
}

TEST(GeometricEntity, NewellNormalTurnsWithTheMatrixOnly)
{
    osg::ref_ptr<iPolygonEntity> polygon = new iPolygonEntity(Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    expectNear(polygon->getNormal(), {0, 0, 1});
    // Clockwise faces the other way; a larger outline still gives a unit vector.
    polygon->setVertices(Points{{0, 0, 0}, {0, 5, 0}, {5, 0, 0}});
    expectNear(polygon->getNormal(), {0, 0, -1});

    polygon->setVertices(Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    polygon->setMatrix(kQuarterTurnAboutX * osg::Matrixd::translate(9, 9, 9));
    expectNear(polygon->getNormal(), {0, -1, 0});
    // A scaling matrix is not normalised away.
    polygon->setMatrix(osg::Matrixd::scale(3, 3, 3));
    expectNear(polygon->getNormal(), {0, 0, 3});

    osg::ref_ptr<iLineEntity> degenerate = new iLineEntity(osg::Vec3f(0, 0, 0), osg::Vec3f(1, 1, 1));
    expectNear(degenerate->getNormal(), {0, 0, 0});
    expectNear(osg::ref_ptr<iQuadEntity>(new iQuadEntity)->getNormal(), {0, 0, 0});
}

TEST(GeometricEntity, GeometryAndTransforms)
{
    osg::ref_ptr<iTriangleEntity> triangle = new iTriangleEntity(Points{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    triangle->setMatrix(osg::Matrixd::translate(1, 0, 0));
    Points const out = triangle->getGeometry(osg::Matrixd::scale(2, 2, 2));
    ASSERT_EQ(out.size(), 3u);
    expectNear(out[0], {4, 0, 0});
    expectNear(out[2], {2, 0, 2});

    triangle->applyTransform(osg::Matrixd::translate(0, 0, 5));
    expectNear(triangle->getVertices()[0], {1, 0, 5});
    EXPECT_EQ(triangle->getMatrix(), osg::Matrixd::translate(1, 0, 0));

    // The circle's outline stands around its matrix origin; setPos moves
    // both the centre vertex and that origin.
    osg::ref_ptr<iCircleEntity> circle = new iCircleEntity(osg::Vec3f(), 2.0, 4);
    circle->setPos(osg::Vec3f(10, 0, 0));
    EXPECT_EQ(circle->getPos(), osg::Vec3f(10, 0, 0));
    EXPECT_TRUE(circle->getInverseMatrix().isIdentity());
    Points const ring = circle->getGeometry(osg::Matrixd());
    ASSERT_EQ(ring.size(), 6u);
    expectNear(ring[0], {12, 0, 0});
    expectNear(ring[1], {10, 2, 0});
    expectNear(ring[5], ring[0]);
}

TEST(GeometricEntity, CloneEntityBakesTheMatrixAndKeepsTheKind)
{
    osg::Matrixd const shift = osg::Matrixd::translate(0, 0, 1);
    EXPECT_EQ(iEntityGroup::cloneEntity(nullptr, shift), nullptr);
    osg::ref_ptr<iPolyLineEntity> polyline = new iPolyLineEntity(Points{{0, 0, 0}});
    EXPECT_EQ(iEntityGroup::cloneEntity(polyline.get(), shift), nullptr);
    osg::ref_ptr<iGeometricEntity> plain = new iGeometricEntity(iGeometricEntity::GEOMETRIC_ENTITY, Points{{0, 0, 0}});
    EXPECT_EQ(iEntityGroup::cloneEntity(plain.get(), shift), nullptr);

    osg::ref_ptr<iCircleEntity> circle = new iCircleEntity(osg::Vec3f(1, 1, 0), 3.0, 30);
    circle->setColor(osg::Vec4f(0, 1, 0, 1));
    circle->setMatrix(osg::Matrixd::translate(7, 0, 0));
    circle->setVisible(0);
    osg::ref_ptr<iGeometricEntity> copy = iEntityGroup::cloneEntity(circle.get(), shift);
    auto* circleCopy = dynamic_cast<iCircleEntity*>(copy.get());
    ASSERT_TRUE(circleCopy);
    EXPECT_EQ(circleCopy->getSegments(), 8);
    EXPECT_EQ(circleCopy->getRadius(), 3.0);
    EXPECT_EQ(circleCopy->getPos(), osg::Vec3f(1, 1, 1));
    EXPECT_EQ(circleCopy->getMatrix(), circle->getMatrix());
    EXPECT_EQ(circleCopy->getColor(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_TRUE(circleCopy->getVisible());

    osg::ref_ptr<iQuoteEntity> quote =
        new iQuoteEntity(osg::Vec3f(0, 0, 0), osg::Vec3f(2, 0, 0), 0.7, 0.3, "L", iGeometricEntity::iAlignment(5));
    copy = iEntityGroup::cloneEntity(quote.get(), shift);
    auto* quoteCopy = dynamic_cast<iQuoteEntity*>(copy.get());
    ASSERT_TRUE(quoteCopy);
    EXPECT_EQ(quoteCopy->getP2(), osg::Vec3f(2, 0, 1));
    EXPECT_EQ(quoteCopy->getSize(), 0.7);
    EXPECT_EQ(quoteCopy->getOffset(), 0.3);
    EXPECT_EQ(quoteCopy->getText(), "L");
    EXPECT_EQ(quoteCopy->getAlignment(), 5);

    osg::ref_ptr<iQuadEntity> quad = new iQuadEntity(Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    copy = iEntityGroup::cloneEntity(quad.get(), shift);
    ASSERT_TRUE(dynamic_cast<iQuadEntity*>(copy.get()));
    EXPECT_EQ(copy->getVertices(), (Points{{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}));
}

TEST(GeometricEntity, QuoteFullText)
{
    osg::ref_ptr<iQuoteEntity> quote = new iQuoteEntity(osg::Vec3f(1, 1, 0), osg::Vec3f(1, 3, 0));
    EXPECT_EQ(quote->getFullText(), "2");
    quote->setText("H");
    EXPECT_EQ(quote->getFullText(), "H - 2");
    quote->setP2(osg::Vec3f(1 + 1.0f / 3.0f, 1, 0));
    EXPECT_EQ(quote->getFullText(), "H - 0.333333");
}

TEST(EntityGroup, ValueCopiesShareEntities)
{
    iEntityGroup group;
    group.setVisible(0);
    osg::ref_ptr<iPointEntity> point = new iPointEntity(osg::Vec3f(1, 2, 3));
    group.pushEntity(point.get());
    group.pushEntity(nullptr);
    EXPECT_EQ(group.getSize(), 1);
    EXPECT_EQ(point->referenceCount(), 2);
    iEntityGroup copy = group;
    EXPECT_FALSE(copy.getVisible());
    EXPECT_EQ(copy.getEntities()[0].get(), point.get());
    group.clear();
    EXPECT_EQ(group.getSize(), 0);
    EXPECT_EQ(point->referenceCount(), 2);
}

TEST(EntityGroup, RecordIsByteExactAndRoundTrips)
{
    iEntityGroup group;
    osg::ref_ptr<iQuoteEntity> quote = new iQuoteEntity(osg::Vec3f(0.5f, 0, 0), osg::Vec3f(2, 0, 0), 0.25, 0.5, "Q",
                                                        iGeometricEntity::iAlignment(-3));
    quote->setColor(osg::Vec4f(1, 0.5f, 0, 1));
    quote->setVisible(0);
    quote->set_name("q");
    group.pushEntity(quote.get());
    osg::Matrixd const m = osg::Matrixd::translate(1, 2, 3);
    osg::ref_ptr<iCircleEntity> circle = new iCircleEntity(osg::Vec3f(), 2.5, 16);
    circle->setMatrix(m);
    group.pushEntity(circle.get());

    std::string matrices;
    for (double value : {1., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1.})
        matrices += f64(value);
    std::string expected = i32(2);
    expected += str("iQuoteEntity") + str("iQuoteEntity") + i32(2) + i32(1) + i32(1) + i32(quote->getUniqueId()) +
                str("q");
    expected += i32(8) + i32(2) + f64(0.5) + f64(0) + f64(0) + f64(2) + f64(0) + f64(0);
    expected += f64(1) + f64(0.5) + f64(0) + f64(1) + matrices + matrices + std::string(1, '\0');
    expected += str("Q") + f64(0.25) + f64(0.5) + i32(-3);
    std::string const all = written(group);
    ASSERT_GT(all.size(), expected.size());
    EXPECT_EQ(all.substr(0, expected.size()), expected);
    EXPECT_EQ(all.back(), '\1');

    iEntityGroup back = readBack(all);
    ASSERT_EQ(back.getSize(), 2);
    EXPECT_TRUE(back.getVisible());
    auto* quoteBack = dynamic_cast<iQuoteEntity*>(back.getEntities()[0].get());
    ASSERT_TRUE(quoteBack);
    EXPECT_EQ(quoteBack->getVertices(), quote->getVertices());
    EXPECT_EQ(quoteBack->getColor(), quote->getColor());
    EXPECT_FALSE(quoteBack->getVisible());
    EXPECT_EQ(quoteBack->getText(), "Q");
    EXPECT_EQ(quoteBack->getSize(), 0.25);
    EXPECT_EQ(quoteBack->getOffset(), 0.5);
    EXPECT_EQ(quoteBack->getAlignment(), -3);
    EXPECT_EQ(quoteBack->getUniqueId(), quote->getUniqueId());
    auto* circleBack = dynamic_cast<iCircleEntity*>(back.getEntities()[1].get());
    ASSERT_TRUE(circleBack);
    EXPECT_EQ(circleBack->getRadius(), 2.5);
    EXPECT_EQ(circleBack->getSegments(), 8);
    EXPECT_EQ(circleBack->getMatrix(), m);
    EXPECT_EQ(circleBack->getInverseMatrix(), circle->getInverseMatrix());
}

TEST(EntityGroup, PolyLineIsNotReadBackAndItsBodyIsLeftInTheStream)
{
    iEntityGroup group;
    group.pushEntity(new iPolyLineEntity(Points{{0, 0, 0}, {1, 0, 0}}));
    group.setVisible(0);
    std::string const bytes = written(group);
    EXPECT_EQ(bytes.substr(0, 4 + 4 + 15 + 4 + 15), i32(1) + str("iPolyLineEntity") + str("iPolyLineEntity"));

    // The name is read and nothing made of it: the next byte, the first of
    // the written body, is taken for the visible flag.
    iEntityGroup back = readBack(bytes);
    EXPECT_EQ(back.getSize(), 0);
    EXPECT_TRUE(back.getVisible());
}

TEST(EntityGroup, DamagedRecordsFailCleanly)
{
    std::string const hugeCount = i32(0x7fffffff);
    EXPECT_THROW(readBack(hugeCount), std::exception);
    // A class that is not an entity is read and dropped.
    std::string const node = str("iNodeGroup") + str("iNodeGroup") + i32(1) + i32(1) + i32(5) + str("") + i32(-1) +
                             str("");
    iEntityGroup back = readBack(i32(1) + node + std::string(1, '\1'));
    EXPECT_EQ(back.getSize(), 0);
    EXPECT_TRUE(back.getVisible());
    // A vertex count beyond the stream fails before anything is allocated.
    std::string const entity = str("iPointEntity") + str("iPointEntity") + i32(2) + i32(1) + i32(1) + i32(5) +
                               str("") + i32(4) + i32(0x10000000);
    EXPECT_THROW(readBack(i32(1) + entity), std::exception);
}
