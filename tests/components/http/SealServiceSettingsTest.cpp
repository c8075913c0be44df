#include "components/http/SealServiceSettings.h"

#include <gtest/gtest.h>

#include "foundation/Registry.h"
#include "support/TemporaryPrefix.h"

namespace {

using platform::RegistryRoot;

class SealServiceSettingsTest : public testing::Test {
protected:
    static void SetNumber(const char* name, unsigned int number) {
        const CRegistry key(platform::CreateRegistryKey(
            platform::RegistryRootKey(RegistryRoot::LocalMachine), kSealServiceSettingsKey));
        ASSERT_TRUE(platform::SetRegistryNumber(key.key, name, number));
    }

    TemporaryPrefix m_prefix;
};

TEST_F(SealServiceSettingsTest, WithoutValuesTheDefaultsHold) {
    const SealServiceSettings settings = ReadSealServiceSettings();
    EXPECT_EQ(settings.proxy + settings.caFile, "");
    EXPECT_EQ(settings.connectTimeoutMs, 10'000);
    EXPECT_EQ(settings.timeoutMs, 30'000);
    EXPECT_EQ(settings.largestAnswer, 67'108'864u);
}

TEST_F(SealServiceSettingsTest, TheValuesStandUnderAKeyOfTheTransport) {
    SetNumber("Timeout", 7);
    SetNumber("LargestAnswer", 3);
    const SealServiceSettings settings = ReadSealServiceSettings();
    EXPECT_EQ(settings.timeoutMs, 7'000);
    EXPECT_EQ(settings.largestAnswer, 3'145'728u);
}

TEST_F(SealServiceSettingsTest, NothingIsWithoutALimit) {
    SetNumber("LargestAnswer", 0);
    EXPECT_EQ(ReadSealServiceSettings().largestAnswer, 67'108'864u);
    SetNumber("LargestAnswer", 0xFFFFFFFF);
    EXPECT_EQ(ReadSealServiceSettings().largestAnswer, 1'073'741'824u);
}

}  // namespace
