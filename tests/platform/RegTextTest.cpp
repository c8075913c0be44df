#include "platform/RegText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

using platform::RegText;

namespace {

using namespace std::string_literals;

constexpr std::string_view kKey = "HKEY_LOCAL_MACHINE\\software\\Velmora\\fenmoor\\";

// What the file of one key with this line tells for the value "a".
std::optional<std::string> ValueOf(const std::string& literal) {
    const RegText text("[HKEY_LOCAL_MACHINE\\software\\Velmora\\fenmoor]\n\"a\"=" + literal);
    const auto value = text.Find(kKey, "a");
    return value ? std::optional(value->bytes) : std::nullopt;
}

std::optional<std::string> Find(const std::string& contents, std::string_view name) {
    const auto value = RegText(contents).Find(kKey, name);
    return value ? std::optional(value->bytes) : std::nullopt;
}

TEST(RegTextTest, ATextKnowsItsEscapes) {
    EXPECT_EQ(ValueOf("\"http://192.0.2.7/\""), "http://192.0.2.7/");
    EXPECT_EQ(ValueOf("\"C:\\\\a\\\\\""), "C:\\a\\");
    EXPECT_EQ(ValueOf("\"say \\\"hi\\\"\""), "say \"hi\"");
    EXPECT_EQ(ValueOf("\"\""), "");
}

TEST(RegTextTest, AnyOtherBackslashStandsForItself) {
    EXPECT_EQ(ValueOf("\"C:\\temp\\new\""), "C:\\temp\\new");
}

TEST(RegTextTest, ANumberIsFourBytesLowestFirst) {
    EXPECT_EQ(ValueOf("dword:0a0b0C0D"), "\x0D\x0C\x0B\x0A");
    EXPECT_EQ(ValueOf("DWORD:1"), "\x01\0\0\0"s);
    EXPECT_FALSE(RegText("[HKLM]\n@=dword:1").Find("HKLM", "")->isText);
}

TEST(RegTextTest, HexValuesAreRawBytesWhateverTheirType) {
    EXPECT_EQ(ValueOf("hex:01,ff,0"), "\x01\xFF\0"s);
    EXPECT_EQ(ValueOf("hex(1):61,00"), "a\0"s);
    EXPECT_EQ(ValueOf("hex(2):61,00"), "a\0"s);
    EXPECT_EQ(ValueOf("hex(7):61,00,00"), "a\0\0"s);
    EXPECT_EQ(ValueOf("hex:"), "");
}

TEST(RegTextTest, ABackslashContinuesHexBytesOnTheNextLine) {
    EXPECT_EQ(ValueOf("hex:01,\\\n  02,\\\r\n  03\n"), "\x01\x02\x03");
    EXPECT_EQ(ValueOf("hex:\\\n  02\n"), "\x02");
}

TEST(RegTextTest, ALineThatBeginsWithNoDigitContinuesNothing) {
    const std::string contents =
        "[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=hex:01,\\\n\"b\"=dword:2\n";
    EXPECT_EQ(Find(contents, "a"), std::nullopt);
    EXPECT_EQ(Find(contents, "b"), "\x02\0\0\0"s);
}

TEST(RegTextTest, ACommentMayFollowAValueOrAKey) {
    const std::string contents =
        "; head\n[HKLM\\software\\Velmora\\fenmoor] ; of the product\n\"a\"=\"x;y\" ; why\n"
        "\"b\"=dword:1;x\n\"c\"=hex:01 ;x\n";
    EXPECT_EQ(Find(contents, "a"), "x;y");
    EXPECT_EQ(Find(contents, "b"), "\x01\0\0\0"s);
    EXPECT_EQ(Find(contents, "c"), "\x01");
}

TEST(RegTextTest, MalformedLinesAreSkipped) {
    for (const char* literal :
         {"\"open", "\"x\" y", "dword:", "dword:123456789", "dword:12z", "hex:1z", "hex:,",
          "hex:01,", "hex:001", "hex(:01", "hex(z):01", "qword:1", "-", "", "text"}) {
        EXPECT_EQ(ValueOf(literal), std::nullopt) << literal;
    }
    EXPECT_EQ(Find("[HKLM\\software\\Velmora\\fenmoor]\n\"a\n\"a\" dword:1\na=dword:2\n@ x\n", "a"),
              std::nullopt);
}

TEST(RegTextTest, AMalformedLineDoesNotHideAGoodOne) {
    EXPECT_EQ(Find("[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=\"x\"\n\"a\"=dword:zz\n", "a"), "x");
}

TEST(RegTextTest, ValuesBelowAMalformedKeyBelongToNoKey) {
    EXPECT_EQ(Find("[HKLM\\software\\Velmora\\fenmoor]\n[HKLM\\other\n\"a\"=\"x\"\n", "a"),
              std::nullopt);
    EXPECT_EQ(Find("[HKLM\\software\\Velmora\\fenmoor]\n[-HKLM\\other]\n\"a\"=\"x\"\n", "a"),
              std::nullopt);
}

TEST(RegTextTest, ValuesInFrontOfAnyKeyBelongToNoKey) {
    EXPECT_EQ(Find("\"a\"=\"x\"\n", "a"), std::nullopt);
    EXPECT_EQ(RegText("@=\"x\"\n").Find("", ""), std::nullopt);
}

TEST(RegTextTest, KeysAndNamesCompareWithoutRegardToCase) {
    EXPECT_EQ(Find("[hkey_local_machine\\SOFTWARE\\velmora\\FENMOOR]\n\"A\"=\"x\"\n", "a"), "x");
}

TEST(RegTextTest, RootsHaveShortNamesToo) {
    const RegText text("[HKCR\\a]\n@=\"1\"\n[HKCU\\a]\n@=\"2\"\n[hklm\\a]\n@=\"3\"\n");
    EXPECT_EQ(text.Find("HKEY_CLASSES_ROOT\\a", "")->bytes, "1");
    EXPECT_EQ(text.Find("HKEY_CURRENT_USER\\a", "")->bytes, "2");
    EXPECT_EQ(text.Find("HKEY_LOCAL_MACHINE\\a", "")->bytes, "3");
}

TEST(RegTextTest, AClosingBackslashOfAKeyCountsForNothing) {
    EXPECT_EQ(Find("[HKLM\\software\\Velmora\\fenmoor\\]\n@=\"x\"\n", ""), "x");
}

TEST(RegTextTest, ByteOrderMarkLineEndsAndHeadersAreTolerated) {
    const std::string body = "\r\n[HKLM\\software\\Velmora\\fenmoor]\r\n\"a\"=\"x\"\r\n@=dword:1";
    for (const char* header : {"Windows Registry Editor Version 5.00", "REGEDIT4", "nonsense"}) {
        EXPECT_EQ(Find("\xEF\xBB\xBF" + (header + body), "a"), "x");
        EXPECT_EQ(Find(header + body, ""), "\x01\0\0\0"s);
    }
    EXPECT_EQ(Find("\xEF\xBB\xBF[HKLM\\software\\Velmora\\fenmoor]\n@=\"x\"", ""), "x");
}

TEST(RegTextTest, TheLaterOfTwoValuesHolds) {
    const std::string contents =
        "[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=\"1\"\n[HKLM\\b]\n\"a\"=\"2\"\n"
        "[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=\"3\"\n";
    EXPECT_EQ(Find(contents, "a"), "3");
    RegText text(contents);
    ASSERT_TRUE(text.Set(kKey, "a", RegText::TextLiteral("4")));
    EXPECT_EQ(text.Find(kKey, "a")->bytes, "4");
    ASSERT_TRUE(text.Remove(kKey, "a"));
    EXPECT_EQ(text.Find(kKey, "a"), std::nullopt);
    EXPECT_EQ(text.Find("HKLM\\b", "a")->bytes, "2");
}

TEST(RegTextTest, NamesMayHoldQuotesBackslashesAndEqualsSigns) {
    RegText text;
    ASSERT_TRUE(text.Set(kKey, "a\"=\\", RegText::NumberLiteral(1)));
    EXPECT_NE(text.Find(kKey, "a\"=\\"), std::nullopt);
}

TEST(RegTextTest, AKeyIsThereIfItOrOneBelowItHasALine) {
    const RegText text("[HKLM\\software\\Velmora\\fenmoor]\n");
    EXPECT_TRUE(text.HasKey("HKLM\\software\\velmora\\fenmoor"));
    EXPECT_TRUE(text.HasKey("HKLM\\software\\Velmora"));
    EXPECT_TRUE(text.HasKey("HKLM"));
    EXPECT_FALSE(text.HasKey("HKLM\\software\\Vel"));
    EXPECT_FALSE(text.HasKey("HKLM\\software\\Velmora\\fenmoor\\x"));
    EXPECT_FALSE(text.HasKey("HKCU\\software"));
    EXPECT_FALSE(RegText().HasKey("HKLM"));
}

TEST(RegTextTest, ANewFileBeginsWithTheHeader) {
    RegText text;
    ASSERT_TRUE(text.Set(kKey, "a", RegText::NumberLiteral(1)));
    EXPECT_EQ(text.Contents(),
              "Windows Registry Editor Version 5.00\n\n"
              "[HKEY_LOCAL_MACHINE\\software\\Velmora\\fenmoor]\n\"a\"=dword:00000001\n");
}

TEST(RegTextTest, AChangedValueKeepsItsLineAndItsComment) {
    RegText text(
        "; top\n[HKLM\\software\\Velmora\\fenmoor]\n  \"A\" = hex:01,\\\n  02 ; why\nunknown\n");
    ASSERT_TRUE(text.Set(kKey, "a", RegText::TextLiteral("x\\y")));
    EXPECT_EQ(text.Contents(),
              "; top\n[HKLM\\software\\Velmora\\fenmoor]\n  \"A\" = \"x\\\\y\" ; why\nunknown\n");
}

TEST(RegTextTest, ANewValueStandsBehindTheLastOfItsKey) {
    RegText text(
        "[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=dword:1\n\n; about b\n[HKLM\\b]\n@=\"x\"\n");
    ASSERT_TRUE(text.Set(kKey, "", RegText::RawLiteral("\x01\xAB")));
    EXPECT_EQ(text.Contents(),
              "[HKLM\\software\\Velmora\\fenmoor]\n\"a\"=dword:1\n@=hex:01,ab\n\n; about b\n"
              "[HKLM\\b]\n@=\"x\"\n");
}

TEST(RegTextTest, NewLinesEndAsTheFilesLinesDo) {
    RegText text("REGEDIT4\r\n[HKLM\\b]");
    ASSERT_TRUE(text.Set("HKLM\\b", "a", RegText::NumberLiteral(1)));
    EXPECT_EQ(text.Contents(), "REGEDIT4\r\n[HKLM\\b]\r\n\"a\"=dword:00000001\r\n");
}

TEST(RegTextTest, ALoneCarriageReturnAtTheEndIsNotDoubled) {
    RegText text("REGEDIT4\r\n[HKLM\\b]\r\n\"b\"=\"x\"\r");
    ASSERT_TRUE(text.Set("HKLM\\b", "a", RegText::NumberLiteral(1)));
    EXPECT_EQ(text.Find("HKLM\\b", "b")->bytes, "x");
    EXPECT_EQ(text.Find("HKLM\\b", "a")->bytes, "\x01\0\0\0"s);
}

TEST(RegTextTest, ARemovedValueTakesAllItsLinesAlong) {
    RegText text("[HKLM\\b]\n; stays\n\"a\"=hex:01,\\\n  02\n\"b\"=\"x\"\n");
    EXPECT_TRUE(text.Remove("HKLM\\b", "a"));
    EXPECT_EQ(text.Contents(), "[HKLM\\b]\n; stays\n\"b\"=\"x\"\n");
    EXPECT_FALSE(text.Remove("HKLM\\b", "a"));
}

TEST(RegTextTest, AKeyIsAddedOnce) {
    RegText text("[HKLM\\b\\c]");
    ASSERT_TRUE(text.AddKey("HKLM\\b\\"));
    ASSERT_TRUE(text.AddKey("hklm\\B"));
    EXPECT_EQ(text.Contents(), "[HKLM\\b\\c]\n\n[HKLM\\b]\n");
}

TEST(RegTextTest, WhatCannotStandInALineIsRefusedAndChangesNothing) {
    RegText text("[HKLM\\b]\n");
    EXPECT_FALSE(text.AddKey("HKLM\\a\nb"));
    EXPECT_FALSE(text.AddKey("HKLM\\a] ;"));
    EXPECT_FALSE(text.AddKey(""));
    EXPECT_FALSE(text.Set("HKLM\\b", "a\nb", RegText::NumberLiteral(1)));
    EXPECT_FALSE(text.Set("HKLM\\\r", "a", RegText::NumberLiteral(1)));
    EXPECT_EQ(text.Contents(), "[HKLM\\b]\n");
}

TEST(RegTextTest, ControlCharactersOtherThanTabsMakeNoLine) {
    EXPECT_TRUE(RegText::IsLine("a\tb"));
    EXPECT_TRUE(RegText::IsLine(""));
    for (const std::string& text : {"\n"s, "\r"s, "\0"s, "\x1F"s}) {
        EXPECT_FALSE(RegText::IsLine(text));
    }
}

TEST(RegTextTest, EveryLiteralComesBack) {
    EXPECT_EQ(ValueOf(RegText::TextLiteral("\"\\\"\\\\")), "\"\\\"\\\\");
    EXPECT_EQ(ValueOf(RegText::NumberLiteral(0xFFFFFFFF)), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(ValueOf(RegText::RawLiteral("a\0\n"s)), "a\0\n"s);
    EXPECT_EQ(ValueOf(RegText::RawLiteral("")), "");
}

TEST(RegTextTest, TheFirstLineThatIsSkippedIsTold) {
    const auto stray = [](const std::string& line) {
        return RegText("REGEDIT4\r\n\r\n[HKLM]\n\"a\"=hex:01,\\\n  02\n" + line + "\n[HKLM")
            .FirstStrayLine();
    };
    for (const char* const line : {"rubbish", "[a] b", "[]", "\"a=1", "\"a\"=rubbish", "\"a\"",
                                   "\"a\"=-", "@", "\"a\"=\"1", "dword:1", "  03"}) {
        EXPECT_EQ(stray(line), 6u) << line;
    }
    for (const char* const line :
         {"", " ", "; rubbish", "[a]b]", "@=dword:1 ; one", "\"b\" = \"1\"", "[HKCU] ; mine"}) {
        EXPECT_EQ(stray(line), 7u) << line;
    }
}

TEST(RegTextTest, WhereEveryLineIsReadNoneIsStray) {
    EXPECT_EQ(RegText().FirstStrayLine(), 0u);
    EXPECT_EQ(RegText("\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n\r\n[HKLM\\a]\r\n"
                      "\"a\"=hex(1):41,\\\r\n  00")
                  .FirstStrayLine(),
              0u);
    RegText written;
    ASSERT_TRUE(written.Set(kKey, "\"[a]\\", RegText::RawLiteral("ab")));
    EXPECT_EQ(written.FirstStrayLine(), 0u);
}

}  // namespace
