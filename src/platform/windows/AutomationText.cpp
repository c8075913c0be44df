#include "platform/windows/AutomationText.h"

#include <cstring>
#include <iterator>
#include <memory>
#include <new>

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>

namespace platform {

namespace {

constexpr std::size_t kBytesOnStack = 1024;

}  // namespace

wchar_t* MakeAutomationText(const char* text) {
    const std::size_t count = std::strlen(text) + 1;
    wchar_t onStack[kBytesOnStack / sizeof(wchar_t)];
    std::unique_ptr<wchar_t[]> onHeap;
    wchar_t* wide = onStack;
    if (count > std::size(onStack)) {
        onHeap.reset(new (std::nothrow) wchar_t[count]);
        wide = onHeap.get();
        if (wide == nullptr) return nullptr;
    }
    const int capacity = static_cast<int>(count);
    if (MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, wide, capacity) <= 0) return nullptr;
    return SysAllocString(wide);
}

}  // namespace platform
