// The parts below the commands that no component stands behind.

#include <gtest/gtest.h>

#include <climits>

#include "Failure.h"
#include "Library.h"
#include "Output.h"
#include "ResultText.h"
#include "SealFile.h"
#include "Settings.h"
#include "TerminalText.h"
#include "components/certservice/ServiceCodes.h"
#include "components/seallibrary/EsSeal.h"
#include "components/seallibrary/SealCodes.h"
#include "include/TesmarkOpt.h"
#include "platform/closed/PersonalSealControl.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

std::string Utf8(const char8_t* text) { return reinterpret_cast<const char*>(text); }

TEST(TerminalTextTest, AnArgumentBecomesGbk) {
    EXPECT_EQ(GbkFromArgument(Utf8(u8"印章"), "The name"), "印章");
    EXPECT_EQ(Utf8FromGbk("印章"), Utf8(u8"印章"));
}

TEST(TerminalTextTest, WhatGbkLacksAndWhatIsNoUtf8IsRefused) {
    EXPECT_THROW(GbkFromArgument(Utf8(u8"\U0001F600"), "The name"), Failure);
    EXPECT_THROW(GbkFromArgument("\xFF", "The name"), Failure);
    EXPECT_THROW(GbkFromArgument(std::string("a\0b", 3), "The name"), Failure);
    EXPECT_THROW(GbkFromArgument("\xC0\xAF", "The name"), Failure) << "an overlong form";
    EXPECT_THROW(GbkFromArgument("\xED\xA0\x80", "The name"), Failure) << "a surrogate";
    EXPECT_THROW(GbkFromArgument("\xE5\x8D", "The name"), Failure) << "cut off";
}

TEST(TerminalTextTest, AChineseCharacterTakesTwoColumns) {
    EXPECT_EQ(DisplayWidth("abc"), 3u);
    EXPECT_EQ(DisplayWidth(Utf8(u8"印章a")), 5u);
    EXPECT_EQ(DisplayWidth(Utf8(u8"e\u0301")), 1u);
    EXPECT_EQ(Padded(Utf8(u8"印"), 4), Utf8(u8"印  "));
}

TEST(TerminalTextTest, ControlCharactersNeverReachTheTerminal) {
    EXPECT_EQ(Printable("a\033[2Jb\nc"), "a?[2Jb?c");
}

TEST(OutputTest, ColumnsAreAsWideAsTheirWidestCell) {
    Table table({"NAME", "VALUE"});
    table.Add({Utf8(u8"印章"), "1"});
    table.Add({"a", "2"});
    EXPECT_EQ(table.Text("  "), "  NAME  VALUE\n  " + Utf8(u8"印章") + "  1\n  a     2\n");
}

TEST(OutputTest, JsonKeepsCharactersAsTheyAre) {
    Json::Value value(Json::objectValue);
    value["name"] = Utf8(u8"印章");
    EXPECT_NE(JsonText(value).find(Utf8(u8"印章")), std::string::npos);
}

TEST(OutputTest, SizesAreDecimal) {
    EXPECT_EQ(SizeText(0), "0 bytes");
    EXPECT_EQ(SizeText(1), "1 byte");
    EXPECT_EQ(SizeText(999), "999 bytes");
    EXPECT_EQ(SizeText(1500), "1.5 kB");
    EXPECT_EQ(SizeText(104'857'600), "104.9 MB");
    EXPECT_EQ(SizeText(999'960), "1.0 MB");
}

TEST(ResultTextTest, EveryKindOfCodeHasItsSentenceAndItsExitCode) {
    EXPECT_EQ(ResultText(TESMARK_NO_KEY), "no key is present");
    EXPECT_EQ(ExitCodeFor(TESMARK_NO_KEY), ExitCode::kSetup);
    EXPECT_EQ(ExitCodeFor(TESMARK_CANCELLED), ExitCode::kChoice);
    EXPECT_EQ(ExitCodeFor(TESMARK_ONLINE_CANCELLED), ExitCode::kChoice);
    EXPECT_EQ(ResultText(TESMARK_NO_ONLINE_ADDRESS), "the online seal service has no address");
    EXPECT_EQ(ExitCodeFor(TESMARK_NO_ONLINE_ADDRESS), ExitCode::kSetup);
    EXPECT_EQ(ResultText(kServicePinWrong), "the PIN is wrong");
    EXPECT_EQ(ExitCodeFor(kServicePinWrong), ExitCode::kPin);
    EXPECT_EQ(ResultText(kSealExpired), "the seal has expired");
    EXPECT_EQ(ExitCodeFor(kSealExpired), ExitCode::kFailed);
}

TEST(ResultTextTest, ASealsStatusHasItsSentenceAndWhatTheMachineLacksItsExitCode) {
    const std::string unknown = ResultText(0x0A000001);
    for (const SealCode code :
         {kSealServiceFailed, kSealNoStatusService, kSealStatusBadAddress, kSealStatusUnreachable,
          kSealStatusBadAnswer, kSealStatusUnknown, kSealStatusSuspended, kSealStatusReplaced}) {
        EXPECT_NE(ResultText(code), unknown) << ResultNumber(code);
    }
    for (const SealCode code : {kSealServiceFailed, kSealNoStatusService, kSealStatusBadAddress}) {
        EXPECT_EQ(ExitCodeFor(code), ExitCode::kSetup) << ResultNumber(code);
    }
    EXPECT_EQ(ExitCodeFor(kSealStatusSuspended), ExitCode::kFailed);
}

TEST(ResultTextTest, NumbersAtTheEndsOfTheRangesAreUnknown) {
    const std::string unknown = ResultText(0x0A000001);
    for (const int code : {INT_MIN, -0x2001, -0x2000, 0x1FFF, 0x2000, 0x0B000000, INT_MAX}) {
        EXPECT_EQ(ResultText(code), unknown) << code;
    }
}

TEST(ResultTextTest, ACodeOfAnotherMakersComponentIsToldAsSuch) {
    EXPECT_EQ(ResultText(0x0A000001), "a code of a component that has no text here");
    EXPECT_EQ(ExitCodeFor(0x0A000001), ExitCode::kFailed);
}

TEST(ResultTextTest, ComponentsCodesAreHexadecimal) {
    EXPECT_EQ(ResultNumber(-3004), "-3004");
    EXPECT_EQ(ResultNumber(4354), "4354");
    EXPECT_EQ(ResultNumber(kServicePinWrong), "0x0B000020");
}

TEST(SettingsTest, AClassIsRegisteredUnderTheIdThatTheLibraryMakesItBy) {
    EXPECT_EQ(
        SettingPlace(FindSetting("PersonalSealControl")),
        std::string("HKEY_CLASSES_ROOT\\CLSID\\") + kPersonalSealControlClass + "\\InprocServer32");
    EXPECT_EQ(
        SettingPlace(FindSetting("TimeStampEngine")),
        std::string("HKEY_CLASSES_ROOT\\CLSID\\") + kTimeStampEngineClass + "\\InprocServer32");
}

TEST(DerLengthTest, TheOuterElementEndsTheSignature) {
    EXPECT_EQ(DerLength(std::string("\x30\x03\x02\x01\x05", 5)), 5u);
    EXPECT_EQ(DerLength(std::string("\x30\x03\x02\x01\x05\0\0", 7)), 5u) << "what a service adds";
    EXPECT_EQ(DerLength("\x30\x81\x01\x05"), 4u);
    EXPECT_EQ(DerLength("\x30\x82\x01"), 0u) << "cut within the length";
    EXPECT_EQ(DerLength("\x30\x05\x02"), 0u) << "longer than the bytes";
    EXPECT_EQ(DerLength("\x30\x80"), 0u) << "indefinite";
    EXPECT_EQ(DerLength(""), 0u);
}

TEST(SealFileTest, TheNameAloneDecidesInTheLibrarysOrder) {
    EXPECT_EQ(SealKindOf("GBESEAL"), SealFileKind::kGb);
    EXPECT_EQ(SealKindOf("GBESEAL01"), SealFileKind::kGb);
    EXPECT_EQ(SealKindOf("SSESEAL01"), SealFileKind::kEs);
    EXPECT_EQ(SealKindOf("SEAL01_2"), SealFileKind::kGm);
    EXPECT_EQ(SealKindOf("HLVQSEAL"), SealFileKind::kPicture);
    EXPECT_FALSE(SealKindOf("SEAL02"));
    EXPECT_FALSE(SealKindOf("eseal"));
}

TEST(SealFileTest, AnEsFileGivesNameAndPictureAndNoSize) {
    const SealFile seal = ReadSealFile("ESEAL", SealFileKind::kEs, MakeEsSeal("印章甲", "GIF89a"));
    EXPECT_EQ(seal.readCode, 0);
    EXPECT_EQ(seal.name, Utf8(u8"印章甲"));
    EXPECT_EQ(seal.picture, "GIF89a");
    EXPECT_EQ(seal.widthMm, -1);
}

TEST(SealFileTest, AnEsFileWithoutANameIsCalledSeal) {
    const SealFile seal = ReadSealFile("ESEAL", SealFileKind::kEs, MakeEsSeal("", "GIF89a"));
    EXPECT_EQ(seal.name, Utf8(u8"印章"));
}

TEST(SealFileTest, AnEsFileThatIsCutOffIsRefused) {
    const std::string whole = MakeEsSeal("a", "GIF89a");
    for (const std::size_t length : {0u, 1u, 327u, 333u}) {
        const SealFile seal = ReadSealFile("ESEAL", SealFileKind::kEs, whole.substr(0, length));
        EXPECT_EQ(seal.readCode, TESMARK_SEAL_FORMAT) << length;
    }
    std::string negative = whole;
    negative[15] = '\xFF';
    EXPECT_EQ(ReadSealFile("ESEAL", SealFileKind::kEs, negative).readCode, TESMARK_SEAL_FORMAT);
}

}  // namespace
