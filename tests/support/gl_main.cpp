#include <gtest/gtest.h>

#include <QApplication>

#include <memory>

// Suites that draw need a widget application and a display: the test
// script runs them under its own Xvfb. Listing the tests needs neither, so
// that test discovery works without a display.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<QApplication> app;
    if (!testing::GTEST_FLAG(list_tests))
        app = std::make_unique<QApplication>(argc, argv);
    return RUN_ALL_TESTS();
}
