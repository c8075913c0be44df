// The checks of a certificate that stand before every signature, by the export that makes them
// alone.
#include <gmock/gmock.h>

#include <ctime>

#include "ExportCalls.h"
#include "Verdicts.h"
#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"
#include "platform/Clock.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string LocalTimeText(std::time_t time) {
    const std::tm local = platform::LocalTime(time);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &local);
    return text;
}

class KeyCheckTest : public LibraryTest {
protected:
    KeyCheckTest() : m_certificate(fakes::AddCertificate("label", "A")) {
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }

    int Check() { return GetCertTypeForJs("A", m_type); }
    int SelectionLength() const {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length;
    }

    fakes::Certificate& m_certificate;
    char m_type[300] = "untouched";
};

TEST_F(KeyCheckTest, AsksForTheCertificateItsValidityItsTypeAndItsChain) {
    EXPECT_EQ(Check(), 0);
    EXPECT_STREQ(m_type, "SM2");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_ExportUserCert(ctx, \"A\", size?)",
                            "SOF_ExportUserCert(ctx, \"A\", out[8])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 11, out[4096])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 12, out[4096])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[260])",
                            "SOF_ValidateCert(ctx, 8 \"DER of A\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetKeyType]: begin", "8 [GetKeyType]: ok"));
}

TEST_F(KeyCheckTest, SelectsTheCertificate) {
    EXPECT_EQ(Check(), 0);
    EXPECT_EQ(SelectionLength(), 1);
}

TEST_F(KeyCheckTest, ANullIdentifierSelectsNothingAndFails) {
    SetCurrentCertID("A");
    EXPECT_EQ(GetCertTypeForJs(nullptr, m_type), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(SelectionLength(), 0);
}

TEST_F(KeyCheckTest, ACertificateThatCannotBeExportedFailsAtEitherStep) {
    fakes::On("SOF_ExportUserCert").ReturnsAt(1, 31).ReturnsAt(3, 32);
    EXPECT_EQ(Check(), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(fakes::Calls().size(), 1u);
    EXPECT_EQ(Check(), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(fakes::Calls().size(), 3u);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]SOF_ExportUserCert: failed,error:31",
                                      "[GetKeyType]SOF_ExportUserCert: failed,error:32"));
    EXPECT_STREQ(m_type, "untouched");
}

TEST_F(KeyCheckTest, AFailureEndsTheSelection) {
    fakes::On("SOF_ExportUserCert").Returns(31);
    Check();
    EXPECT_EQ(SelectionLength(), 0);
}

TEST_F(KeyCheckTest, ASizeThatNoMemoryHasIsToldAsSuch) {
    fakes::On("SOF_ExportUserCert").ReportsSize(-2);
    EXPECT_EQ(Check(), TESMARK_NO_MEMORY);
    EXPECT_EQ(fakes::Calls().size(), 1u);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(KeyCheckTest, EachFieldThatCannotBeReadIsToldByItsOwnRecord) {
    fakes::On("SOF_GetCertInfo").ReturnsAt(1, 41).ReturnsAt(3, 42).ReturnsAt(6, 43);
    EXPECT_EQ(Check(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(Check(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(Check(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]SOF_GetCertInfo-11: failed,error:41",
                                      "[GetKeyType]SOF_GetCertInfo-12: failed,error:42",
                                      "[GetKeyType]SOF_GetCertInfo: failed,error:43"));
    EXPECT_EQ(fakes::CountCalls("SOF_ValidateCert"), 0);
}

TEST_F(KeyCheckTest, ACertificateThatEndedOneSecondAgoIsRefusedBeforeItsTypeIsAskedFor) {
    m_prefix.SetNumber("bVerifyCRL", 1);
    UnInitKVLLib();
    InitKVLLib();
    fakes::ClearCalls();
    m_certificate.notAfter = LocalTimeText(std::time(nullptr) - 1);
    EXPECT_EQ(Check(), TESMARK_CERT_EXPIRED);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("SOF_ExportUserCert", "SOF_ExportUserCert",
                                                      "SOF_GetCertInfo", "SOF_GetCertInfo"));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(KeyCheckTest, ACertificateOfTomorrowIsRefusedToo) {
    m_certificate.notBefore = LocalTimeText(std::time(nullptr) + 86'400);
    EXPECT_EQ(Check(), TESMARK_CERT_EXPIRED);
}

TEST_F(KeyCheckTest, AValidityThatBeganThisMomentCounts) {
    m_certificate.notBefore = LocalTimeText(std::time(nullptr));
    EXPECT_EQ(Check(), 0);
}

TEST_F(KeyCheckTest, AValidityThatIsNoDateIsTheStringFailure) {
    for (const char* text :
         {"", "18991231235959", "20991331235959", "20991200235959", "20991232235959",
          "20991231245959", "20991231236059", "20991231235960", "abcdefghijklmn"}) {
        m_certificate.notAfter = text;
        try {
            Check();
            ADD_FAILURE() << "taken for a date: " << text;
        } catch (const StringFailure& failure) {
            EXPECT_EQ(failure.Value(), StringFailure::kGeneral);
        }
    }
}

TEST_F(KeyCheckTest, ATextBehindTheSecondsIsNotLookedAt) {
    m_certificate.notAfter = "20991231235959Z and more";
    EXPECT_EQ(Check(), 0);
}

TEST_F(KeyCheckTest, TheServicesVerdictDecides) {
    for (const auto& [verdict, code] : kRefusals) {
        ForgetLog();
        m_certificate.validity = verdict;
        EXPECT_EQ(Check(), code);
        EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]call SOF_ValidateCert error:" +
                                          std::to_string(verdict)));
    }
    EXPECT_STREQ(m_type, "untouched");
}

TEST_F(KeyCheckTest, AnyOtherVerdictFillsTheTypeAndIsTheResult) {
    m_certificate.validity = -4;
    EXPECT_EQ(Check(), -4);
    EXPECT_STREQ(m_type, "SM2");
    EXPECT_THAT(Log(), ElementsAre("8 [GetKeyType]: begin", "8 [GetKeyType]: ok"));
    EXPECT_EQ(SelectionLength(), 0);
}

TEST_F(KeyCheckTest, AServiceThatCannotBeStartedAnyMoreIsNotAskedForTheKey) {
    UnInitKVLLib();
    fakes::ClearCalls();
    fakes::On("SOF_Initialize").Returns(1);
    EXPECT_EQ(Check(), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(fakes::CountCalls("SOF_ExportUserCert"), 0);
}

TEST_F(KeyCheckTest, ATypeThatFillsItsWholeBufferIsDeliveredWhole) {
    m_certificate.keyType = std::string(260, 'x');
    EXPECT_EQ(Check(), 0);
    EXPECT_EQ(std::string(m_type), m_certificate.keyType);
}

}  // namespace
