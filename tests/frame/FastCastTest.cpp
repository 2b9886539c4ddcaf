#include <iModelStage/frame/iFastCast.h>

#include <gtest/gtest.h>

namespace {

struct Base {
    virtual ~Base() = default;
    int base = 0;
};
struct Left : Base {
    int left = 1;
};
struct Right : Base {
    int right = 2;
};
struct Other {
    virtual ~Other() = default;
    double other = 3;
};
// Two Base parts, and the wanted Other part behind both.
struct Both : Left, Right, Other {
    int both = 4;
};

} // namespace

TEST(FastCastTest, AnswersAsDynamicCastFromEveryPartAndEveryTime)
{
    Both both;
    Left left;
    Base* fromLeft = static_cast<Left*>(&both);
    Base* fromRight = static_cast<Right*>(&both);
    ASSERT_NE(fromLeft, fromRight);
    // Twice each, so that the remembered answer is used too, alternating so
    // that the two parts of one class do not share an answer.
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(iFastCast<Other>(fromLeft), dynamic_cast<Other*>(fromLeft));
        EXPECT_EQ(iFastCast<Other>(fromRight), dynamic_cast<Other*>(fromRight));
        EXPECT_EQ(iFastCast<Both>(fromRight), &both);
        EXPECT_EQ(iFastCast<Right>(fromLeft), static_cast<Right*>(&both));
        EXPECT_EQ(iFastCast<Other>(static_cast<Base*>(&left)), nullptr);
        EXPECT_EQ(iFastCast<Left>(static_cast<Base*>(&left)), &left);
    }
    EXPECT_EQ(iFastCast<Other>(static_cast<Base*>(nullptr)), nullptr);
}
