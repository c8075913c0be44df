#include "foundation/windows/VariantText.h"

#include <windows.h>
// After the system's own header.
#include <oleauto.h>

#include <cstring>
#include <iterator>
#include <memory>
#include <new>

#include "foundation/StringFailure.h"

namespace {

constexpr std::size_t kBytesOnStack = 1024;

// Null if the text can't be converted or there is no memory.
BSTR StringOf(const char* text) {
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

}  // namespace

void InitVariant(VARIANT& variant) { VariantInit(&variant); }

long ClearVariant(VARIANT& variant) { return VariantClear(&variant); }

void SetVariantText(VARIANT& variant, const char* text) {
    ClearVariant(variant);
    variant.vt = VT_BSTR;
    variant.bstrVal = text != nullptr ? StringOf(text) : nullptr;
    if (text == nullptr || variant.bstrVal != nullptr) return;
    variant.vt = VT_ERROR;
    variant.scode = E_OUTOFMEMORY;
    throw StringFailure(StringFailure::kOutOfMemory);
}
