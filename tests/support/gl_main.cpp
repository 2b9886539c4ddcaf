#include <gtest/gtest.h>

#include <QApplication>

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <thread>

namespace {

// An X server under load may refuse a connection for a moment. Wait for it
// here, so that a test fails for what it tests and not for the display.
void waitForDisplay()
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
        bool const connected = xcb_connection_has_error(connection) == 0;
        xcb_disconnect(connection);
        if (connected)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

} // namespace

// Suites that draw need a widget application and a display: the test
// script runs them under its own Xvfb. Listing the tests needs neither, so
// that test discovery works without a display.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<QApplication> app;
    if (!testing::GTEST_FLAG(list_tests)) {
        waitForDisplay();
        app = std::make_unique<QApplication>(argc, argv);
    }
    return RUN_ALL_TESTS();
}
