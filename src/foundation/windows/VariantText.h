// VariantText.h - texts as automation values, for Windows' own code.
#pragma once

// The system's VARIANT.
struct tagVARIANT;

// VariantInit and VariantClear as they stand; the latter with its HRESULT.
void InitVariant(tagVARIANT& variant);
long ClearVariant(tagVARIANT& variant);

// Clears `variant`, which must have been initialised, and makes it a string (VT_BSTR) of `text`,
// which is narrow text of the thread's ANSI code page up to its zero byte; a null text is a null
// string. The caller clears it. Where no string can be made the variant is an error value
// (VT_ERROR) with 0x8007000E, and StringFailure with the same value is thrown.
void SetVariantText(tagVARIANT& variant, const char* text);
