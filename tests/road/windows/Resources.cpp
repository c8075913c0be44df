#include "road/Resources.h"

#include <windows.h>
// After the system's own header.
#include <psapi.h>

namespace {

// The C library's blocks are in the process's heap or in one of their own.
long CountHeap() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    SIZE_T bytes = 0;
    for (DWORD i = 0; i < count && i < 64; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
        }
    }
    return static_cast<long>(bytes);
}

int CountModules() {
    HMODULE modules[256];
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &size);
    return static_cast<int>(size / sizeof(HMODULE));
}

int CountHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

}  // namespace

Resources CurrentResources() { return {CountHeap(), CountModules(), CountHandles()}; }
