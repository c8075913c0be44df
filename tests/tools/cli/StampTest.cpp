// `tesmark stamp`: the road of one stamp.

#include "CliFixture.h"

namespace {

using testing::Test;

class StampTest : public CliTest {
protected:
    std::string m_out = InPrefix("out.pdf");

    ProgramOutcome Stamp(std::vector<std::string> more) const {
        std::vector<std::string> arguments = {"stamp", kContract, m_out};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Tesmark(arguments);
    }
    std::string PdfSig() const { return RunProgram({"/usr/bin/pdfsig", "-nocert", m_out}).out; }
    bool NothingWritten() const { return FilesBeginningWith("out.pdf").empty(); }
};

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

TEST_F(StampTest, TwoSealsWithoutADialogGiveAListAndTheHintToNameOne) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "first");
    MakeSeal("rsa", "es", "second");
    const auto outcome = Stamp({"--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 5);
    EXPECT_NE(outcome.error.find("first"), std::string::npos) << outcome.error;
    EXPECT_NE(outcome.error.find("second"), std::string::npos) << outcome.error;
    EXPECT_NE(outcome.error.find("--seal"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
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
    for (int i = 0; i < 5; ++i) Stamp({"--pin", "000000"});
    const auto locked = Stamp({"--pin", "123456"});
    EXPECT_EQ(locked.exitCode, 6);
    EXPECT_NE(locked.error.find("locked"), std::string::npos) << locked.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, WithoutAPinAndWithoutATerminalTheCauseIsTold) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    const auto outcome =
        Shell("PATH=/nowhere $TESMARK stamp " + std::string(kContract) + " out.pdf");
    EXPECT_EQ(outcome.exitCode, 6) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, WithoutAPinOnTheCommandLineThePersonIsAskedOnce) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ScriptPinentry("echo asked >> " + InPrefix("asked"));
    const auto outcome = Stamp({});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_EQ(FileContent(InPrefix("asked")), "asked\n");
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(StampTest, AnInterruptLeavesNothingBehind) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ScriptPinentry("kill -INT $PPID");
    const auto outcome = Stamp({"--seal", "rsa"});
    EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampTest, AnInterruptLeavesAnOlderOutputAsItWas) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    WriteFile(m_out, "what was there before");
    ScriptPinentry("kill -TERM $PPID");
    EXPECT_EQ(Stamp({"--seal", "rsa"}).exitCode, 130);
    EXPECT_EQ(FileContent(m_out), "what was there before");
    EXPECT_EQ(FilesBeginningWith("out.pdf").size(), 1u);
}

TEST_F(StampTest, ADamagedSealIsRefusedBeforeAnyPin) {
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const std::string path = InPrefix("keys/sm2/files/GBESEAL");
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

TEST_F(StampTest, APlaceThatIsNoneIsAUsageError) {
    EXPECT_EQ(Stamp({"--at", "here"}).exitCode, 3) << "the key comes first";
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    EXPECT_EQ(Stamp({"--at", "here", "--pin", "123456"}).exitCode, 2);
    EXPECT_EQ(Stamp({"--size", "30", "--pin", "123456"}).exitCode, 2);
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
    EXPECT_EQ(failure["log"].asString(), InPrefix("Velmora/ESealLog/Fenmoor.log"));
}

// A document that is copied while the seal is chosen and the key opened.
class LargeStampTest : public StampTest {
protected:
    std::string m_large = InPrefix("large.pdf");

    LargeStampTest() {
        MakeKey("rsa", "rsa2048");
        MakeSeal("rsa", "es", "rsa");
        // The contract, a comment of 9 MB, and its end again.
        const std::string contract = FileContent(kContract);
        WriteFile(m_large, contract + "\n%" + std::string(9'000'000, 'x') + "\n" +
                               contract.substr(contract.rfind("startxref")));
    }

    ProgramOutcome StampLarge(std::vector<std::string> more) const {
        more.insert(more.begin(), {"stamp", m_large, m_out});
        return Tesmark(more);
    }
    // Whoever is asked for the PIN first waits for the file beside the output, then runs `action`.
    void WhenTheCopyHasBegun(const std::string& action) const {
        ScriptPinentry("for i in $(seq 10000); do for f in " + m_out +
                       ".*; do [ -e \"$f\" ] && echo \"$f\" > " + InPrefix("seen") +
                       " && break 2; done; done; " + action);
    }
    bool CopyWasSeen() const { return FileContent(InPrefix("seen")).starts_with(m_out + "."); }
    // The output is as it was before, and nothing is beside it.
    void ExpectOldOutput() const {
        EXPECT_EQ(FileContent(m_out), "what was there before");
        EXPECT_EQ(FilesBeginningWith("out.pdf").size(), 1u);
    }
    void WriteOldOutput() const { WriteFile(m_out, "what was there before"); }
};

TEST_F(LargeStampTest, ItIsCopiedWhileThePinIsAskedForAndItsSignatureIsValid) {
    WhenTheCopyHasBegun("true");
    const auto outcome = StampLarge({});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_TRUE(CopyWasSeen());
    const std::string verdict = PdfSig();
    EXPECT_NE(verdict.find("Signature is Valid"), std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Total document signed"), std::string::npos) << verdict;
    EXPECT_EQ(FilesBeginningWith("out.pdf").size(), 1u);
    const std::string before = FileContent(m_large);
    EXPECT_TRUE(FileContent(m_out).starts_with(before));
}

TEST_F(LargeStampTest, ASmallDocumentIsNotCopiedBeforeThePinIsGiven) {
    ScriptPinentry("ls " + InPrefix("") + " > " + InPrefix("seen"));
    ASSERT_EQ(Stamp({}).exitCode, 0);
    EXPECT_EQ(FileContent(InPrefix("seen")).find("out.pdf"), std::string::npos);
    EXPECT_NE(FileContent(InPrefix("seen")).find("large.pdf"), std::string::npos);
}

TEST_F(LargeStampTest, AWrongPinLeavesNoCopyBehind) {
    WriteOldOutput();
    const auto outcome = StampLarge({"--pin", "000000"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.error, Stamp({"--pin", "000000"}).error);
    ExpectOldOutput();
}

TEST_F(LargeStampTest, APinThatIsRefusedInTheDialogLeavesNoCopyBehind) {
    WriteOldOutput();
    WhenTheCopyHasBegun("echo 'ERR 83886179 cancelled'; continue");
    const auto outcome = StampLarge({});
    EXPECT_NE(outcome.exitCode, 0);
    EXPECT_NE(outcome.exitCode, 130);
    EXPECT_TRUE(CopyWasSeen());
    ExpectOldOutput();
}

TEST_F(LargeStampTest, AChoiceThatFailsLeavesNoCopyBehind) {
    WriteOldOutput();
    EXPECT_EQ(StampLarge({"--seal", "other", "--pin", "123456"}).exitCode, 5);
    EXPECT_EQ(StampLarge({"--at", "here", "--pin", "123456"}).exitCode, 2);
    EXPECT_EQ(StampLarge({"--page", "99", "--pin", "123456"}).exitCode, 4);
    ExpectOldOutput();
}

TEST_F(LargeStampTest, AnInterruptWhileTheKeyIsOpenedLeavesNoCopyBehind) {
    WriteOldOutput();
    // With a PIN all the same, and without one.
    for (const char* action :
         {"kill -INT $PPID", "kill -TERM $PPID; echo 'ERR 83886179 cancelled'; continue"}) {
        WhenTheCopyHasBegun(action);
        const auto outcome = StampLarge({});
        EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
        EXPECT_NE(outcome.error.find("nothing was written"), std::string::npos) << outcome.error;
        EXPECT_TRUE(CopyWasSeen());
        ExpectOldOutput();
    }
}

TEST_F(LargeStampTest, ADocumentThatChangesMeanwhileIsAFilesFault) {
    WriteOldOutput();
    WhenTheCopyHasBegun("echo >> " + m_large);
    const auto outcome = StampLarge({});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("The input was changed"), std::string::npos) << outcome.error;
    EXPECT_TRUE(CopyWasSeen());
    ExpectOldOutput();
}

TEST_F(LargeStampTest, ADiskThatFillsUpIsAFilesFault) {
    WriteOldOutput();
    // In blocks of 512 bytes.
    const auto outcome = Shell("trap '' XFSZ; ulimit -f 10000; $TESMARK stamp " + m_large + " " +
                               m_out + " --pin 123456");
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("can't be written"), std::string::npos) << outcome.error;
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
