#include "components/http/ExchangeSettings.h"

#include <gtest/gtest.h>

#include "foundation/Registry.h"
#include "support/TemporaryPrefix.h"

namespace {

using platform::RegistryRoot;

constexpr char kKey[] = "software\\Velmora\\exchange\\";

class ExchangeSettingsTest : public testing::Test {
protected:
    static CRegistry Key() {
        return CRegistry(platform::CreateRegistryKey(
            platform::RegistryRootKey(RegistryRoot::LocalMachine), kKey));
    }

    TemporaryPrefix m_prefix;
};

TEST_F(ExchangeSettingsTest, WithoutAKeyTheDefaultsHold) {
    CRegistry none;
    const ExchangeSettings settings = ReadExchangeSettings(none);
    EXPECT_EQ(settings.proxy + settings.caFile, "");
    EXPECT_EQ(settings.connectTimeoutMs, 10'000);
    EXPECT_EQ(settings.timeoutMs, 30'000);
}

TEST_F(ExchangeSettingsTest, EveryValueIsRead) {
    CRegistry key = Key();
    ASSERT_TRUE(platform::SetRegistryString(key.key, "Proxy", "http://代理:3128"));
    ASSERT_TRUE(platform::SetRegistryPath(key.key, "CaFile", m_prefix.Below("ca.pem")));
    ASSERT_TRUE(platform::SetRegistryNumber(key.key, "ConnectTimeout", 1));
    ASSERT_TRUE(platform::SetRegistryNumber(key.key, "Timeout", 601));
    const ExchangeSettings settings = ReadExchangeSettings(key);
    EXPECT_EQ(settings.proxy, reinterpret_cast<const char*>(u8"http://代理:3128"));
    EXPECT_EQ(settings.caFile, m_prefix.Below("ca.pem"));
    EXPECT_EQ(settings.connectTimeoutMs, 1'000);
    EXPECT_EQ(settings.timeoutMs, 600'000);
}

TEST_F(ExchangeSettingsTest, AnythingButANumberOfFourBytesIsNoTime) {
    m_prefix.SetBytes(RegistryRoot::LocalMachine, kKey, "Timeout", "12345678");
    CRegistry key = Key();
    EXPECT_EQ(ReadExchangeSettings(key).timeoutMs, 30'000);
}

}  // namespace
