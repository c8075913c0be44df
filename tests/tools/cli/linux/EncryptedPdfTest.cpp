// GnuTLS, which only encrypted documents need.

#include <filesystem>

#include "tools/cli/CliFixture.h"

namespace {

class EncryptedPdfOnLinux : public CliTest {
protected:
    EncryptedPdfOnLinux() {
        RunProgram({"/usr/bin/qpdf", "--encrypt", "", "owner", "256", "--", kContract, m_locked});
        std::filesystem::create_directory(InPrefix("spoiled"));
        WriteFile(InPrefix("spoiled/libgnutls.so.30"), "no library");
    }

    ProgramOutcome Verify(const std::string& pdf) const { return Tesmark({"verify", pdf}); }
    // On a machine whose GnuTLS can't be loaded.
    ProgramOutcome VerifyWithoutGnutls(const std::string& pdf) const {
        ProgramOptions options;
        options.environment = {{"LD_LIBRARY_PATH", InPrefix("spoiled")}};
        return Tesmark({"verify", pdf}, options);
    }

    std::string m_locked = InPrefix("locked.pdf");
};

TEST_F(EncryptedPdfOnLinux, ItIsReadWithTheFirstCallOfGnutls) {
    const auto outcome = Verify(m_locked);
    EXPECT_EQ(outcome.exitCode, 7) << outcome.error;
    EXPECT_NE(outcome.out.find("There is no signature in it."), std::string::npos) << outcome.out;
}

TEST_F(EncryptedPdfOnLinux, WithoutGnutlsItCannotBeReadAndTheSentenceNamesTheLibrary) {
    const auto outcome = VerifyWithoutGnutls(m_locked);
    EXPECT_EQ(outcome.exitCode, 4) << outcome.error;
    EXPECT_NE(outcome.error.find("The PDF can't be read"), std::string::npos) << outcome.error;
    EXPECT_NE(outcome.error.find("libgnutls.so.30 can't be loaded"), std::string::npos)
        << outcome.error;
}

TEST_F(EncryptedPdfOnLinux, AnyOtherDocumentIsReadWithoutGnutls) {
    const auto outcome = VerifyWithoutGnutls(kContract);
    EXPECT_EQ(outcome.exitCode, 7) << outcome.error;
    EXPECT_NE(outcome.out.find("There is no signature in it."), std::string::npos) << outcome.out;
}

}  // namespace
