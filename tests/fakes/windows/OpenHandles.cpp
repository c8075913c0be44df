#include "fakes/OpenHandles.h"

#include <windows.h>
// After the system's own header.
#include <winternl.h>

#include <cstdint>
#include <vector>

// GetProcessHandleCount tells nothing under Wine; the list of all processes does.
int CountOpenHandles() {
    std::vector<char> list(1 << 20);
    if (NtQuerySystemInformation(SystemProcessInformation, list.data(),
                                 static_cast<ULONG>(list.size()), nullptr) != 0) {
        return 0;
    }
    const char* entry = list.data();
    for (;;) {
        const auto& process = *reinterpret_cast<const SYSTEM_PROCESS_INFORMATION*>(entry);
        if (reinterpret_cast<std::uintptr_t>(process.UniqueProcessId) == GetCurrentProcessId()) {
            return static_cast<int>(process.HandleCount);
        }
        if (process.NextEntryOffset == 0) return 0;
        entry += process.NextEntryOffset;
    }
}
