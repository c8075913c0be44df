// `tesmark sign` and `stamp` while a person is asked for the PIN.

#include "tools/cli/StampFixture.h"
#include "tools/cli/linux/PinentryFixture.h"

namespace {

class SignOnLinux : public PinentryFixture {
protected:
    SignOnLinux() { WriteFile(m_file, "a text to be signed\n"); }

    std::string m_file = InPrefix("text.txt");
};

TEST_F(SignOnLinux, AnInterruptLeavesNothingBehind) {
    MakeKey("rsa", "rsa2048");
    ScriptPinentry("kill -INT $PPID");
    const auto outcome = Tesmark({"sign", m_file});
    EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
    EXPECT_EQ(FilesBeginningWith("text.txt").size(), 1u);
}

using StampOnLinux = StampFixture<PinentryFixture>;

TEST_F(StampOnLinux, WithoutAPinOnTheCommandLineThePersonIsAskedOnce) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ScriptPinentry("echo asked >> " + InPrefix("asked"));
    const auto outcome = Stamp({});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_EQ(FileContent(InPrefix("asked")), "asked\n");
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(StampOnLinux, AnInterruptLeavesNothingBehind) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    ScriptPinentry("kill -INT $PPID");
    const auto outcome = Stamp({"--seal", "rsa"});
    EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(StampOnLinux, AnInterruptLeavesAnOlderOutputAsItWas) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "rsa");
    WriteFile(m_out, "what was there before");
    ScriptPinentry("kill -TERM $PPID");
    EXPECT_EQ(Stamp({"--seal", "rsa"}).exitCode, 130);
    EXPECT_EQ(FileContent(m_out), "what was there before");
    EXPECT_EQ(FilesBeginningWith("out.pdf").size(), 1u);
}

class LargeStampOnLinux : public LargeStampFixture<PinentryFixture> {
protected:
    // Whoever is asked for the PIN first waits for the file beside the output, then runs `action`.
    void WhenTheCopyHasBegun(const std::string& action) const {
        ScriptPinentry("for i in $(seq 10000); do for f in " + m_out +
                       ".*; do [ -e \"$f\" ] && echo \"$f\" > " + InPrefix("seen") +
                       " && break 2; done; done; " + action);
    }
    bool CopyWasSeen() const { return FileContent(InPrefix("seen")).starts_with(m_out + "."); }
};

TEST_F(LargeStampOnLinux, ItIsCopiedWhileThePinIsAskedForAndItsSignatureIsValid) {
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

TEST_F(LargeStampOnLinux, ASmallDocumentIsNotCopiedBeforeThePinIsGiven) {
    ScriptPinentry("ls " + InPrefix("") + " > " + InPrefix("seen"));
    ASSERT_EQ(Stamp({}).exitCode, 0);
    EXPECT_EQ(FileContent(InPrefix("seen")).find("out.pdf"), std::string::npos);
    EXPECT_NE(FileContent(InPrefix("seen")).find("large.pdf"), std::string::npos);
}

TEST_F(LargeStampOnLinux, APinThatIsRefusedInTheDialogLeavesNoCopyBehind) {
    WriteOldOutput();
    WhenTheCopyHasBegun("echo 'ERR 83886179 cancelled'; continue");
    const auto outcome = StampLarge({});
    EXPECT_NE(outcome.exitCode, 0);
    EXPECT_NE(outcome.exitCode, 130);
    EXPECT_TRUE(CopyWasSeen());
    ExpectOldOutput();
}

TEST_F(LargeStampOnLinux, AnInterruptWhileTheKeyIsOpenedLeavesNoCopyBehind) {
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

TEST_F(LargeStampOnLinux, ADocumentThatChangesMeanwhileIsAFilesFault) {
    WriteOldOutput();
    WhenTheCopyHasBegun("echo >> " + m_large);
    const auto outcome = StampLarge({});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("The input was changed"), std::string::npos) << outcome.error;
    EXPECT_TRUE(CopyWasSeen());
    ExpectOldOutput();
}

TEST_F(LargeStampOnLinux, ADiskThatFillsUpIsAFilesFault) {
    WriteOldOutput();
    // In blocks of 512 bytes.
    const auto outcome = Shell("trap '' XFSZ; ulimit -f 10000; $TESMARK stamp " + m_large + " " +
                               m_out + " --pin 123456");
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("can't be written"), std::string::npos) << outcome.error;
    ExpectOldOutput();
}

}  // namespace
