#include "viewing/EventTestSupport.h"

#include <iModelStage/editing/iBaseManipulator.h>
#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/snapping/iBaseSnap.h>

I_DEFINE_CLASS(iRecordIA)

namespace {

// A square gizmo of side 2 that starts a recording tool when grabbed.
class iSquareManipulator : public iBaseManipulator {
    I_CLASS(iSquareManipulator, iBaseManipulator, 1)
public:
    iSquareManipulator() { setActive(true); }
    void buildGeometry() override
    {
        ++builds;
        removeChildren(0, getNumChildren());
        osg::ref_ptr<osg::Geometry> quad = osg::createTexturedQuadGeometry(
            osg::Vec3(-1.0f, -1.0f, 0.0f), osg::Vec3(2.0f, 0.0f, 0.0f), osg::Vec3(0.0f, 2.0f, 0.0f));
        auto* geode = new osg::Geode;
        geode->addDrawable(quad.get());
        addChild(geode);
    }
    iInteractor* execute(iIAPoint const& point, unsigned int) override
    {
        if (!log)
            return nullptr;
        log->push_back("execute " + iRecordIA::text(point));
        auto* tool = new iRecordIA;
        tool->log = log;
        tool->skipMoves = true;
        iInteractorManager::getInteractorManager()->pushInteractor(tool, false);
        return tool;
    }
    static CallLog* log;
    static int builds;
};

CallLog* iSquareManipulator::log = nullptr;
int iSquareManipulator::builds = 0;

struct ManipulatorSignals : iSlot {
    void executed(iBaseManipulator*) { log.push_back("executed"); }
    void stopped(iBaseManipulator*) { log.push_back("stopped"); }
    CallLog log;
};

class ManipulatorsGL : public EventViewerGL {
protected:
    void SetUp() override
    {
        EventViewerGL::SetUp();
        tool->setPersistent(true);
        tool->skipMoves = true;
        frame();
        take();
        manipulators = iManipulatorsManager::getInstance();
        manipulators->setGeometricsLayer(layer.get());
        iSquareManipulator::log = &calls;
    }
    void TearDown() override
    {
        layer->clearObjectSelection();
        iSquareManipulator::log = nullptr;
    }
    osg::ref_ptr<iTransformGroup> addObject(osg::Vec3f const& at)
    {
        osg::ref_ptr<iTransformGroup> object = new iTransformGroup;
        object->setPosition(at);
        layer->addObject(object.get(), false);
        return object;
    }
    bool shown(iBaseManipulator* m) { return m && layer->getInteractiveLayer()->containsNode(m); }

    iManipulatorsManager* manipulators = nullptr;
};

} // namespace

I_REGISTER_CLASS(iSquareManipulator)

TEST_F(ManipulatorsGL, SelectionOfOneClassGetsItsManipulator)
{
    EXPECT_FALSE(iManipulatorsManager::registerObjectManipulator("iTransformGroup", "iNoSuchClass", ""));
    EXPECT_TRUE(iManipulatorsManager::registerObjectManipulator("iTransformGroup", "iSquareManipulator", ""));
    unsigned int const bare = layer->getInteractiveLayer()->getNumChildren();
    EXPECT_FALSE(iManipulatorsManager::registerObjectManipulator("iTransformGroup", "iSquareManipulator", ""));

    osg::ref_ptr<iTransformGroup> first = addObject(osg::Vec3f(2, 3, 0));
    first->setScale(osg::Vec3f(4, 4, 4));
    osg::ref_ptr<iTransformGroup> second = addObject(osg::Vec3f(-5, 0, 0));
    layer->addObjectSelection(first.get());
    layer->addObjectSelection(second.get());
    osg::ref_ptr<iBaseManipulator> current = manipulators->getCurrentManipulator();
    ASSERT_TRUE(current.valid());
    EXPECT_STREQ(current->getClassName(), "iSquareManipulator");
    EXPECT_TRUE(shown(current.get()));
    ASSERT_NE(current->getTargets(), nullptr);
    EXPECT_EQ(current->getTargets()->size(), 2u);
    // It stands on the first target, at its own size, and follows it.
    osg::Matrixd const m = current->getMatrix();
    EXPECT_EQ(m.getTrans(), osg::Vec3d(2, 3, 0));
    EXPECT_NEAR(m.getScale().x(), 1.0, 1e-9);
    first->setPosition(osg::Vec3f(1, 1, 0));
    EXPECT_EQ(current->getMatrix().getTrans(), osg::Vec3d(1, 1, 0));
    // Snapping passes over it.
    EXPECT_FALSE(iNodeGroup::getNodeFlags(current.get()).test(4));

    // A second class in the selection: no gizmo at all.
    osg::ref_ptr<iInputPlane> plane = new iInputPlane;
    layer->addObject(plane.get(), false);
    layer->addObjectSelection(plane.get());
    EXPECT_FALSE(shown(current.get()));
    EXPECT_FALSE(shown(manipulators->getCurrentManipulator()));

    // A class with none registered and no default: nothing.
    layer->clearObjectSelection();
    layer->addObjectSelection(plane.get());
    EXPECT_EQ(manipulators->getCurrentManipulator(), nullptr);
    iManipulatorsManager::setDefaultObjectManipulator("iSquareManipulator");
    manipulators->updateCurrentManipulator();
    EXPECT_TRUE(shown(manipulators->getCurrentManipulator()));
    iManipulatorsManager::setDefaultObjectManipulator("");

    // Clearing the selection takes it away.
    layer->clearObjectSelection();
    EXPECT_EQ(manipulators->getCurrentManipulator(), nullptr);
    EXPECT_EQ(layer->getInteractiveLayer()->getNumChildren(), bare);
}

TEST_F(ManipulatorsGL, GrabbingTheManipulatorStartsItsToolInsteadOfTheCurrentOne)
{
    iManipulatorsManager::registerObjectManipulator("iTransformGroup", "iSquareManipulator", "");
    osg::ref_ptr<iTransformGroup> object = addObject(osg::Vec3f(2, 3, 0));
    layer->addObjectSelection(object.get());
    osg::ref_ptr<iBaseManipulator> current = manipulators->getCurrentManipulator();
    ASSERT_TRUE(current.valid());
    ManipulatorSignals heard;
    current->sigExecuted.connect(&heard, &ManipulatorSignals::executed);
    current->sigStopped.connect(&heard, &ManipulatorSignals::stopped);

    frame();
    osg::Vec3d const onGizmo = viewer.project(osg::Vec3d(2, 3, 0));
    int const x = int(onGizmo.x());
    int const y = int(onGizmo.y());
    moveTo(x, y);
    press(x, y);
    frame();
    // The press is the gizmo's: the persistent tool sees no click.
    EXPECT_TRUE(take().empty());
    release(x, y);
    frame();
    // The frame's own event starts the new tool at once.
    EXPECT_EQ(take(), (CallLog{"execute 2,3,0", "start"}));
    EXPECT_EQ(heard.log, (CallLog{"executed"}));
    EXPECT_TRUE(current->inProgress());
    EXPECT_FALSE(layer->isNodeFlagSet(current.get(), 0));
    EXPECT_EQ(iBaseSnap::getExclusionList().count(object.get()), 1u);
    EXPECT_NE(manager.getCurrentInteractor(), tool);

    // Escape cancels the gizmo's tool; the gizmo comes back, rebuilt.
    int const builds = iSquareManipulator::builds;
    key(Qt::Key_Escape);
    frame();
    EXPECT_EQ(take(), (CallLog{"cancel", "keyup 65307"}));
    EXPECT_EQ(heard.log, (CallLog{"executed", "stopped"}));
    EXPECT_FALSE(current->inProgress());
    EXPECT_EQ(iBaseSnap::getExclusionList().count(object.get()), 0u);
    EXPECT_EQ(iSquareManipulator::builds, builds + 1);
    EXPECT_TRUE(shown(manipulators->getCurrentManipulator()));
    manager.loop();
    EXPECT_EQ(manager.getCurrentInteractor(), tool);

    // Away from the gizmo the current tool gets the click.
    press(10, 100);
    frame();
    EXPECT_EQ(take(), (CallLog{"click " + worldAt(10, 100)}));
}
