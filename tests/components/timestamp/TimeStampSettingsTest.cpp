#include "components/timestamp/TimeStampSettings.h"

#include <gmock/gmock.h>

#include "foundation/Registry.h"
#include "support/TemporaryPrefix.h"

namespace {

using platform::RegistryRoot;
using testing::ElementsAre;
using testing::IsEmpty;

class TimeStampSettingsTest : public testing::Test {
protected:
    static CRegistry Key() {
        return CRegistry(platform::CreateRegistryKey(
            platform::RegistryRootKey(RegistryRoot::LocalMachine), kTimeStampSettingsKey));
    }
    static void SetText(const char* name, const std::string& text) {
        ASSERT_TRUE(platform::SetRegistryString(Key().key, name, text));
    }
    static void SetNumber(const char* name, unsigned int number) {
        ASSERT_TRUE(platform::SetRegistryNumber(Key().key, name, number));
    }

    TemporaryPrefix m_prefix;
};

TEST_F(TimeStampSettingsTest, WithoutValuesTheDefaultsHold) {
    const TimeStampSettings settings = ReadTimeStampSettings();
    EXPECT_THAT(settings.urls, IsEmpty());
    EXPECT_EQ(settings.user + settings.password + settings.proxy + settings.caFile, "");
    EXPECT_EQ(settings.connectTimeoutMs, 10'000);
    EXPECT_EQ(settings.timeoutMs, 30'000);
}

TEST_F(TimeStampSettingsTest, EveryValueIsRead) {
    SetText("Url", "http://a/");
    SetText("User", "stamper");
    SetText("Password", "密码");
    SetText("Proxy", "http://proxy:3128");
    ASSERT_TRUE(platform::SetRegistryPath(Key().key, "CaFile", m_prefix.Below("ca.pem")));
    SetNumber("ConnectTimeout", 3);
    SetNumber("Timeout", 7);
    const TimeStampSettings settings = ReadTimeStampSettings();
    EXPECT_THAT(settings.urls, ElementsAre("http://a/"));
    EXPECT_EQ(settings.user, "stamper");
    EXPECT_EQ(settings.password, reinterpret_cast<const char*>(u8"密码"));
    EXPECT_EQ(settings.proxy, "http://proxy:3128");
    EXPECT_EQ(settings.caFile, m_prefix.Below("ca.pem"));
    EXPECT_EQ(settings.connectTimeoutMs, 3'000);
    EXPECT_EQ(settings.timeoutMs, 7'000);
}

TEST_F(TimeStampSettingsTest, AddressesStandOneBehindTheOtherAtAnyLength) {
    const std::string longOne = "http://b/" + std::string(500, 'b');
    SetText("Url", "http://a/; " + longOne + ";;\thttps://c/");
    EXPECT_THAT(ReadTimeStampSettings().urls, ElementsAre("http://a/", longOne, "https://c/"));
}

TEST_F(TimeStampSettingsTest, AMultiStringHoldsOneAddressToALine) {
    m_prefix.SetBytes(RegistryRoot::LocalMachine, kTimeStampSettingsKey, "Url",
                      std::string("http://a/\0http://b/\0\0", 21));
    EXPECT_THAT(ReadTimeStampSettings().urls, ElementsAre("http://a/", "http://b/"));
}

TEST_F(TimeStampSettingsTest, NoTimeIsWithoutALimit) {
    SetNumber("ConnectTimeout", 0);
    SetNumber("Timeout", 0xFFFFFFFF);
    const TimeStampSettings settings = ReadTimeStampSettings();
    EXPECT_EQ(settings.connectTimeoutMs, 10'000);
    EXPECT_EQ(settings.timeoutMs, 600'000);
}

}  // namespace
