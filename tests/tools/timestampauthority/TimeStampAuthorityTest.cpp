// The development authority, and the program around it.

#include "tools/timestampauthority/TimeStampAuthority.h"

#include <gmock/gmock.h>

#include <fstream>

#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/timestamp/ResponseCheck.h"
#include "components/timestamp/TimeStampFixture.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Keys take their time to be made: once for all tests that need them.
struct Made {
    Made() : ca(DevelopmentCa::Make(KeyKind::kRsa, {.commonName = "Root"})) {
        const CertificateHandle issuer = ParseCertificate(ca->Certificate());
        authority = TimeStampAuthority::Make(issuer.get(), ca->Key());
    }
    std::unique_ptr<DevelopmentCa> ca;
    std::unique_ptr<TimeStampAuthority> authority;
};

class TimeStampAuthorityTest : public testing::Test {
protected:
    static Made& Own() {
        static Made made;
        return made;
    }
    std::string Written(const std::string& name, const std::string& content) const {
        std::ofstream(m_folder.Below(name), std::ios::binary) << content;
        return m_folder.Below(name);
    }

    TemporaryFolder m_folder;
};

TEST_F(TimeStampAuthorityTest, OpensslFindsItsCertificateFitForTimeStampsBelowTheCa) {
    const ProgramOutcome verified =
        RunProgram({"/usr/bin/openssl", "verify", "-x509_strict", "-purpose", "timestampsign",
                    "-CAfile", Written("ca.pem", Own().ca->CertificatePem()),
                    Written("own.pem", Own().authority->Certificate())});
    EXPECT_EQ(verified.exitCode, 0) << verified.out << verified.error;
}

TEST_F(TimeStampAuthorityTest, TwoStampsHaveTwoSerialNumbers) {
    const std::string request = MakeRequest();
    const ResponseVerdict first = CheckResponse(request, Own().authority->Answer(request));
    const ResponseVerdict second = CheckResponse(request, Own().authority->Answer(request));
    EXPECT_EQ(first.fault + second.fault, "");
    EXPECT_NE(first.summary, second.summary);
}

TEST_F(TimeStampAuthorityTest, CertificatesAreInTheTokenOnDemandAlone) {
    std::string request = MakeRequest();
    const std::size_t with = Own().authority->Answer(request).size();
    // The end of the request is the BOOLEAN that asks for them: left out, it means no.
    ASSERT_EQ(request.substr(request.size() - 3), "\x01\x01\xFF");
    request.resize(request.size() - 3);
    request[1] = static_cast<char>(request[1] - 3);
    const std::string without = Own().authority->Answer(request);
    EXPECT_EQ(CheckResponse(request, without).fault, "");
    EXPECT_LT(without.size() + 1000, with);
}

TEST_F(TimeStampAuthorityTest, AnHttpAnswerHasTheTypeAndTheLength) {
    const std::string answer = Own().authority->HttpAnswer(MakeRequest());
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(answer, HasSubstr("\r\nContent-Type: application/timestamp-reply\r\n"));
    const std::string body = answer.substr(answer.find("\r\n\r\n") + 4);
    EXPECT_THAT(answer, HasSubstr("\r\nContent-Length: " + std::to_string(body.size()) + "\r\n"));
}

TEST_F(TimeStampAuthorityTest, TheProgramTellsAFolderThatCannotBe) {
    const ProgramOutcome outcome =
        RunProgram({TSA_PROGRAM, "--folder", Written("file", "no folder")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.error, StartsWith("tesmark-tsa: "));
    EXPECT_EQ(outcome.out, "");
}

TEST_F(TimeStampAuthorityTest, TheProgramRefusesAPortThatIsNone) {
    EXPECT_NE(RunProgram({TSA_PROGRAM, "--port", "65536"}).exitCode, 0);
}

}  // namespace
