#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/reporting/iExceptionBlock.h>
#include <iModelStage/reporting/iExceptionManager.h>
#include <iModelStage/reporting/iExceptionManagerInterface.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string> journal;

// Checks of the test's own: one finds an error, one a warning, one runs
// only after the others found no error.
class iErrorCheck : public iExceptionBlock {
    I_CLASS(iErrorCheck, iExceptionBlock, 1)
public:
    void handleExceptions() override
    {
        journal.push_back("error check");
        iExceptionItem item("e1", iExceptionItem::Error, nullptr, "broken", "it is broken", "iSelectIA");
        pushItem(item);
    }
};

class iWarningCheck : public iExceptionBlock {
    I_CLASS(iWarningCheck, iExceptionBlock, 1)
public:
    void handleExceptions() override
    {
        journal.push_back("warning check:" + std::to_string(getDataObject() != nullptr));
        iExceptionItem item("w1", iExceptionItem::Warning, nullptr, "odd", "", nullptr);
        pushItem(item);
    }
};

class iPostCheck : public iExceptionBlock {
    I_CLASS(iPostCheck, iExceptionBlock, 1)
public:
    void handleExceptions() override { journal.push_back("post check"); }
};

class RecordingInterface : public iExceptionManagerInterface {
public:
    void start(std::string const& title) override { journal.push_back("start:" + title); }
    void end() override { journal.push_back("end"); }
    void clear() override { journal.push_back("clear"); }
    void handleBlock(iExceptionBlock* block) override
    {
        journal.push_back(std::string("block:") + block->getClassName());
        blocks.push_back(block);
    }
    std::vector<iExceptionBlock*> blocks;
};

} // namespace

I_REGISTER_CLASS(iErrorCheck)
I_REGISTER_CLASS(iWarningCheck)
I_REGISTER_CLASS(iPostCheck)

class ExceptionManager : public testing::Test {
protected:
    void SetUp() override
    {
        document = std::make_unique<iLayersManager>();
        document->setExceptionManagerInterface(&receiver);
        iExceptionManager::registerExceptionHandler("b", "iErrorCheck");
        iExceptionManager::registerExceptionHandler("a", "iWarningCheck");
        iExceptionManager::registerExceptionHandler("a", "iNoSuchCheck");
        iExceptionManager::registerExceptionHandler("a", "iNodeGroup");
        iExceptionManager::registerPostExceptionHandler("p", "iPostCheck");
        checks.sigStarted.connect(&signals, &Signals::started);
        checks.sigEnded.connect(&signals, &Signals::ended);
        journal.clear();
    }
    void TearDown() override
    {
        checks.clear();
        document->setExceptionManagerInterface(nullptr);
    }

    struct Signals : iSlot {
        void started() { journal.push_back("sigStarted"); }
        void ended() { journal.push_back("sigEnded"); }
    } signals;
    RecordingInterface receiver;
    std::unique_ptr<iLayersManager> document;
    iExceptionManager checks{nullptr};
};

TEST_F(ExceptionManager, ChecksRunInKeyOrderAndAnErrorHoldsThePostChecks)
{
    EXPECT_FALSE(iExceptionManager::registerExceptionHandler("b", "iErrorCheck"));
    EXPECT_TRUE(iExceptionManager::registerExceptionHandler("c", "iErrorCheck"));

    osg::ref_ptr<iNodeGroup> data = new iNodeGroup;
    checks.start("Verifica", data.get(), 3, {"iErrorCheck", "iWarningCheck", "iNodeGroup", "iPostCheck"});
    EXPECT_EQ(journal,
              (std::vector<std::string>{"clear", "start:Verifica", "sigStarted", "block:iWarningCheck",
                                        "warning check:1", "block:iErrorCheck", "error check", "block:iErrorCheck",
                                        "error check", "sigEnded", "end"}));
    ASSERT_EQ(receiver.blocks.size(), 3u);
    EXPECT_EQ(receiver.blocks[1]->getNumErrors(), 1);
    EXPECT_EQ(receiver.blocks[0]->getNumWarnings(), 1);
    iExceptionItem const& item = receiver.blocks[1]->getItems().front();
    EXPECT_EQ(item.getParentBlock(), receiver.blocks[1]);
    EXPECT_EQ(item.getIAClass(), "iSelectIA");

    // Without the error checks the post-checks run, but only with bit 2.
    journal.clear();
    checks.start("Verifica", nullptr, 3, {"iWarningCheck", "iPostCheck"});
    EXPECT_EQ(journal,
              (std::vector<std::string>{"clear", "start:Verifica", "sigStarted", "block:iWarningCheck",
                                        "warning check:0", "block:iPostCheck", "post check", "sigEnded", "end"}));
    journal.clear();
    checks.start("Verifica", nullptr, 1, {"iWarningCheck", "iPostCheck"});
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "post check"), 0);

    // Mode 0 clears and does nothing else.
    journal.clear();
    checks.start("Verifica", nullptr, 0, {});
    EXPECT_EQ(journal, std::vector<std::string>{"clear"});
}

TEST(ExceptionBlock, ItemsCountByLevelAndOutliveTheirObjects)
{
    iExceptionBlock block;
    std::vector<std::string> pushed;
    struct Tap : iSlot {
        std::vector<std::string>* out;
        void onItem(iExceptionItem& item) { out->push_back(item.getId()); }
        void onCanceled() { out->push_back("canceled"); }
    } tap;
    tap.out = &pushed;
    block.sigItemPushed.connect(&tap, &Tap::onItem);
    block.sigCanceled.connect(&tap, &Tap::onCanceled);

    osg::ref_ptr<iNodeGroup> wall = new iNodeGroup;
    wall->set_name("wall");
    iExceptionItem info("i1", iExceptionItem::Information, wall.get(), "thin", "", nullptr);
    EXPECT_EQ(info.getFormattedMessage(), "thin : wall");
    block.pushItem(info);
    iExceptionItem odd("x1", static_cast<iExceptionItem::ItemType>(7), nullptr, "other", "", nullptr);
    block.pushItem(odd);
    wall = nullptr;
    EXPECT_EQ(block.getItems().front().getFormattedMessage(), "thin");
    EXPECT_EQ(block.getItems().front().getObject(), nullptr);

    block.cancel(false);
    EXPECT_TRUE(block.isCanceled());
    EXPECT_EQ(block.getNumItems(), 3);
    EXPECT_EQ(block.getNumInformations(), 1);
    EXPECT_EQ(block.getNumErrors(), 1);
    EXPECT_EQ(block.getNumWarnings(), 0);
    iExceptionItem const& canceled = block.getItems().back();
    EXPECT_EQ(canceled.getId(), "iExceptionBlock::canceled");
    EXPECT_EQ(canceled.getMessage(), "Annullato");
    EXPECT_EQ(canceled.getDescription(), "Azione annullata");
    EXPECT_EQ(pushed, (std::vector<std::string>{"i1", "x1", "iExceptionBlock::canceled", "canceled"}));
}
