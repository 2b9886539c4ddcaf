#include "dimensioning/DimensioningTestSupport.h"

#include <iModelStage/dimensioning/iCreateLeaderIA.h>
#include <iModelStage/dimensioning/iCreateLinearQuoteIA.h>
#include <iModelStage/dimensioning/iCreatePointQuoteIA.h>

#include <QString>

#include <vector>

namespace {

struct MessageTap : iSlot {
    void on(QString text, iInteractor::MessageType type)
    {
        if (type == iInteractor::iIAMessageError)
            errors.push_back(text.toStdString());
    }
    std::vector<std::string> errors;
};

void clickAt(iInteractor& tool, float x, float y)
{
    tool.move(pointAt(x, y));
    tool.click(pointAt(x, y));
    tool.release(pointAt(x, y));
}

typedef DocumentTest LinearQuoteTool;
typedef DocumentTest LeaderTool;
typedef DocumentTest PointQuoteTool;

} // namespace

TEST_F(LinearQuoteTool, ThreeClicksMakeOneUndoableQuote)
{
    iCreateLinearQuoteIA tool;
    MessageTap messages;
    tool.sigMessage.connect(&messages, &MessageTap::on);
    tool.start();
    iLinearQuote* quote = tool.getQuote();
    ASSERT_NE(quote, nullptr);
    EXPECT_DOUBLE_EQ(quote->get_charsize(), 0.3);
    EXPECT_DOUBLE_EQ(quote->get_extlineoffset(), 0.005);
    EXPECT_FALSE(tool.getILayer()->containsNode(quote));

    clickAt(tool, 1, 0);
    EXPECT_EQ(tool.getCurrentStep(), 1);
    EXPECT_TRUE(tool.getILayer()->containsNode(quote));
    EXPECT_EQ(quote->getStartPoint(), osg::Vec3f(1, 0, 0));

    // Too short: refused, and the next click is the second point again.
    clickAt(tool, 1.0005f, 0);
    EXPECT_EQ(tool.getCurrentStep(), 1);
    ASSERT_EQ(messages.errors.size(), 1u);
    EXPECT_EQ(messages.errors[0], "Impossibile creare la quota, lunghezza inferiore al minimo consentito");

    tool.move(pointAt(4, 0));
    EXPECT_EQ(quote->getEndPoint(), osg::Vec3f(4, 0, 0));
    EXPECT_EQ(quote->getNormal(), osg::Vec3f(0, 0, 1));
    clickAt(tool, 4, 0);
    EXPECT_EQ(tool.getCurrentStep(), 2);

    // The tool's sizes follow into the quote while it is made.
    tool.set_charsize(0.7);
    EXPECT_DOUBLE_EQ(quote->get_charsize(), 0.7);

    tool.move(pointAt(2, 0.5f));
    EXPECT_NEAR(quote->get_offset(), 0.5, 1e-6);
    EXPECT_EQ(objectCount(), 0u);
    EXPECT_EQ(undoSteps(), 0u);

    osg::ref_ptr<iLinearQuote> kept = quote;
    clickAt(tool, 2, 0.5f);
    EXPECT_EQ(tool.getState(), iInteractor::iIAStateEnded);
    EXPECT_EQ(tool.getQuote(), nullptr);
    ASSERT_EQ(objectCount(), 1u);
    EXPECT_EQ(firstObject(), kept.get());
    EXPECT_FALSE(tool.getILayer()->containsNode(kept.get()));
    EXPECT_EQ(kept->getWorldMatrix().getTrans(), osg::Vec3d(1, 0, 0));
    EXPECT_NEAR(kept->get_offset(), 0.5, 1e-6);

    // No longer tied to the tool.
    tool.set_charsize(0.9);
    EXPECT_DOUBLE_EQ(kept->get_charsize(), 0.7);

    ASSERT_EQ(undoSteps(), 1u);
    EXPECT_EQ(document->getUndoRedoManager()->getUndoList().front()->getName(), "iCreateLinearQuoteIA");
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(objectCount(), 0u);
}

TEST_F(LinearQuoteTool, GoingBackAndCancellingChangeNoDocument)
{
    iCreateLinearQuoteIA tool;
    tool.start();
    iLinearQuote* quote = tool.getQuote();
    clickAt(tool, 0, 0);
    clickAt(tool, 2, 0);
    tool.move(pointAt(1, 3));
    EXPECT_NEAR(quote->get_offset(), 3.0, 1e-6);
    tool.goBack();
    EXPECT_EQ(quote->get_offset(), 0.0);
    EXPECT_EQ(tool.getCurrentStep(), 1);
    tool.goBack();
    EXPECT_FALSE(tool.getILayer()->containsNode(quote));
    EXPECT_EQ(tool.getCurrentStep(), 0);
    tool.cancel();
    EXPECT_EQ(objectCount(), 0u);
    EXPECT_EQ(undoSteps(), 0u);
}

TEST_F(LeaderTool, OneClickPlacesTheLeader)
{
    iCreateLeaderIA tool;
    tool.start();
    iLeader* leader = tool.getLeader();
    ASSERT_NE(leader, nullptr);
    EXPECT_TRUE(tool.getILayer()->containsNode(leader));
    EXPECT_DOUBLE_EQ(leader->get_bleaderline(), 0.5);
    EXPECT_DOUBLE_EQ(leader->get_lenlandingline(), 0.4);
    EXPECT_DOUBLE_EQ(leader->get_charsize(), 0.3);
    tool.set_flip(true);
    EXPECT_TRUE(leader->get_flip());

    osg::ref_ptr<iLeader> kept = leader;
    tool.move(pointAt(2, 3));
    EXPECT_EQ(kept->getPosition(), osg::Vec3f(2, 3, 0));
    tool.click(pointAt(2, 3));
    tool.release(pointAt(2, 3));
    EXPECT_EQ(tool.getState(), iInteractor::iIAStateEnded);
    ASSERT_EQ(objectCount(), 1u);
    EXPECT_EQ(firstObject(), kept.get());
    EXPECT_FALSE(tool.getILayer()->containsNode(kept.get()));
    EXPECT_EQ(kept->getWorldMatrix().getTrans(), osg::Vec3d(2, 3, 0));
    tool.set_hleaderline(9);
    EXPECT_DOUBLE_EQ(kept->get_hleaderline(), 0.5);
    ASSERT_EQ(undoSteps(), 1u);
    ASSERT_TRUE(document->undo(1, true));
    EXPECT_EQ(objectCount(), 0u);

    iCreateLeaderIA cancelled;
    cancelled.start();
    cancelled.move(pointAt(1, 1));
    cancelled.cancel();
    EXPECT_EQ(objectCount(), 0u);
}

TEST_F(PointQuoteTool, TheFlagShowsTheLocalPosition)
{
    iCreatePointQuoteIA tool;
    EXPECT_FALSE(tool.getAllowConstructionLines());
    tool.start();
    iPointQuote* quote = tool.getQuote();
    ASSERT_NE(quote, nullptr);
    iIAPoint const p(osg::Vec3f(), osg::Vec3f(), osg::Vec3f(1.5f, 2, 0), osg::Vec3f(9, 9, 9));
    tool.move(p);
    EXPECT_EQ(quote->getText(), "(1.5, 2, 0)");
    EXPECT_EQ(quote->getPosition(), osg::Vec3f(1.5f, 2, 0));
    EXPECT_EQ(undoSteps(), 0u);

    osg::ref_ptr<iPointQuote> kept = quote;
    tool.click(p);
    tool.release(p);
    EXPECT_EQ(tool.getState(), iInteractor::iIAStateEnded);
    ASSERT_EQ(objectCount(), 1u);
    EXPECT_EQ(firstObject(), kept.get());
    EXPECT_EQ(undoSteps(), 1u);
    // Without an application object no font is measured.
    EXPECT_EQ(kept->getImage()->t(), 0);
}
