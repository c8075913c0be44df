// SealControlFixture.h - the built control, made of its class and called as the library does.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "components/personalseal/DrawnPicture.h"
#include "components/personalseal/SettingsText.h"
#include "platform/Automation.h"
#include "support/TemporaryPrefix.h"

class SealControlFixture : public testing::Test {
protected:
    SealControlFixture();
    ~SealControlFixture() override;

    // The picture's file. A failure of the test, and an empty text, where there is none.
    std::string Png(const char* method, std::initializer_list<platform::AutomationArgument> call);
    // The status of a call that has to fail.
    int Refusal(const char* method, std::initializer_list<platform::AutomationArgument> call);

    DrawnPicture Styled(const SettingsText& settings, const std::string& text);
    int StyledRefusal(const SettingsText& settings, const std::string& text);
    DrawnPicture Name(const std::string& text, int width = 300, int height = 100);
    DrawnPicture Content(int kind, const std::string& text2, const std::string& text1);

    TemporaryPrefix m_prefix;
    platform::AutomationObject m_control = nullptr;
};
