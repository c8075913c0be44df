#include "foundation/Registry.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TemporaryPrefix.h"

namespace {

using namespace std::string_literals;

class RegistryTest : public testing::Test {
protected:
    static CRegistry Settings() {
        return CRegistry(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                                   kSettingsKey,
                                                   platform::RegistryAccess::AllAccess));
    }

    TemporaryPrefix m_prefix;
};

TEST_F(RegistryTest, WithoutAStoreEverySettingIsAbsent) {
    EXPECT_EQ(ReadNumberSetting("bSealPosition"), 0U);
    EXPECT_EQ(ReadTextSetting("sWSURL"), "");
}

TEST_F(RegistryTest, SettingsAreReadAfreshAtEachUse) {
    m_prefix.SetNumber("bSealPosition", 1);
    EXPECT_EQ(ReadNumberSetting("bSealPosition"), 1U);
    m_prefix.SetNumber("bSealPosition", 3);
    EXPECT_EQ(ReadNumberSetting("bSealPosition"), 3U);
}

TEST_F(RegistryTest, OneOpeningOfTheSettingsGivesAllThatAReaderNeeds) {
    m_prefix.SetNumber("bSealPosition", 1);
    m_prefix.SetNumber("ReqEsealStatus", 2);
    CRegistry settings = OpenSettings();
    ASSERT_NE(settings.key, nullptr);
    EXPECT_EQ(settings.GetNumber("bSealPosition"), 1U);
    EXPECT_EQ(settings.GetNumber("bSignWithTimeStamp"), 0U);
    EXPECT_EQ(settings.GetNumber("ReqEsealStatus"), 2U);
}

TEST_F(RegistryTest, SettingsThatCannotBeOpenedHaveNoValues) {
    CRegistry settings = OpenSettings();
    EXPECT_EQ(settings.key, nullptr);
    EXPECT_EQ(settings.GetNumber("bSealPosition"), 0U);
}

TEST_F(RegistryTest, ATextOf199BytesIsReadWholeAndOneOf200CountsAsAbsent) {
    m_prefix.SetText("sWSURL", std::string(199, 'a'));
    EXPECT_EQ(ReadTextSetting("sWSURL"), std::string(199, 'a'));
    m_prefix.SetText("sWSURL", std::string(200, 'a'));
    EXPECT_EQ(ReadTextSetting("sWSURL"), "");
}

TEST_F(RegistryTest, TheLimitCountsBytesOfGbkNotOfTheFile) {
    std::string text;
    for (int i = 0; i < 99; ++i) text += "章";
    m_prefix.SetText("sWSURL", text);  // 198 bytes of GBK, 297 of UTF-8
    EXPECT_EQ(ReadTextSetting("sWSURL"), text);
    m_prefix.SetText("sWSURL", text + "章");
    EXPECT_EQ(ReadTextSetting("sWSURL"), "");
}

TEST_F(RegistryTest, ATextEndsAtItsFirstZeroByteWhateverItsType) {
    m_prefix.SetBytes("sWSURL", "ab\0c"s);
    m_prefix.SetNumber("appid", 0x00646362);
    EXPECT_EQ(ReadTextSetting("sWSURL"), "ab");
    EXPECT_EQ(ReadTextSetting("appid"), "bcd");
}

TEST_F(RegistryTest, ATextWithoutATerminatorIsReadWhole) {
    m_prefix.SetBytes("sWSURL", "ab");
    EXPECT_EQ(ReadTextSetting("sWSURL"), "ab");
}

TEST_F(RegistryTest, ATextOfAtMostFourBytesUnderANumbersNameIsTakenAsRawBytes) {
    m_prefix.SetText("bSealPosition", "abc");
    EXPECT_EQ(ReadNumberSetting("bSealPosition"), 0x00636261U);
}

TEST_F(RegistryTest, ALongerTextUnderANumbersNameCountsAsAbsent) {
    m_prefix.SetText("bSealPosition", "abcd");
    EXPECT_EQ(ReadNumberSetting("bSealPosition"), 0U);
    EXPECT_EQ(Settings().GetNumber("bSealPosition", 7), 7U);
}

TEST_F(RegistryTest, AShorterValueFillsOnlyTheFirstBytesOfANumber) {
    m_prefix.SetBytes("bSealPosition", "\x01");
    EXPECT_EQ(Settings().GetNumber("bSealPosition", 0x11223344), 0x11223301U);
}

TEST_F(RegistryTest, AnAbsentNumberIsWhatTheCallerSays) {
    m_prefix.SetNumber("another", 1);
    EXPECT_EQ(Settings().GetNumber("none", 5), 5U);
}

TEST_F(RegistryTest, AFailedReadingLeavesTheTextAlone) {
    m_prefix.SetNumber("another", 1);
    std::string text = "before";
    EXPECT_EQ(Settings().GetString("none", text), 0);
    EXPECT_EQ(text, "before");
}

TEST_F(RegistryTest, AClosedClassFailsQuietly) {
    CRegistry none;
    std::string text = "before";
    EXPECT_EQ(none.GetString("x", text), 0);
    EXPECT_EQ(none.SetString("x", "y"), 0);
    EXPECT_EQ(none.GetNumber("x", 9), 9U);
    EXPECT_EQ(none.CreateKey(), 0);
    EXPECT_EQ(none.key, nullptr);
}

TEST_F(RegistryTest, CreateKeyMakesTheKeyOfTheListsTimesAndOpensItTheSecondTime) {
    for (int i = 0; i < 2; ++i) {
        CRegistry times(platform::RegistryRootKey(platform::RegistryRoot::LocalMachine));
        ASSERT_EQ(times.CreateKey(), 1);
        const std::string time = "2026/11/14 23:59:0" + std::to_string(i);
        EXPECT_EQ(times.SetString("ca1.crl", time), 1);
        std::string read;
        EXPECT_EQ(times.GetString("ca1.crl", read), 1);
        EXPECT_EQ(read, time);
    }
    CRegistry opened(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine, kCrlTimesKey,
                                               platform::RegistryAccess::AllAccess));
    std::string read;
    EXPECT_EQ(opened.GetString("CA1.CRL", read), 1);
    EXPECT_EQ(read, "2026/11/14 23:59:01");
}

}  // namespace
