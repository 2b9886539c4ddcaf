#include "interaction/InteractionTestSupport.h"

namespace {

class iTypingHandler : public iInteractorInputHandler {
public:
    using iInteractorInputHandler::dataAccepted;
};

// A tool whose steps take the given typed value, with the manager and
// an input line around it.
class TypedInput : public testing::Test {
protected:
    void SetUp() override
    {
        layer = new iGeometricsLayer;
        manager.setInputHandler(&line);
        current = new iTwoPointsIA;
        current->setGeometricsLayer(layer.get());
        current->setNumSteps(10);
        ASSERT_TRUE(manager.pushInteractor(current, false));
        calls.listen(current->sigMoved, "move");
        calls.listen(current->sigClicked, "click");
        calls.listen(current->sigReleased, "release");
    }
    void stepType(iInteractor::iInteractorTypes type)
    {
        current->clearSteps();
        current->addStep(QString("valore"), type, osg::Vec3f());
    }
    Log typed(std::string const& text)
    {
        line.dataAccepted(text);
        return calls.take();
    }

    osg::ref_ptr<iGeometricsLayer> layer;
    iInteractorManager manager;
    iTypingHandler line;
    iTwoPointsIA* current = nullptr;
    SignalLog calls;
};

Log sequence(std::string const& where)
{
    return Log{"move:" + where, "click:" + where, "release:" + where};
}

} // namespace

TEST_F(TypedInput, TypedPointGivesTheMouseSequenceAndStartsAnIdleTool)
{
    // The mouse gives this.
    iTwoPointsIA mouse;
    SignalLog mouseCalls;
    mouseCalls.listen(mouse.sigMoved, "move");
    mouseCalls.listen(mouse.sigClicked, "click");
    mouseCalls.listen(mouse.sigReleased, "release");
    mouse.start();
    mouse.move(at(1, 2.5f, -3));
    mouse.click(at(1, 2.5f, -3));
    mouse.release(at(1, 2.5f, -3));

    ASSERT_EQ(current->getState(), 0);
    EXPECT_EQ(typed("1 2.5  -3"), mouseCalls.take());
    EXPECT_EQ(current->getState(), 2);
    EXPECT_EQ(current->getCurrentStep(), 1);
    iIAPoint const last = current->getLastReleasedPos();
    EXPECT_EQ(last.getLocalPos(), osg::Vec3f(1, 2.5f, -3));
    EXPECT_EQ(last.getGlobalPos(), osg::Vec3f(1, 2.5f, -3));
    EXPECT_EQ(last.getViewportPos(), osg::Vec3f());
    EXPECT_EQ(last.getWindowPos(), osg::Vec3f());

    // "@" counts from the last point given; a fourth number is ignored.
    EXPECT_EQ(typed("@1 1 1 9"), sequence("2,3.5,-2"));
    EXPECT_EQ(typed("4 @"), sequence("6,3.5,-2"));
}

TEST_F(TypedInput, EachStepTypeReadsItsNumbers)
{
    stepType(iInteractor::iIATypeInt);
    EXPECT_EQ(typed("7 8"), sequence("7,0,0"));
    EXPECT_EQ(typed("7.9"), sequence("0,0,0")); // not an integer: 0, unreported
    stepType(iInteractor::iIATypeDouble);
    EXPECT_EQ(typed("2.25 8"), sequence("2.25,0,0"));
    EXPECT_EQ(typed("1,5"), sequence("0,0,0")); // C locale only
    stepType(iInteractor::iIATypeVec2);
    EXPECT_EQ(typed("3 4 5"), sequence("3,4,0"));
    EXPECT_EQ(typed("3"), sequence("3,0,0"));
    stepType(iInteractor::iIATypeVec3);
    EXPECT_EQ(typed("x 1"), sequence("0,1,0"));
}

TEST_F(TypedInput, NothingHappensWithoutAValue)
{
    stepType(iInteractor::iIATypeNone);
    EXPECT_TRUE(typed("1 2 3").empty());
    EXPECT_EQ(current->getState(), 0); // dropped input starts nothing
    stepType(iInteractor::iIATypeVec3);
    EXPECT_TRUE(typed("").empty());
    EXPECT_TRUE(typed(" @ @  ").empty());
    current->clearSteps(); // no steps: type 0
    EXPECT_TRUE(typed("1").empty());

    // Without a current tool, or without a manager, nothing either.
    current->setNumSteps(0);
    current->close();
    manager.loop();
    ASSERT_EQ(manager.getCurrentInteractor(), nullptr);
    line.dataAccepted("1 2 3");
}
