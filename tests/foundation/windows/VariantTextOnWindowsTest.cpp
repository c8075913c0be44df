#include "foundation/windows/VariantText.h"

#include <gtest/gtest.h>
#include <windows.h>
// After the system's own header.
#include <oleauto.h>

#include <cstdint>
#include <string>

#include "foundation/StringFailure.h"
#include "support/windows/NoStringMemory.h"

namespace {

class VariantTextOnWindows : public testing::Test {
protected:
    VariantTextOnWindows() { InitVariant(m_value); }
    ~VariantTextOnWindows() override { ClearVariant(m_value); }

    // What StringFailure carries, 0 if none is thrown.
    std::uint32_t FailureOf(const char* text) {
        try {
            SetVariantText(m_value, text);
        } catch (const StringFailure& failure) {
            return failure.Value();
        }
        return 0;
    }
    std::wstring Text() const {
        return m_value.vt == VT_BSTR ? std::wstring(m_value.bstrVal, SysStringLen(m_value.bstrVal))
                                     : L"no string";
    }

    VARIANT m_value;
};

TEST_F(VariantTextOnWindows, AnInitialisedValueIsEmpty) { EXPECT_EQ(m_value.vt, VT_EMPTY); }

TEST_F(VariantTextOnWindows, ATextOfTheAnsiCodePageBecomesAString) {
    SetVariantText(m_value, "印章 seal");
    EXPECT_EQ(Text(), L"\x5370\x7AE0 seal");
}

TEST_F(VariantTextOnWindows, AnEmptyTextIsAStringOfLengthZero) {
    SetVariantText(m_value, "");
    EXPECT_EQ(Text(), L"");
    EXPECT_NE(m_value.bstrVal, nullptr);
}

TEST_F(VariantTextOnWindows, ANullTextIsANullStringAndNoFailure) {
    EXPECT_EQ(FailureOf(nullptr), 0u);
    EXPECT_EQ(m_value.vt, VT_BSTR);
    EXPECT_EQ(m_value.bstrVal, nullptr);
}

TEST_F(VariantTextOnWindows, TextsOnBothSidesOfTheSpaceOnTheStackComeWhole) {
    for (const int length : {511, 512, 100'000}) {
        SetVariantText(m_value, std::string(length, 'x').c_str());
        EXPECT_EQ(Text(), std::wstring(length, L'x'));
    }
}

TEST_F(VariantTextOnWindows, WhatTheValueHeldBeforeIsReleased) {
    SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, 4);
    ASSERT_NE(array, nullptr);
    m_value.vt = VT_ARRAY | VT_UI1;
    m_value.parray = array;
    SetVariantText(m_value, "text");
    EXPECT_EQ(Text(), L"text");
    SetVariantText(m_value, "another");
    EXPECT_EQ(Text(), L"another");
}

TEST_F(VariantTextOnWindows, WithoutMemoryTheValueIsAnErrorAndTheSameCodeIsThrown) {
    SetVariantText(m_value, "before");
    const NoStringMemory none;
    EXPECT_EQ(FailureOf("text"), 0x8007000E);
    EXPECT_EQ(m_value.vt, VT_ERROR);
    EXPECT_EQ(static_cast<std::uint32_t>(m_value.scode), 0x8007000E);
}

TEST_F(VariantTextOnWindows, WithoutMemoryANullTextIsNoFailure) {
    const NoStringMemory none;
    EXPECT_EQ(FailureOf(nullptr), 0u);
    EXPECT_EQ(m_value.vt, VT_BSTR);
}

TEST_F(VariantTextOnWindows, AClearedValueIsEmptyAndAValueOfNoKnownTypeIsRefused) {
    SetVariantText(m_value, "text");
    EXPECT_EQ(ClearVariant(m_value), S_OK);
    EXPECT_EQ(m_value.vt, VT_EMPTY);
    m_value.vt = 0x0FFF;
    EXPECT_EQ(ClearVariant(m_value), DISP_E_BADVARTYPE);
    m_value.vt = VT_EMPTY;
}

}  // namespace
