#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/snapping/iBaseSnap.h>
#include <iModelStage/snapping/iGridSnap.h>
#include <iModelStage/snapping/iIntersectionSnap.h>

#include <gtest/gtest.h>

#include <osg/Group>

#include <limits>
#include <memory>
#include <vector>

namespace {

// A snap that records its calls and moves the point by a step.
class RecordingSnap : public iBaseSnap {
public:
    explicit RecordingSnap(bool succeeds, float step = 1.0f) : succeeds(succeeds), step(step)
    {
        setNeedGeometry(false);
    }

    bool collectGeometry(std::list<iSnapGeometry> const&) override
    {
        ++collects;
        return true;
    }

    bool snap(iViewer*, osg::Vec3f& point, osg::Vec2f const&) override
    {
        ++snaps;
        seen = point;
        if (succeeds)
            point.x() += step;
        return succeeds;
    }

    bool succeeds;
    float step;
    int collects = 0;
    int snaps = 0;
    osg::Vec3f seen;
};

} // namespace

TEST(SnapMulti, ActiveSnapsRunInOrderOnTheSamePointAndTheLastSuccessWins)
{
    RecordingSnap first(true, 1.0f), inactive(true, 100.0f), failing(false), last(true, 10.0f), after(false);
    inactive.setActive(false);
    osg::Vec3f point(0.0f, 2.0f, 3.0f);
    std::vector<iBaseSnap*> const snaps{&first, &inactive, nullptr, &failing, &last, &after};
    iBaseSnap* result = iBaseSnap::snapMulti(snaps, nullptr, nullptr, point, osg::Vec2f(5.0f, 5.0f));

    EXPECT_EQ(result, &last);
    EXPECT_EQ(point, osg::Vec3f(11.0f, 2.0f, 3.0f));
    EXPECT_EQ(inactive.collects + inactive.snaps, 0);
    EXPECT_EQ(failing.seen, osg::Vec3f(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(after.seen, osg::Vec3f(11.0f, 2.0f, 3.0f));
    EXPECT_EQ(first.getGeometricsLayer(), nullptr);

    // A snap that collects nothing is not asked to snap.
    struct Empty : RecordingSnap {
        Empty() : RecordingSnap(true) {}
        bool collectGeometry(std::list<iSnapGeometry> const&) override { return false; }
    } empty;
    osg::ref_ptr<iGeometricsLayer> layer = new iGeometricsLayer;
    EXPECT_EQ(iBaseSnap::snapMulti({&empty}, layer.get(), nullptr, point, osg::Vec2f()), nullptr);
    EXPECT_EQ(empty.snaps, 0);
    EXPECT_EQ(empty.getGeometricsLayer(), layer.get());

    // With no active snap there is no result and the point stays.
    first.setActive(false);
    EXPECT_EQ(iBaseSnap::snapMulti({&first}, nullptr, nullptr, point, osg::Vec2f()), nullptr);
    EXPECT_EQ(iBaseSnap::snapMulti({}, nullptr, nullptr, point, osg::Vec2f()), nullptr);
    EXPECT_EQ(point, osg::Vec3f(11.0f, 2.0f, 3.0f));
}

TEST(SnapSettings, PrecisionBehaviourAndExclusionList)
{
    EXPECT_FLOAT_EQ(iBaseSnap::getPrecision(), 100000000.0f);
    iBaseSnap::setPrecision(0.0f);
    iBaseSnap::setPrecision(-5.0f);
    iBaseSnap::setPrecision(std::numeric_limits<float>::infinity());
    EXPECT_FLOAT_EQ(iBaseSnap::getPrecision(), 100000000.0f);
    iBaseSnap::setPrecision(1000.0f);
    EXPECT_FLOAT_EQ(iBaseSnap::getPrecision(), 1000.0f);
    iBaseSnap::setPrecision(100000000.0f);

    EXPECT_EQ(iBaseSnap::getOrthoSnapBevahior(), iBaseSnap::iOrthoSnapFree);
    iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapProject);
    EXPECT_EQ(iBaseSnap::getOrthoSnapBevahior(), 2);
    iBaseSnap::setOrthoSnapBevahior(iBaseSnap::iOrthoSnapFree);

    osg::ref_ptr<osg::Node> a = new osg::Group, b = new osg::Group;
    iBaseSnap::addExclusionList({a, b, a, nullptr});
    EXPECT_EQ(iBaseSnap::getExclusionList().size(), 2u);
    iBaseSnap::removeExclusionList({a, nullptr});
    EXPECT_EQ(iBaseSnap::getExclusionList().count(b), 1u);
    EXPECT_EQ(iBaseSnap::getExclusionList().size(), 1u);
    iBaseSnap::clearExclusionList();
    EXPECT_TRUE(iBaseSnap::getExclusionList().empty());
}

TEST(SnapKinds, ClassTableAndDefaults)
{
    struct Row {
        char const* name;
        char const* parent;
    };
    for (Row const& row : {Row{"iPointSnap", "iBaseSnap"}, Row{"iCentroidSnap", "iPointSnap"},
                           Row{"iNearestSnap", "iPointSnap"}, Row{"iIntersectionSnap", "iPointSnap"},
                           Row{"iGridSnap", "iBaseSnap"}}) {
        std::unique_ptr<iRoot> made(iRoot::newClass(row.name));
        ASSERT_NE(made, nullptr) << row.name;
        auto* snap = dynamic_cast<iBaseSnap*>(made.get());
        ASSERT_NE(snap, nullptr);
        EXPECT_STREQ(snap->getParentClassName(), row.parent);
        EXPECT_EQ(snap->getClassVersion(), 1);
        EXPECT_TRUE(snap->getActive());
        EXPECT_EQ(snap->getNeedGeometry(), std::string(row.name) != "iGridSnap");
    }
    // Without a viewer the kinds snap nothing and leave the point alone.
    iGridSnap grid;
    osg::Vec3f point(1.0f, 2.0f, 3.0f);
    EXPECT_TRUE(grid.collectGeometry({}));
    EXPECT_FALSE(grid.snap(nullptr, point, osg::Vec2f()));
    EXPECT_EQ(point, osg::Vec3f(1.0f, 2.0f, 3.0f));
}

TEST(SnapKinds, ClosestPointsOfTwoLines)
{
    double ta = 0.0, tb = 0.0;
    typedef iPointSnap::iSnapSegment Segment;
    // Skew lines: x axis at z 0 and a line along y at x 3, z 1.
    ASSERT_TRUE(iIntersectionSnap::closestPoints(Segment({0, 0, 0}, {4, 0, 0}), Segment({3, -1, 1}, {3, 1, 1}), ta,
                                                 tb));
    EXPECT_DOUBLE_EQ(ta, 0.75);
    EXPECT_DOUBLE_EQ(tb, 0.5);
    EXPECT_FALSE(
        iIntersectionSnap::closestPoints(Segment({0, 0, 0}, {4, 0, 0}), Segment({0, 1, 0}, {-2, 1, 0}), ta, tb));
    EXPECT_FALSE(iIntersectionSnap::closestPoints(Segment({1, 1, 1}, {1, 1, 1}), Segment({0, 1, 0}, {-2, 1, 0}), ta,
                                                  tb));
}
