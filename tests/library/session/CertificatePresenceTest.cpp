#include "SessionTest.h"
#include "foundation/Text.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr char kScanCert[] = "box/hlvqDev000000000000000000";
constexpr int kFailure = 77;

class CertificatePresenceTest : public SessionTest {
protected:
    // The text under which a host remembers the certificate.
    static std::string TextOf(const std::string& certId) {
        return Base64Encode("DER of " + certId);
    }
    static int Check(const std::string& text) {
        return CheckIsCertExist(reinterpret_cast<const unsigned char*>(text.data()),
                                static_cast<int>(text.size()));
    }
    static int CheckCert(const std::string& certId) { return Check(TextOf(certId)); }
    static int SelectedLength() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length;
    }
    // The one certificate of the cloud is chosen, so that its label stands.
    static void ChooseFromCloud() {
        fakes::AddCertificate("翠枫证书", "cloud");
        char type[261] = {};
        ASSERT_EQ(GetCertType(type), 0);
    }
    static std::string Fetch(int length) {
        std::string text(static_cast<std::size_t>(length), '?');
        EXPECT_EQ(GetCertBase64Data(reinterpret_cast<unsigned char*>(text.data()), &length), 0);
        return text;
    }
};

TEST_F(CertificatePresenceTest, TheSelectedCertificateIsPresent) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    SetCurrentCertID("cert-2");
    EXPECT_EQ(CheckCert("cert-2"), 0);
    EXPECT_THAT(Log(6), Contains("6 certId : cert-1 , strCert : " + TextOf("cert-1")));
    EXPECT_THAT(Log(6), Contains("6 certId : cert-2 , strCert : " + TextOf("cert-2")));
}

TEST_F(CertificatePresenceTest, AnotherCertificateIsPresentButNotInUse) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    SetCurrentCertID("cert-2");
    EXPECT_EQ(CheckCert("cert-1"), TESMARK_CERT_NOT_IN_USE);
    SetCurrentCertID(nullptr);
    EXPECT_EQ(CheckCert("cert-1"), TESMARK_CERT_NOT_IN_USE);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(CertificatePresenceTest, ACertificateOnNoKeyIsNotInUse) {
    fakes::AddCertificate("one", "cert-1");
    SetCurrentCertID("cert-9");
    EXPECT_EQ(CheckCert("cert-9"), TESMARK_CERT_NOT_IN_USE);
    EXPECT_EQ(Check(""), TESMARK_CERT_NOT_IN_USE);
}

TEST_F(CertificatePresenceTest, TheWholeTextIsComparedWithRegardToCase) {
    fakes::AddCertificate("one", "cert-1");
    SetCurrentCertID("cert-1");
    const std::string text = TextOf("cert-1");
    std::string lower = text;
    lower[0] ^= 0x20;
    for (const std::string& other : {lower, text + "\n", text.substr(0, text.size() - 1),
                                     text.substr(0, 4) + "\r\n" + text.substr(4), text + '\0'}) {
        EXPECT_EQ(Check(other), TESMARK_CERT_NOT_IN_USE);
    }
    EXPECT_EQ(Check(text), 0);
}

TEST_F(CertificatePresenceTest, AListThatCannotBeHadIsTheResult) {
    EXPECT_EQ(CheckCert("cert-1"), TESMARK_NO_KEY);
}

TEST_F(CertificatePresenceTest, AServiceThatCannotStartIsTheResult) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(CheckCert("cert-1"), TESMARK_SERVICE_NOT_FOUND);
    int length = -7;
    EXPECT_EQ(GetCertBase64Data(nullptr, &length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(length, -7);
}

TEST_F(CertificatePresenceTest, ATextWithoutBytesIsTheStringTypesFailure) {
    EXPECT_EQ(StringFailureOf([] { CheckIsCertExist(nullptr, 4); }),
              StringFailure::kInvalidArgument);
    const unsigned char text[] = "text";
    EXPECT_EQ(StringFailureOf([&] { CheckIsCertExist(text, -1); }),
              StringFailure::kInvalidArgument);
}

TEST_F(CertificatePresenceTest, AListWithoutAUsableIdentifierIsZero) {
    fakes::AddCertificate("label", "box/hlvqDev123");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(CheckCert("cert-1"), 0);
    EXPECT_FALSE(Called("SOF_ExportUserCert"));
}

TEST_F(CertificatePresenceTest, TheStatusTellsOfTheLastCertificate) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    fakes::On("SOF_ExportUserCert").ReturnsAt(1, kFailure);
    EXPECT_EQ(CheckCert("none"), TESMARK_CERT_NOT_IN_USE);
    EXPECT_THAT(Log(6), Contains("6 certId : cert-1 , strCert : "));
    fakes::ClearCalls();
    fakes::On("SOF_ExportUserCert") = {};
    fakes::On("SOF_ExportUserCert").ReturnsAt(3, kFailure);
    EXPECT_EQ(CheckCert("none"), TESMARK_CERT_EXPORT_FAILED);
    fakes::On("SOF_ExportUserCert") = {};
    fakes::On("SOF_Base64Encode").Returns(kFailure);
    EXPECT_EQ(CheckCert("none"), TESMARK_BASE64_FAILED);
}

TEST_F(CertificatePresenceTest, AScansCertificateIsSelectedAfterALoginWhereNothingIs) {
    fakes::AddCertificate("scan", kScanCert);
    EXPECT_EQ(CheckCert(kScanCert), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Login"),
                ElementsAre(testing::HasSubstr("HLVQDefaultContainer/hlvqDev000000000000000000")));
    EXPECT_EQ(SelectedCert(), kScanCert);
}

TEST_F(CertificatePresenceTest, AFailedLoginLeavesTheScansCertificateUnselected) {
    fakes::AddCertificate("scan", kScanCert);
    fakes::On("SOF_Login").Returns(kFailure);
    EXPECT_EQ(CheckCert(kScanCert), TESMARK_LOGIN_FAILED);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(CertificatePresenceTest, AScansCertificateTakesThePlaceOfAnotherOneOfTheScan) {
    fakes::AddCertificate("scan", kScanCert);
    SetCurrentCertID("other/hlvqDev123");
    EXPECT_EQ(CheckCert(kScanCert), 0);
    EXPECT_FALSE(Called("SOF_Login"));
    EXPECT_EQ(SelectedCert(), kScanCert);
}

TEST_F(CertificatePresenceTest, AScansCertificateIsNotInUseWhereAnOrdinaryOneIsSelected) {
    fakes::AddCertificate("scan", kScanCert);
    SetCurrentCertID("cert-1");
    EXPECT_EQ(CheckCert(kScanCert), TESMARK_CERT_NOT_IN_USE);
    EXPECT_FALSE(Called("SOF_Login"));
    EXPECT_EQ(SelectedLength(), 6);
}

TEST_F(CertificatePresenceTest,
       AfterACloudLabelTheFirstCheckAsksDirectlyAndTheSecondGoesThroughTheList) {
    ChooseFromCloud();
    fakes::ClearCalls();
    EXPECT_EQ(CheckCert("cloud"), 0);
    EXPECT_FALSE(Called("SOF_GetUserList"));
    EXPECT_EQ(CheckCert("cloud"), 0);
    EXPECT_TRUE(Called("SOF_GetUserList"));
}

TEST_F(CertificatePresenceTest, AfterACloudLabelAnotherTextGoesThroughTheListAtOnce) {
    ChooseFromCloud();
    fakes::AddCertificate("two", "cert-2");
    fakes::ClearCalls();
    EXPECT_EQ(CheckCert("cert-2"), TESMARK_CERT_NOT_IN_USE);
    EXPECT_EQ(fakes::CallTexts("SOF_ExportUserCert").front(),
              "SOF_ExportUserCert(ctx, \"cloud\", size?)");
    EXPECT_TRUE(Called("SOF_GetUserList"));
    EXPECT_EQ(SelectedCert(), "cloud");
}

TEST_F(CertificatePresenceTest, ACloudCertificateThatCannotBeReadGoesThroughTheList) {
    ChooseFromCloud();
    fakes::ClearCalls();
    fakes::On("SOF_ExportUserCert").ReturnsAt(1, kFailure);
    EXPECT_EQ(CheckCert("cloud"), 0);
    EXPECT_TRUE(Called("SOF_GetUserList"));
}

TEST_F(CertificatePresenceTest, TheTextOfTheSelectedCertificateIsKeptBetweenQueryAndFetch) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    int length = 0;
    EXPECT_EQ(GetCertBase64Data(nullptr, &length), 0);
    const std::string text = TextOf("cert-1");
    EXPECT_EQ(length, static_cast<int>(text.size()));
    fakes::ClearCalls();
    EXPECT_EQ(Fetch(length), text);
    EXPECT_EQ(Fetch(length + 2), text + std::string(2, '\0'));
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(CertificatePresenceTest, AFetchWithoutACacheTellsTheLengthAndLeavesTheBuffer) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    unsigned char buffer[4] = "abc";
    int length = 3;
    EXPECT_EQ(GetCertBase64Data(buffer, &length), 0);
    EXPECT_EQ(length, static_cast<int>(TextOf("cert-1").size()));
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "abc");
}

TEST_F(CertificatePresenceTest, AQueryReadsTheTextAnew) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "certificate-2");
    SetCurrentCertID("cert-1");
    int length = 0;
    ASSERT_EQ(GetCertBase64Data(nullptr, &length), 0);
    SetCurrentCertID("certificate-2");
    ASSERT_EQ(GetCertBase64Data(nullptr, &length), 0);
    EXPECT_EQ(Fetch(length), TextOf("certificate-2"));
}

TEST_F(CertificatePresenceTest, EachEndOfASelectionDropsTheText) {
    fakes::AddCertificate("label", "cert-1");
    using End = void (*)();
    for (const End end :
         {End([] { ResetEsealData(); }), End([] { ClearSelectKeyID(); }), End([] { Logout(); })}) {
        SetCurrentCertID("cert-1");
        int length = 0;
        ASSERT_EQ(GetCertBase64Data(nullptr, &length), 0);
        end();
        unsigned char buffer[4] = "abc";
        length = 3;
        EXPECT_EQ(GetCertBase64Data(buffer, &length), 0);
        EXPECT_STREQ(reinterpret_cast<char*>(buffer), "abc");
        EXPECT_EQ(length, static_cast<int>(TextOf("cert-1").size()));
    }
}

TEST_F(CertificatePresenceTest, WithoutASelectionTheCertificateIsChosen) {
    fakes::AddCertificate("label", "cert-1");
    int length = 0;
    EXPECT_EQ(GetCertBase64Data(nullptr, &length), 0);
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(Fetch(length), TextOf("cert-1"));
}

TEST_F(CertificatePresenceTest, AFailedChoiceIsTheResult) {
    int length = -7;
    EXPECT_EQ(GetCertBase64Data(nullptr, &length), TESMARK_NO_KEY);
    EXPECT_EQ(length, -7);
}

TEST_F(CertificatePresenceTest, ACertificateThatCannotBeReadLeavesTheSelectionAndTheLength) {
    SetCurrentCertID("cert-1");
    int length = -7;
    EXPECT_EQ(GetCertBase64Data(nullptr, &length), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(length, -7);
    EXPECT_EQ(SelectedLength(), 6);
}

TEST_F(CertificatePresenceTest, TheScopesOfBothStandInTheLog) {
    CheckCert("cert-1");
    EXPECT_EQ(Log().front(), "8 [CheckIsCertExist start]");
    ForgetLog();
    int length = 0;
    GetCertBase64Data(nullptr, &length);
    EXPECT_EQ(Log().front(), "8 [GetCertBase64Data start]");
}

}  // namespace
