#include "support/windows/NoStringMemory.h"

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>

namespace {

bool g_noMemory = false;

using Allocation = BSTR(WINAPI*)(const OLECHAR*);

BSTR WINAPI Allocate(const OLECHAR* text) {
    static const auto allocate = reinterpret_cast<Allocation>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("oleaut32.dll"), "SysAllocString")));
    return g_noMemory ? nullptr : allocate(text);
}

}  // namespace

// The pointer through which the program calls the system: defined here, it isn't the loader's.
extern "C" {
Allocation __imp_SysAllocString = Allocate;
}

NoStringMemory::NoStringMemory() { g_noMemory = true; }
NoStringMemory::~NoStringMemory() { g_noMemory = false; }
