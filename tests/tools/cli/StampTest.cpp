// `tesmark stamp`: the road of one stamp.

#include "StampFixture.h"
#include "platform/Files.h"

namespace {

using StampTest = StampFixture<CliTest>;
using LargeStampTest = LargeStampFixture<CliTest>;

TEST_F(StampTest, OneRsaKeyWithOneEsSealGivesASignatureThatPdfsigCallsValid) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const auto outcome = Stamp({"--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(outcome.out.find("adbe.pkcs7.detached"), std::string::npos) << outcome.out;
    const std::string verdict = PdfSig();
    EXPECT_NE(verdict.find("Signature is Valid"), std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Total document signed"), std::string::npos) << verdict;
}

TEST_F(StampTest, ChineseNamesOfFilesAndTextsAreTakenAndTold) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const std::string contract = InPrefix(reinterpret_cast<const char*>(u8"合同.pdf"));
    const std::string stamped = InPrefix(reinterpret_cast<const char*>(u8"合同（已盖章）.pdf"));
    const std::string reason = reinterpret_cast<const char*>(u8"同意");
    WriteFile(platform::PathFromUtf8(contract), FileContent(kContract));
    const Json::Value told =
        Json({"stamp", contract, stamped, "--pin", "123456", "--reason", reason});
    EXPECT_EQ(told["output"].asString(), stamped);
    const std::string bytes = FileContent(platform::PathFromUtf8(stamped));
    EXPECT_NE(bytes.find("<feff540c610f>"), std::string::npos) << "the reason in UTF-16";
    // The program that judges is told a name that every shell can carry.
    WriteFile(m_out, bytes);
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
    const auto absent = Tesmark({"stamp", stamped + ".none", m_out, "--pin", "123456"});
    EXPECT_EQ(absent.exitCode, 4);
    EXPECT_NE(absent.error.find(stamped + ".none"), std::string::npos) << absent.error;
}

TEST_F(StampTest, TheInputStandsUnchangedAtTheOutputsStart) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const std::string before = FileContent(kContract);
    ASSERT_EQ(Stamp({"--pin", "123456"}).exitCode, 0);
    EXPECT_EQ(FileContent(kContract), before);
    EXPECT_EQ(FileContent(m_out).substr(0, before.size()), before);
}

TEST_F(StampTest, AnEsSealGoesOnThePageAtThreeHundredDotsPerInch) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_NEAR(stamped["widthMm"].asDouble(), 42, 0.1);
    EXPECT_NEAR(stamped["heightMm"].asDouble(), 42, 0.1);
    EXPECT_EQ(stamped["mode"].asInt(), 0);
}

TEST_F(StampTest, ASm2KeyWithAGbSealMakesASealSignatureUnderItsOwnSubFilter) {
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_EQ(stamped["mode"].asInt(), 2);
    EXPECT_EQ(stamped["subFilter"].asString(), "GBT38540.SESeal");
    EXPECT_EQ(stamped["widthMm"].asDouble(), 42);
    EXPECT_NE(FileContent(m_out).find("/GBT38540.SESeal"), std::string::npos);
}

TEST_F(StampTest, AGmSealMakesASealSignatureUnderItsOwnSubFilter) {
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gm2014", "sm2");
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_EQ(stamped["mode"].asInt(), 1);
    EXPECT_EQ(stamped["subFilter"].asString(), "GMT0031.SESeal");
}

TEST_F(StampTest, PageAndPlaceAndSizeAreTheUsersOwn) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456", "--page", "2",
                                      "--at", "20,30.5", "--size", "30x25"});
    EXPECT_EQ(stamped["page"].asInt(), 2);
    EXPECT_EQ(stamped["xMm"].asDouble(), 20);
    EXPECT_EQ(stamped["yMm"].asDouble(), 30.5);
    EXPECT_EQ(stamped["widthMm"].asDouble(), 30);
    EXPECT_EQ(stamped["heightMm"].asDouble(), 25);
}

TEST_F(StampTest, CertAndSealNameOneOfSeveral) {
    MakeKey("rsa", "rsa2048");
    MakeKey("sm2", "sm2");
    MakeSeal("rsa", "es", "first");
    MakeSeal("rsa", "es", "second");
    MakeSeal("sm2", "gb2020", "third");
    auto outcome = Stamp({"--cert", "rsa", "--seal", "second", "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
    const Json::Value stamped =
        Json({"stamp", kContract, m_out, "--seal", "GBESEAL", "--pin", "123456"});
    EXPECT_EQ(stamped["mode"].asInt(), 2);
    EXPECT_EQ(stamped["certId"].asString(), "DevKeys/sm2");
}

TEST_F(StampTest, APartOfANameIsNeverTakenForAnotherSealsOwnName) {
    MakeKey("gs", "sm2");
    MakeKey("rsa", "rsa2048");
    MakeSeal("gs", "gb2020", "first");
    MakeSeal("rsa", "es", "second");
    const auto outcome = Stamp({"--cert", "gs", "--seal", "ESEAL", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 5) << outcome.out;
    EXPECT_NE(outcome.error.find("GBESEAL"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
    EXPECT_EQ(Stamp({"--cert", "gs", "--seal", "fir", "--pin", "123456"}).exitCode, 0);
    EXPECT_EQ(Stamp({"--seal", "ESEAL", "--pin", "123456"}).exitCode, 0);
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos) << "the ES seal's";
}

TEST_F(StampTest, TheSealThatWasUsedIsTold) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "first");
    const auto outcome = Stamp({"--pin", "123456"});
    EXPECT_NE(outcome.out.find("seal ESEAL  first\n"), std::string::npos) << outcome.out;
    const Json::Value named =
        Json({"stamp", kContract, m_out, "--cert", "rsa", "--pin", "123456"})["seal"];
    EXPECT_EQ(named["file"].asString(), "ESEAL");
    EXPECT_EQ(named["name"].asString(), "first");
}

TEST_F(StampTest, ACertificateIsNamedByItsSerialNumberToo) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const std::string serial = Json({"list"})["certificates"][0]["serial"].asString();
    EXPECT_EQ(Stamp({"--serial", serial, "--pin", "123456"}).exitCode, 0);
}

TEST_F(StampTest, ASealOfThatNameThatIsNotThereIsToldWithWhatIsThere) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "first");
    const auto outcome = Stamp({"--seal", "other", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 5);
    EXPECT_NE(outcome.error.find("No seal is called \"other\""), std::string::npos);
    EXPECT_NE(outcome.error.find("first"), std::string::npos) << outcome.error;
}

TEST_F(StampTest, WithoutAKeyTheWayToOneIsTold) {
    const auto outcome = Stamp({});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.error.find("no key is present"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, AWrongPinIsToldApartFromALockedKey) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const auto wrong = Stamp({"--pin", "000000"});
    EXPECT_EQ(wrong.exitCode, 6);
    EXPECT_NE(wrong.error.find("the PIN is wrong"), std::string::npos) << wrong.error;
    EXPECT_NE(wrong.error.find("  5 tries left\n"), std::string::npos) << wrong.error;
    const auto named = Stamp({"--cert", "rsa", "--seal", "ESEAL", "--pin", "000000"});
    EXPECT_NE(named.error.find("  4 tries left\n"), std::string::npos) << named.error;
    for (int i = 0; i < 4; ++i) Stamp({"--pin", "000000"});
    const auto locked = Stamp({"--pin", "123456"});
    EXPECT_EQ(locked.exitCode, 6);
    EXPECT_NE(locked.error.find("locked"), std::string::npos) << locked.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, WithoutAPinAndWithoutATerminalTheCauseIsTold) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ProgramOptions noPrograms;
    noPrograms.environment = {{"PATH", "/nowhere"}};
    const auto outcome = Tesmark({"stamp", kContract, m_out}, noPrograms);
    EXPECT_EQ(outcome.exitCode, 6) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, ADamagedSealIsRefusedBeforeAnyPin) {
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const std::string path = InKeys("sm2/files/GBESEAL");
    std::string content = FileContent(path);
    content[content.size() / 2] ^= 1;
    WriteFile(path, content);
    const auto outcome = Stamp({"--seal", "GBESEAL"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("can't be used"), std::string::npos) << outcome.error;
}

TEST_F(StampTest, APageThatIsNotThereIsAFilesFault) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const auto outcome = Stamp({"--page", "99", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("page"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, AnOutputThatCannotBeWrittenIsAFilesFault) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const auto outcome =
        Tesmark({"stamp", kContract, InPrefix("missing/out.pdf"), "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 4) << outcome.error;
}

TEST_F(StampTest, AnEncryptedPdfIsRefusedAndLeftAlone) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const std::string encrypted = InPrefix("encrypted.pdf");
    ASSERT_EQ(
        RunProgram({"/usr/bin/qpdf", "--encrypt", "", "owner", "256", "--", kContract, encrypted})
            .exitCode,
        0);
    const std::string before = FileContent(encrypted);
    const auto outcome = Tesmark({"stamp", encrypted, m_out, "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("encrypted"), std::string::npos) << outcome.error;
    EXPECT_EQ(FileContent(encrypted), before);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, WhatIsNoPdfIsRefused) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    WriteFile(InPrefix("text.pdf"), "no PDF at all");
    EXPECT_EQ(Tesmark({"stamp", InPrefix("text.pdf"), m_out}).exitCode, 4);
    EXPECT_EQ(Tesmark({"stamp", InPrefix("absent.pdf"), m_out}).exitCode, 4);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, AFolderInADocumentsPlaceIsToldAsOne) {
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"stamp", m_prefix.Path(), m_out}, {"verify", m_prefix.Path()}}) {
        const auto outcome = Tesmark(command);
        EXPECT_EQ(outcome.exitCode, 4) << command[0];
        EXPECT_NE(outcome.error.find("\"" + m_prefix.Path() + "\" is a folder."), std::string::npos)
            << outcome.error;
    }
    EXPECT_TRUE(NothingWritten());
}

// It wrote a file of that name.
TEST_F(StampTest, StandardInputAndOutputAreNoFilesToStampSignOrVerify) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"stamp", kContract, "-", "--pin", "123456"},
                                               {"stamp", "-", m_out, "--pin", "123456"},
                                               {"sign", "-", "--pin", "123456"},
                                               {"timestamp", "-"},
                                               {"verify", "-"}}) {
        const auto outcome = Tesmark(command);
        EXPECT_EQ(outcome.exitCode, 2) << outcome.error;
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.error.find("A file is needed here"), std::string::npos) << outcome.error;
    }
    EXPECT_FALSE(platform::PathExists("-"));
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, NumbersThatAreNoneAreUsageErrorsThatNameTheOptionAndCostNoTry) {
    EXPECT_EQ(Stamp({"--at", "here"}).exitCode, 2) << "before a key is looked for";
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{"--at", "here"},
                                               {"--at", "3"},
                                               {"--size", "30"},
                                               {"--size", "-3x4"},
                                               {"--size", "0x0"},
                                               {"--page", "0"},
                                               {"--page", "x"}}) {
        const auto outcome = Stamp({wrong[0], wrong[1], "--pin", "000000"});
        EXPECT_EQ(outcome.exitCode, 2) << wrong[0] << wrong[1];
        EXPECT_NE(outcome.error.find(wrong[0] + (wrong[1] == "x" ? " = x" : " is ")),
                  std::string::npos)
            << outcome.error;
    }
    EXPECT_EQ(Json({"key", "list"})["keys"][0]["triesLeft"].asInt(), 6);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, AnEmptyValueIsNoAbsentOne) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    for (const char* option :
         {"--cert", "--serial", "--seal", "--at", "--size", "--page", "--pin-file", "--text"}) {
        const auto outcome = Tesmark({"stamp", kContract, m_out, "--pin", "123456", option, ""});
        EXPECT_EQ(outcome.exitCode, 2) << option;
        EXPECT_NE(outcome.error.find(option), std::string::npos) << outcome.error;
    }
    EXPECT_TRUE(NothingWritten());
    EXPECT_EQ(Stamp({"--pin", "123456", "--reason", ""}).exitCode, 0) << "a text may be empty";
}

TEST_F(StampTest, ASealThatDoesNotLieOnThePageAsAWholeIsRefused) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    for (const std::vector<std::string>& place : std::vector<std::vector<std::string>>{
             {"--at=-5,3"}, {"--at=205,290"}, {"--at=10,280"}, {"--size=3000x20"}}) {
        std::vector<std::string> line = {"--pin", "123456"};
        line.insert(line.end(), place.begin(), place.end());
        const auto outcome = Stamp(line);
        EXPECT_EQ(outcome.exitCode, 2) << place.front();
        EXPECT_NE(outcome.error.find("on the page as a whole"), std::string::npos) << outcome.error;
        EXPECT_TRUE(NothingWritten());
    }
    EXPECT_EQ(Stamp({"--pin", "123456", "--at=-5,3", "--beyond-edge"}).exitCode, 0);
}

TEST_F(StampTest, ASecondStampLeavesTheFirstSignatureValid) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ASSERT_EQ(Stamp({"--pin", "123456"}).exitCode, 0);
    const std::string twice = InPrefix("twice.pdf");
    ASSERT_EQ(Tesmark({"stamp", m_out, twice, "--pin", "123456", "--page", "1"}).exitCode, 0);
    const std::string verdict = RunProgram({"/usr/bin/pdfsig", "-nocert", twice}).out;
    const auto first = verdict.find("Signature is Valid");
    ASSERT_NE(first, std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Signature is Valid", first + 1), std::string::npos) << verdict;
}

TEST_F(StampTest, AFailureIsAnObjectForScripts) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const Json::Value failure = Json({"stamp", kContract, m_out, "--pin", "000000"})["error"];
    EXPECT_EQ(failure["exit"].asInt(), 6);
    EXPECT_EQ(failure["meaning"].asString(), "the PIN is wrong");
    EXPECT_EQ(failure["log"].asString(), m_prefix.LogFolder() + "Fenmoor.log");
}

TEST_F(LargeStampTest, AWrongPinLeavesNoCopyBehind) {
    WriteOldOutput();
    const auto outcome = StampLarge({"--pin", "000000"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("5 tries left"), std::string::npos) << outcome.error;
    EXPECT_NE(Stamp({"--pin", "000000"}).error.find("4 tries left"), std::string::npos);
    ExpectOldOutput();
}

TEST_F(LargeStampTest, AChoiceThatFailsLeavesNoCopyBehind) {
    WriteOldOutput();
    EXPECT_EQ(StampLarge({"--seal", "other", "--pin", "123456"}).exitCode, 5);
    EXPECT_EQ(StampLarge({"--at", "here", "--pin", "123456"}).exitCode, 2);
    EXPECT_EQ(StampLarge({"--page", "99", "--pin", "123456"}).exitCode, 4);
    ExpectOldOutput();
}

TEST_F(LargeStampTest, AnOutputThatIsTheInputOrCannotBeWrittenIsAFilesFault) {
    const std::string before = FileContent(m_large);
    for (const std::string& output : {m_large, InPrefix("missing/out.pdf"), m_prefix.Path()}) {
        const auto outcome = Tesmark({"stamp", m_large, output, "--pin", "123456"});
        EXPECT_EQ(outcome.exitCode, 4) << outcome.error;
    }
    EXPECT_TRUE(FileContent(m_large) == before);
    EXPECT_EQ(FilesBeginningWith("large.pdf").size(), 1u);
}

}  // namespace
