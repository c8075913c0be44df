// Work that is asked to end by the console.

#include <gtest/gtest.h>

#include <future>

#include "platform/windows/Win32.h"
#include "tools/sealserver/AskedToEnd.h"

namespace {

// A console of this process alone.
class AskedToEndOnWindows : public testing::Test {
protected:
    AskedToEndOnWindows() {
        FreeConsole();
        m_hasConsole = AllocConsole() != 0;
    }
    ~AskedToEndOnWindows() override { FreeConsole(); }

    bool m_hasConsole = false;
};

TEST_F(AskedToEndOnWindows, CtrlCStopsTheWorkInOrder) {
    ASSERT_TRUE(m_hasConsole);
    // A parent may have it ignored.
    SetConsoleCtrlHandler(nullptr, FALSE);
    std::promise<void> stopped;
    RunUntilAskedToEnd(
        [&stopped] {
            ASSERT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)) << GetLastError();
            stopped.get_future().wait();
        },
        [&stopped] { stopped.set_value(); });
}

}  // namespace
