// Work that is asked to end by the console.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
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

// Where the system begins a thread of this process for an event of the console; events other than
// Ctrl-C and Ctrl-Break can't be made otherwise.
void TellByConsole(DWORD event) {
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernelbase"), "CtrlRoutine")));
    if (routine == nullptr) std::exit(2);
    const HANDLE thread = CreateThread(nullptr, 0, routine,
                                       reinterpret_cast<void*>(std::uintptr_t{event}), 0, nullptr);
    if (thread == nullptr) std::exit(3);
    CloseHandle(thread);
}

TEST_F(AskedToEndOnWindows, TheConsolesEndLetsTheProgramEndInOrder) {
    ASSERT_TRUE(m_hasConsole);
    for (const DWORD event : {CTRL_CLOSE_EVENT, CTRL_LOGOFF_EVENT, CTRL_SHUTDOWN_EVENT}) {
        SCOPED_TRACE(event);
        EXPECT_EXIT(
            {
                std::promise<void> stopped;
                RunUntilAskedToEnd(
                    [&stopped, event] {
                        TellByConsole(event);
                        stopped.get_future().wait();
                    },
                    [&stopped] { stopped.set_value(); });
                std::exit(0);
            },
            testing::ExitedWithCode(0), "");
    }
}

}  // namespace
