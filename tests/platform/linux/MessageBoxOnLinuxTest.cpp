#include <gtest/gtest.h>

#include "platform/MessageBox.h"

namespace {

TEST(MessageBoxOnLinux, TheBoxIsOneLineOfUtf8OnStandardError) {
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("印\r\n章", "电子签章", platform::kMessageBoxWarning);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "\xE7\x94\xB5\xE5\xAD\x90\xE7\xAD\xBE\xE7\xAB\xA0: \xE5\x8D\xB0  \xE7\xAB\xA0\n");
}

}  // namespace
