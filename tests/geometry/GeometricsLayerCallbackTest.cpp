#include "geometry/GeometryTestSupport.h"
#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iGeometricGroupCallback.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/snapping/iBaseSnap.h>

#include <algorithm>

namespace {

GEOMETRY_TEST_GROUP(iFinalizedGroup)
GEOMETRY_TEST_GROUP(iTwoEntryGroup)
GEOMETRY_TEST_GROUP(iCascadeGroup)

Log& journal()
{
    static Log log;
    return log;
}

int& liveCallbacks()
{
    static int count = 0;
    return count;
}

// Writes each hook it runs into the journal, with its group's name.
class iJournalCallback : public iGeometricGroupCallback {
    I_CLASS(iJournalCallback, iGeometricGroupCallback, 1)
public:
    iJournalCallback() { ++liveCallbacks(); }
    ~iJournalCallback() override { --liveCallbacks(); }
    void beginFinalizeImplementation(iGeometricsLayer*, iGeometricGroup* group) override { note("begin", group); }
    void finalizeImplementation(iGeometricsLayer* layer, iGeometricGroup* group) override
    {
        note("finalize", group);
        act(layer, group);
    }
    void endFinalizeImplementation(iGeometricsLayer*, iGeometricGroup* group) override { note("end", group); }

protected:
    virtual void act(iGeometricsLayer*, iGeometricGroup*) {}
    void note(char const* what, iGeometricGroup* group)
    {
        journal().push_back(std::string(getClassName()) + ":" + what + ":" + group->get_name());
    }
};

class iOtherCallback : public iJournalCallback {
    I_CLASS(iOtherCallback, iJournalCallback, 1)
};

// Finalizes the group named "next" from within its own work, and removes
// the group named "doomed" from the layer.
class iCascadeCallback : public iJournalCallback {
    I_CLASS(iCascadeCallback, iJournalCallback, 1)

protected:
    void act(iGeometricsLayer* layer, iGeometricGroup* group) override
    {
        if (group->get_name() == "first")
            static_cast<iGeometricGroup*>(layer->findObjectByName("next"))->finalize("x");
        if (group->get_name() == "doomed")
            layer->removeObject(group, true);
    }
};

int& madeSnaps()
{
    static int count = 0;
    return count;
}

class iSnapZulu : public iBaseSnap {
    I_CLASS(iSnapZulu, iBaseSnap, 1)
public:
    iSnapZulu() { ++madeSnaps(); }
};

class iSnapAlpha : public iBaseSnap {
    I_CLASS(iSnapAlpha, iBaseSnap, 1)
public:
    iSnapAlpha() { ++madeSnaps(); }
};

class iSnapMike : public iBaseSnap {
    I_CLASS(iSnapMike, iBaseSnap, 1)
public:
    iSnapMike() { ++madeSnaps(); }
};

void registerOnce()
{
    static bool const once = [] {
        iGeometricsLayer::registerGeometryCallback("iFinalizedGroup", "iJournalCallback", "x");
        iGeometricsLayer::registerGeometryCallback("iFinalizedGroup", "iOtherCallback", "y");
        iGeometricsLayer::registerGeometryCallback("iTwoEntryGroup", "iJournalCallback", "z");
        iGeometricsLayer::registerGeometryCallback("iTwoEntryGroup", "iOtherCallback", "z");
        iGeometricsLayer::registerGeometryCallback("iTwoEntryGroup", "iOtherCallback", "");
        iGeometricsLayer::registerGeometryCallback("iCascadeGroup", "iCascadeCallback", "x");
        return true;
    }();
    (void)once;
}

class GeometricsLayerCallbacks : public testing::Test {
protected:
    void SetUp() override
    {
        registerOnce();
        journal().clear();
        layer = new iGeometricsLayer;
        events.listen(layer->sigFinalizeBegin, "finalizeBegin");
        events.listen(layer->sigGroupFinalizeBegin, "groupBegin");
        events.listen(layer->sigGroupFinalizeEnd, "groupEnd");
        events.listen(layer->sigFinalizeEnd, "finalizeEnd");
    }
    template <class T>
    osg::ref_ptr<T> add(std::string const& name)
    {
        osg::ref_ptr<T> group = make<T>(name);
        layer->addObject(group.get(), true);
        return group;
    }
    osg::ref_ptr<iGeometricsLayer> layer;
    Recorder events;
};

} // namespace

I_REGISTER_CLASS(iFinalizedGroup)
I_REGISTER_CLASS(iTwoEntryGroup)
I_REGISTER_CLASS(iCascadeGroup)
I_REGISTER_CLASS(iJournalCallback)
I_REGISTER_CLASS(iOtherCallback)
I_REGISTER_CLASS(iCascadeCallback)
I_REGISTER_CLASS(iSnapZulu)
I_REGISTER_CLASS(iSnapAlpha)
I_REGISTER_CLASS(iSnapMike)

TEST_F(GeometricsLayerCallbacks, QueuesOncePerClassGroupAndIdentifier)
{
    osg::ref_ptr<iFinalizedGroup> group = add<iFinalizedGroup>("g");
    group->finalize("x");
    group->finalize("x");
    EXPECT_EQ(liveCallbacks(), 1);
    layer->loop();
    EXPECT_EQ(journal(), (Log{"iJournalCallback:begin:g", "iJournalCallback:finalize:g", "iJournalCallback:end:g"}));
    EXPECT_EQ(events.take(), (Log{"finalizeBegin", "groupBegin:g", "groupEnd:g", "finalizeEnd"}));
    EXPECT_EQ(liveCallbacks(), 0);

    // The other identifier reaches the other class only; finalizeAll runs
    // at once.
    journal().clear();
    group->finalize("y");
    layer->finalizeAll();
    EXPECT_EQ(journal(), (Log{"iOtherCallback:begin:g", "iOtherCallback:finalize:g", "iOtherCallback:end:g"}));
    EXPECT_EQ(liveCallbacks(), 0);

    // A group outside the layer queues nothing.
    osg::ref_ptr<iFinalizedGroup> loose = make<iFinalizedGroup>("loose");
    loose->finalize("x");
    EXPECT_EQ(liveCallbacks(), 0);
}

TEST_F(GeometricsLayerCallbacks, EveryMatchingEntryQueuesAndAnEmptyIdentifierIsOne)
{
    osg::ref_ptr<iTwoEntryGroup> group = add<iTwoEntryGroup>("g");
    group->finalize("z");
    EXPECT_EQ(liveCallbacks(), 2);
    group->finalize("z");
    EXPECT_EQ(liveCallbacks(), 2);
    layer->finalizeAll();
    EXPECT_EQ(journal(), (Log{"iJournalCallback:begin:g", "iOtherCallback:begin:g", "iJournalCallback:finalize:g",
                              "iOtherCallback:finalize:g", "iJournalCallback:end:g", "iOtherCallback:end:g"}));

    journal().clear();
    group->finalize("");
    EXPECT_EQ(liveCallbacks(), 1);
    layer->finalizeAll();
    EXPECT_EQ(journal(), (Log{"iOtherCallback:begin:g", "iOtherCallback:finalize:g", "iOtherCallback:end:g"}));
    EXPECT_EQ(liveCallbacks(), 0);
}

TEST_F(GeometricsLayerCallbacks, PassesRunInOrderAndSeeRecordsAddedOnTheWay)
{
    osg::ref_ptr<iCascadeGroup> first = add<iCascadeGroup>("first");
    osg::ref_ptr<iCascadeGroup> next = add<iCascadeGroup>("next");
    osg::ref_ptr<iCascadeGroup> doomed = add<iCascadeGroup>("doomed");
    first->finalize("x");
    doomed->finalize("x");
    ASSERT_EQ(liveCallbacks(), 2);
    layer->loop();
    // "next" is queued during the second pass: it takes part in the rest of
    // that pass and in the third, but gets no begin. "doomed" leaves the
    // layer in the second pass and gets no end.
    EXPECT_EQ(journal(), (Log{"iCascadeCallback:begin:first", "iCascadeCallback:begin:doomed",
                              "iCascadeCallback:finalize:first", "iCascadeCallback:finalize:doomed",
                              "iCascadeCallback:finalize:next", "iCascadeCallback:end:first",
                              "iCascadeCallback:end:next"}));
    EXPECT_EQ(events.take(), (Log{"finalizeBegin", "groupBegin:first", "groupBegin:doomed", "groupEnd:first",
                                  "groupEnd:next", "finalizeEnd"}));
    EXPECT_EQ(liveCallbacks(), 0);
    EXPECT_EQ(doomed->getNumParents(), 0u);
}

TEST(GeometricsLayerSnaps, RegistryKeepsNameOrderAndRemakesOnNewNames)
{
    int const before = madeSnaps();
    EXPECT_TRUE(iGeometricsLayer::registerSnapClass("iSnapZulu"));
    EXPECT_TRUE(iGeometricsLayer::registerSnapClass("iSnapAlpha"));
    EXPECT_EQ(madeSnaps() - before, 3); // Zulu, then Alpha and Zulu anew

    std::vector<std::string> names;
    for (iBaseSnap* snap : iGeometricsLayer::getSnapObjectsList())
        names.push_back(snap->getClassName());
    EXPECT_NE(std::find(names.begin(), names.end(), "iSnapAlpha"), names.end());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));

    iBaseSnap* zulu = iGeometricsLayer::getSnapObject("iSnapZulu");
    ASSERT_NE(zulu, nullptr);
    EXPECT_STREQ(zulu->getClassName(), "iSnapZulu");
    EXPECT_EQ(iGeometricsLayer::getSnapObject("iSnapNobody"), nullptr);

    // A known name changes nothing; a new one makes every instance anew.
    int const settled = madeSnaps();
    EXPECT_FALSE(iGeometricsLayer::registerSnapClass("iSnapZulu"));
    EXPECT_EQ(madeSnaps(), settled);
    EXPECT_EQ(iGeometricsLayer::getSnapObject("iSnapZulu"), zulu);
    EXPECT_TRUE(iGeometricsLayer::registerSnapClass("iSnapMike"));
    EXPECT_EQ(madeSnaps() - settled, 3);
    std::vector<std::string> after;
    for (iBaseSnap* snap : iGeometricsLayer::getSnapObjectsList())
        after.push_back(snap->getClassName());
    auto alpha = std::find(after.begin(), after.end(), "iSnapAlpha");
    ASSERT_NE(alpha, after.end());
    ASSERT_GE(after.end() - alpha, 3);
    EXPECT_EQ(alpha[1], "iSnapMike");
    EXPECT_EQ(alpha[2], "iSnapZulu");

    // The base snaps nothing.
    osg::Vec3f point(1, 2, 3);
    EXPECT_FALSE(iGeometricsLayer::getSnapObject("iSnapMike")->snap(nullptr, point, osg::Vec2f()));
    EXPECT_FALSE(iGeometricsLayer::getSnapObject("iSnapMike")->collectGeometry({}));
    EXPECT_EQ(point, osg::Vec3f(1, 2, 3));
}

TEST(GeometricsLayerSnaps, OnlyTheFilterItselfIsAnnounced)
{
    Recorder events;
    events.listen(iGeometricsLayer::sigSnapFilterChanged, "filter");
    iGeometricsLayer::setSnapFilterActive(true);
    EXPECT_TRUE(iGeometricsLayer::getSnapFilterActive());
    EXPECT_TRUE(events.take().empty());
    iGeometricsLayer::setSnapFilter({"iSnapAlpha"});
    EXPECT_EQ(events.take(), Log{"filter"});
    EXPECT_EQ(iGeometricsLayer::getSnapFilter(), std::set<std::string>{"iSnapAlpha"});
    iGeometricsLayer::setSnapFilter({});
    iGeometricsLayer::setSnapFilterActive(false);
}
