#include "components/certservice/pinentry/PinentryTalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/ServiceCodes.h"
#include "platform/CodePage.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FakeChannel : public PinentryChannel {
public:
    PinentryAnswer Command(const std::string& line) override {
        lines.push_back(line);
        return line.starts_with(breaksAt) && !breaksAt.empty() ? PinentryAnswer::kBroken
                                                               : toCommands;
    }
    PinentryAnswer CommandToUser(const std::string& line, std::string& data) override {
        lines.push_back(line);
        data += pin;
        return toUser;
    }

    std::vector<std::string> lines;
    std::string breaksAt;
    std::string pin = "123456";
    PinentryAnswer toCommands = PinentryAnswer::kOk;
    PinentryAnswer toUser = PinentryAnswer::kOk;
};

class PinentryTalkTest : public testing::Test {
protected:
    int Ask(const PinQuestion& question) {
        return AskForPin(m_channel, {"ttyname=/dev/pts/1", "lc-ctype=C"}, question, m_pin);
    }
    std::string Line(const std::string& command) {
        for (const std::string& line : m_channel.lines)
            if (line.starts_with(command + " ")) return platform::AnsiFromUtf8(line);
        return {};
    }

    FakeChannel m_channel;
    std::string m_pin = "untouched";
};

TEST_F(PinentryTalkTest, OptionsAndTextsComeBeforeTheQuestion) {
    ASSERT_EQ(Ask({"合同章", -1, ""}), kServiceOk);
    EXPECT_EQ(m_pin, "123456");
    EXPECT_THAT(m_channel.lines,
                ElementsAre("OPTION ttyname=/dev/pts/1", "OPTION lc-ctype=C", "SETTIMEOUT 300",
                            StartsWith("SETTITLE "), StartsWith("SETDESC "),
                            StartsWith("SETPROMPT "), "GETPIN"));
    EXPECT_THAT(Line("SETDESC"), HasSubstr("合同章"));
    EXPECT_THAT(Line("SETDESC"), Not(HasSubstr("%0A")));
}

TEST_F(PinentryTalkTest, ErrorAndTriesLeftAreTold) {
    ASSERT_EQ(Ask({"key", 2, "PIN 码错误\n100%"}), kServiceOk);
    EXPECT_EQ(Line("SETERROR"), "SETERROR PIN 码错误%0A100%25");
    EXPECT_THAT(Line("SETDESC"), HasSubstr(" 2 "));
}

TEST_F(PinentryTalkTest, ACommandThatTheProgramDoesNotKnowIsNoHindrance) {
    m_channel.toCommands = PinentryAnswer::kRefused;
    EXPECT_EQ(Ask({}), kServiceOk);
    EXPECT_EQ(m_pin, "123456");
}

TEST_F(PinentryTalkTest, AProgramThatBreaksIsAskedNothingMore) {
    m_channel.breaksAt = "SETDESC";
    EXPECT_EQ(Ask({}), kServicePinUnavailable);
    EXPECT_THAT(m_channel.lines, Not(Contains("GETPIN")));
    EXPECT_EQ(m_pin, "untouched");
}

TEST_F(PinentryTalkTest, OnlyTheUserCancels) {
    m_channel.toUser = PinentryAnswer::kCancelled;
    EXPECT_EQ(Ask({}), kServicePinCancelled);
    m_channel.toUser = PinentryAnswer::kRefused;
    EXPECT_EQ(Ask({}), kServicePinUnavailable);
    m_channel.toUser = PinentryAnswer::kBroken;
    EXPECT_EQ(Ask({}), kServicePinUnavailable);
    EXPECT_EQ(m_pin, "untouched");
}

TEST_F(PinentryTalkTest, APinTooLongForAnyKeyIsNone) {
    m_channel.pin = std::string(2000, '1');
    EXPECT_EQ(Ask({}), kServicePinUnavailable);
    EXPECT_EQ(m_pin, "untouched");
}

TEST(PinentryTextTest, PercentAndControlCharactersAreEscaped) {
    EXPECT_EQ(PinentryText("a%b\r\n\x7F"), "a%25b%0D%0A%7F");
    EXPECT_EQ(PinentryText("印"), "\xE5\x8D\xB0");
    EXPECT_EQ(PinentryText(""), "");
}

TEST(PinentryTextTest, ALongTextIsCutBetweenTwoCharacters) {
    EXPECT_EQ(PinentryText(std::string(2000, 'x')).size(), 900u);
    EXPECT_EQ(PinentryText(std::string(899, 'x') + "%").size(), 899u);
    EXPECT_EQ(PinentryText(std::string(898, 'x') + "印").size(), 898u);
    EXPECT_EQ(PinentryText(std::string(897, 'x') + "印").size(), 900u);
}

}  // namespace
