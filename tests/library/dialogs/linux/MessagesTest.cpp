#include "platform/linux/dialogprogram/Messages.h"

#include <gtest/gtest.h>

#include "dialogs/Resource.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"
#include "platform/linux/dialogprogram/Templates.h"
#include "platform/linux/dialogprogram/Utf8.h"

namespace {

using platform::LineOf;
using platform::ParseCommand;
using platform::ParseReport;
namespace command = platform::command;
namespace report = platform::report;

std::string WithoutEnd(std::string line) {
    line.pop_back();
    return line;
}

TEST(MessagesOnLinux, EveryCommandHasItsLine) {
    const platform::Picture dots{2, 1, {0x010203, 0xFFFFFF}};
    const std::vector<std::pair<platform::DialogCommand, std::string>> lines = {
        {platform::Greeting{}, "tesmark-dialog\t1\n"},
        {command::Dialog{104}, "dialog\t104\n"},
        {command::Row{1001, "a\tb"}, "row\t1001\ta\\tb\n"},
        {command::Select{1001, -1}, "select\t1001\t-1\n"},
        {command::Text{1003, ""}, "text\t1003\t\n"},
        {command::Disabled{1003}, "disabled\t1003\n"},
        {command::Node{1004, 0, "x"}, "node\t1004\t0\tx\n"},
        {command::Expand{1004, 2}, "expand\t1004\t2\n"},
        {command::Fill{1005, 0x00F00A}, "fill\t1005\t00f00a\n"},
        {command::Draw{1005, {-1, 2, 3, 4}, dots}, "picture\t1005\t-1\t2\t3\t4\t2\t1\tAQID////\n"},
        {command::Move{-5, 6}, "move\t-5\t6\n"},
        {command::Show{}, "show\n"},
        {command::Done{}, "done\n"},
        {command::End{}, "end\n"},
        {command::Message{48, "c", "t\nu"}, "message\t48\tc\tt\\nu\n"}};
    for (const auto& [message, line] : lines) {
        EXPECT_EQ(LineOf(message), line);
        const auto parsed = ParseCommand(WithoutEnd(line));
        ASSERT_TRUE(parsed) << line;
        EXPECT_EQ(parsed->index(), message.index());
        EXPECT_EQ(LineOf(*parsed), line);
    }
}

TEST(MessagesOnLinux, EveryReportHasItsLine) {
    const std::vector<std::pair<platform::DialogReport, std::string>> lines = {
        {platform::Greeting{2}, "tesmark-dialog\t2\n"},
        {report::Ready{{1, 2, 3, 4}}, "ready\t1\t2\t3\t4\n"},
        {report::Unknown{}, "unknown\n"},
        {report::Area{{{0, 0, 8, 9}}}, "area\t0\t0\t8\t9\n"},
        {report::Area{}, "area\n"},
        {report::Surface{1005, 7, 8}, "surface\t1005\t7\t8\n"},
        {report::Built{}, "built\n"},
        {report::Shown{}, "shown\n"},
        {report::Row{1001, 2}, "row\t1001\t2\n"},
        {report::Text{1003, "\\"}, "text\t1003\t\\\\\n"},
        {report::Node{1004, 0}, "node\t1004\t0\n"},
        {report::Button{1}, "button\t1\n"},
        {report::Selected{1004}, "selected\t1004\n"},
        {report::Close{}, "close\n"},
        {report::Closed{}, "closed\n"}};
    for (const auto& [message, line] : lines) {
        EXPECT_EQ(LineOf(message), line);
        const auto parsed = ParseReport(WithoutEnd(line));
        ASSERT_TRUE(parsed) << line;
        EXPECT_EQ(parsed->index(), message.index());
        EXPECT_EQ(LineOf(*parsed), line);
    }
}

TEST(MessagesOnLinux, OneSidesWordsAreNotTheOthers) {
    EXPECT_FALSE(ParseCommand("button\t1"));
    EXPECT_FALSE(ParseReport("done"));
    EXPECT_FALSE(ParseReport("row\t1001\ttext"));
    EXPECT_FALSE(ParseCommand(""));
    EXPECT_FALSE(ParseCommand("SHOW"));
    EXPECT_FALSE(ParseCommand("show\t"));
    EXPECT_FALSE(ParseReport("area\t1"));
    EXPECT_FALSE(ParseReport("area\t"));
}

TEST(MessagesOnLinux, APictureHasAsManyPixelsAsItsSidesTell) {
    const auto draws = [](const std::string& picture) {
        return ParseCommand("picture\t1005\t0\t0\t1\t1\t" + picture).has_value();
    };
    EXPECT_TRUE(draws("1\t1\tAQID"));
    for (const char* const picture :
         {"1\t1\t", "1\t1\tAQI=", "1\t1\tAQIDAQID", "2\t1\tAQID", "0\t1\t", "-1\t-1\tAQID",
          "1\t1\tAQ D", "1\t1\tA\\nD", "65536\t65536\tAQID", "1048577\t1\tAQID"}) {
        EXPECT_FALSE(draws(picture)) << picture;
    }
}

TEST(MessagesOnLinux, TheLargestPictureHasRoomInALine) {
    const platform::Picture largest{1024, 1024, std::vector<platform::Colour>(1024 * 1024)};
    const std::string line = LineOf(command::Draw{1005, {0, 0, 1, 1}, largest});
    EXPECT_LT(line.size(), platform::kLongestLineToProgram);
    EXPECT_TRUE(ParseCommand(WithoutEnd(line)));
}

TEST(MessagesOnLinux, AColourIsSixSmallHexadecimalDigits) {
    EXPECT_TRUE(ParseCommand("fill\t1005\tf0f0f0"));
    for (const char* const colour : {"F0F0F0", "f0f0f", "f0f0f00", "0xf0f0", ""}) {
        EXPECT_FALSE(ParseCommand(std::string("fill\t1005\t") + colour)) << colour;
    }
}

// The numbers that the logic asks for; the resource script of Windows takes them from there too.
TEST(TemplatesOnLinux, TheTemplatesHaveTheControlsOfTheLogic) {
    using platform::ControlKind;
    const auto kindOf = [](int dialog, int control) {
        const auto* const found = platform::FindTemplate(dialog);
        const auto* const place = found ? platform::FindControl(*found, control) : nullptr;
        return place ? std::optional(place->kind) : std::nullopt;
    };
    for (const int dialog : {TESMARK_DIALOG_CERT, TESMARK_DIALOG_ONLINE_SEAL,
                             TESMARK_DIALOG_ONLINE_URL, TESMARK_DIALOG_SEAL_TREE}) {
        EXPECT_EQ(kindOf(dialog, TESMARK_BUTTON_OK), ControlKind::DefaultButton);
        EXPECT_EQ(kindOf(dialog, TESMARK_BUTTON_CANCEL), ControlKind::Button);
    }
    EXPECT_EQ(platform::kCancelButton, TESMARK_BUTTON_CANCEL);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_CERT, TESMARK_CERT_LIST), ControlKind::List);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_ONLINE_SEAL, TESMARK_ONLINE_SEAL_LIST), ControlKind::List);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_ONLINE_URL, TESMARK_URL_FIELD), ControlKind::Edit);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_ONLINE_URL, TESMARK_URL_TEST), ControlKind::Button);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_SEAL_TREE, TESMARK_SEAL_TREE), ControlKind::Tree);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_SEAL_TREE, TESMARK_SEAL_PREVIEW), ControlKind::Surface);
    EXPECT_EQ(platform::FindTemplate(100), nullptr);
    EXPECT_EQ(platform::FindTemplate(105), nullptr);
    EXPECT_EQ(kindOf(TESMARK_DIALOG_ONLINE_URL, platform::kNoControl), std::nullopt);
}

TEST(TemplatesOnLinux, OnlyTheTreeIsPlacedByTheLogic) {
    for (int id = 101; id <= 104; ++id) {
        ASSERT_NE(platform::FindTemplate(id), nullptr);
        EXPECT_EQ(platform::FindTemplate(id)->centred, id != 104);
    }
}

}  // namespace
