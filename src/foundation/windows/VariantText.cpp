#include "foundation/windows/VariantText.h"

#include <windows.h>
// After the system's own header.
#include <oleauto.h>

#include "foundation/StringFailure.h"
#include "platform/windows/AutomationText.h"

void InitVariant(VARIANT& variant) { VariantInit(&variant); }

long ClearVariant(VARIANT& variant) { return VariantClear(&variant); }

void SetVariantText(VARIANT& variant, const char* text) {
    ClearVariant(variant);
    variant.vt = VT_BSTR;
    variant.bstrVal = text != nullptr ? platform::MakeAutomationText(text) : nullptr;
    if (text == nullptr || variant.bstrVal != nullptr) return;
    variant.vt = VT_ERROR;
    variant.scode = E_OUTOFMEMORY;
    throw StringFailure(StringFailure::kOutOfMemory);
}
