#include <gtest/gtest.h>

#include <QApplication>

// Suites that draw need a widget application and a display: the test
// script runs them under its own Xvfb.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
