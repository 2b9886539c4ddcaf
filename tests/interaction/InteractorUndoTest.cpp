#include "interaction/InteractionTestSupport.h"
#include "support/GeometricsDocumentTest.h"

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iUndoRedoManager.h>

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

namespace {

// Adds an object named after the clicked x, as one undoable operation;
// a click at a negative x changes its mind and takes the step back.
class iAddObjectIA : public iTwoPointsIA {
public:
    iAddObjectIA() { setNumSteps(1); }
    bool release(iIAPoint const& p) override
    {
        storeForUndo("Aggiungi");
        if (p.getGlobalPos().x() < 0.0f) {
            cancelUndoStore();
        } else {
            osg::ref_ptr<iNodeGroup> object = new iNodeGroup;
            object->set_name(std::to_string(int(p.getGlobalPos().x())));
            getGeometricsLayer()->addObject(object.get(), false);
        }
        return iTwoPointsIA::release(p);
    }
};

class InteractorUndo : public GeometricsDocumentTest {
protected:
    void SetUp() override
    {
        GeometricsDocumentTest::SetUp();
        if (HasFatalFailure())
            return;
        document->sigDbChanged.connect(&dbLog, &Tap::on);
    }
    // One whole operation of the tool, as the mouse gives it.
    void operate(float x)
    {
        tool.start();
        tool.click(at(x, 0));
        tool.release(at(x, 0));
    }
    Log names() const
    {
        Log out;
        for (unsigned int i = 0; i < layer->getObjectsRoot()->getNumChildren(); ++i)
            out.push_back(layer->getObjectsRoot()->getChild(i)->getName());
        return out;
    }

    struct Tap : iSlot {
        void on(bool modified) { log.push_back(modified ? "modified" : "clean"); }
        Log log;
    };

    iAddObjectIA tool;
    Tap dbLog;
};

} // namespace

TEST_F(InteractorUndo, EachOperationIsOneUndoStep)
{
    operate(1);
    operate(2);
    EXPECT_EQ(tool.getState(), 3);
    EXPECT_EQ(names(), (Log{"1", "2"}));
    EXPECT_TRUE(document->dbChanged());
    EXPECT_EQ(dbLog.log, (Log{"modified", "modified"}));
    ASSERT_EQ(document->getUndoRedoManager()->getUndoList().size(), 2u);
    EXPECT_EQ(document->getUndoRedoManager()->getUndoList().front()->getName(), "Aggiungi");

    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(names(), (Log{"1"}));
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_TRUE(names().empty());
    ASSERT_TRUE(document->redo(1));
    EXPECT_EQ(names(), (Log{"1"}));
}

TEST_F(InteractorUndo, ACancelledStoreLeavesNoStep)
{
    operate(1);
    dbLog.log.clear();
    operate(-1);
    EXPECT_EQ(dbLog.log, (Log{"modified", "clean"}));
    EXPECT_FALSE(document->dbChanged());
    EXPECT_EQ(document->getUndoRedoManager()->getUndoList().size(), 1u);

    // With undo off the document is still marked, but no step is kept.
    document->setUndoRedoEnabled(false);
    operate(3);
    EXPECT_TRUE(document->dbChanged());
    EXPECT_EQ(document->getUndoRedoManager()->getUndoList().size(), 1u);
}
