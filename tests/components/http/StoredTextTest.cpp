#include "components/http/StoredText.h"

#include <gtest/gtest.h>

#include "foundation/Registry.h"
#include "support/TemporaryPrefix.h"

namespace {

using platform::RegistryRoot;
using std::string_literals::operator""s;

constexpr char kKey[] = "software\\Velmora\\exchange\\";

class StoredTextTest : public testing::Test {
protected:
    TemporaryPrefix m_prefix;
    const CRegistry m_key{
        platform::CreateRegistryKey(platform::RegistryRootKey(RegistryRoot::LocalMachine), kKey)};
};

TEST_F(StoredTextTest, BytesComeAsTheyAre) {
    m_prefix.SetBytes(RegistryRoot::LocalMachine, kKey, "Long", "1234\0005678"s);
    EXPECT_EQ(StoredBytes(m_key.key, "Long"), "1234\0005678"s);
}

TEST_F(StoredTextTest, ATextMayBeLongAndComesInUtf8) {
    const std::string many(1'000, 'x');
    ASSERT_TRUE(platform::SetRegistryString(m_key.key, "Text", "印章" + many));
    EXPECT_EQ(StoredText(m_key.key, "Text"), reinterpret_cast<const char*>(u8"印章") + many);
    m_prefix.SetBytes(RegistryRoot::LocalMachine, kKey, "Cut", "abc\0def"s);
    EXPECT_EQ(StoredText(m_key.key, "Cut"), "abc");
}

TEST_F(StoredTextTest, APathComesInUtf8) {
    ASSERT_TRUE(platform::SetRegistryPath(m_key.key, "File", m_prefix.Below("ca.pem")));
    EXPECT_EQ(StoredPath(m_key.key, "File"), m_prefix.Below("ca.pem"));
}

TEST_F(StoredTextTest, WhatIsAbsentIsEmpty) {
    for (const platform::RegistryKey key : {m_key.key, platform::RegistryKey{}}) {
        EXPECT_EQ(StoredBytes(key, "None"), "");
        EXPECT_EQ(StoredText(key, "None"), "");
        EXPECT_EQ(StoredPath(key, "None"), "");
    }
}

}  // namespace
