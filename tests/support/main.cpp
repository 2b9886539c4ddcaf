#include <gtest/gtest.h>

#include <QCoreApplication>

// Some library paths ask Qt for an application instance; tests run with a
// plain core application, as a console host would.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
