#include <ctime>
#include <filesystem>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/ServiceSettings.h"
#include "library/bridge/ExportCalls.h"
#include "road/RoadTest.h"
#include "support/LoopbackServer.h"
#include "support/ShownBoxes.h"

namespace {

constexpr char kData[] = "the bytes of the document";
constexpr std::time_t kDay = 86'400;

// What ends the road of one stamp. Without a pinentry nobody is asked.
class RefusalTest : public RoadTest {
protected:
    RefusalTest() { SetServicePath("PinentryProgram", InPrefix("no-pinentry")); }
    ~RefusalTest() override { UnInitKVLLib(); }

    std::string SelectedRsaKey(const CertificateRequest& request = {},
                               const DevelopmentCa* authority = nullptr) {
        const std::string certId = MakeKey(KeyKind::kRsa, "rsa", request, authority);
        EXPECT_EQ(Login(certId), 0);
        return certId;
    }
};

TEST_F(RefusalTest, WithoutAnyKeyFolderThereIsNoKey) {
    std::filesystem::remove_all(InPrefix("keys"));
    EXPECT_EQ(Picture().code, TESMARK_NO_KEY);
}

TEST_F(RefusalTest, WithoutACertificateThereIsNone) { EXPECT_EQ(Picture().code, TESMARK_NO_CERT); }

TEST_F(RefusalTest, WithoutALoginThereIsNobodyToAskForThePin) {
    const std::string certId = MakeKey(KeyKind::kRsa, "rsa");
    SetCurrentCertID(certId.c_str());
    EXPECT_EQ(SignP1(kData).code, kServicePinUnavailable);
}

TEST_F(RefusalTest, AWrongPinIsAFailedLoginAndSelectsNothing) {
    const std::string certId = MakeKey(KeyKind::kRsa, "rsa");
    EXPECT_EQ(Login(certId, "wrong"), TESMARK_LOGIN_FAILED);
    OutPair out;
    EXPECT_EQ(P1Sign(kData, out.buffer, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
}

TEST_F(RefusalTest, ALockedKeyRefusesTheRightPinAndTheSignature) {
    const std::string certId = MakeKey(KeyKind::kRsa, "rsa");
    for (int i = 0; i < kPinTries; ++i) {
        EXPECT_EQ(Login(certId, "wrong"), TESMARK_LOGIN_FAILED);
    }
    EXPECT_EQ(Login(certId), TESMARK_LOGIN_FAILED);
    SetCurrentCertID(certId.c_str());
    EXPECT_EQ(SignP1(kData).code, kServiceKeyLocked);
}

TEST_F(RefusalTest, AKeyPulledBetweenQueryAndFetchFailsTheFetchAndEndsTheSelection) {
    const std::string certId = SelectedRsaKey();
    AddEsSeal(certId);
    ASSERT_EQ(Picture().code, 0);
    OutPair size;
    ASSERT_EQ(P7Sign(kData, "", nullptr, &size.length), 0);
    std::filesystem::remove_all(KeyPath(certId));
    std::string message(static_cast<std::size_t>(size.length), '\x7F');
    auto* const out = reinterpret_cast<unsigned char*>(message.data());
    int length = size.length;
    EXPECT_EQ(P7Sign(kData, "", out, &length), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(message, std::string(message.size(), '\x7F'));
    OutPair after;
    EXPECT_EQ(P7Sign(kData, "", after.buffer, &after.length), 0);
    EXPECT_TRUE(after.Untouched());
}

TEST_F(RefusalTest, ADamagedCertificateCantBeExported) {
    const std::string certId = SelectedRsaKey();
    UnInitKVLLib();
    WriteFile("keys/rsa/certificate.pem", "no certificate");
    EXPECT_EQ(SignP1(kData).code, TESMARK_CERT_EXPORT_FAILED);
}

TEST_F(RefusalTest, AnExpiredCertificateSignsNothing) {
    CertificateRequest request;
    request.notBefore = std::time(nullptr) - 30 * kDay;
    request.notAfter = std::time(nullptr) - kDay;
    SelectedRsaKey(request);
    EXPECT_EQ(SignP1(kData).code, TESMARK_CERT_EXPIRED);
    EXPECT_EQ(SignP7(kData).code, TESMARK_CERT_EXPIRED);
}

TEST_F(RefusalTest, ACertificateOfTomorrowSignsNothing) {
    CertificateRequest request;
    request.notBefore = std::time(nullptr) + kDay;
    SelectedRsaKey(request);
    EXPECT_EQ(SignP1(kData).code, TESMARK_CERT_EXPIRED);
}

TEST_F(RefusalTest, ACertificateOfAStrangerSignsNothing) {
    CertificateRequest name;
    name.commonName = "Stranger";
    const auto stranger = DevelopmentCa::Make(KeyKind::kRsa, name);
    SelectedRsaKey({}, stranger.get());
    EXPECT_EQ(SignP1(kData).code, TESMARK_NOT_TRUSTED);
    EXPECT_EQ(SignP7(kData).code, TESMARK_NOT_TRUSTED);
}

// A key whose certificate names a revocation list, with the check of lists switched on.
class RevocationTest : public RefusalTest {
protected:
    RevocationTest() { m_prefix.SetNumber("bVerifyCRL", 1); }

    void Select(const std::string& url) {
        CertificateRequest request;
        request.serial = "1A2B";
        request.distributionPoint = url;
        AddEsSeal(SelectedRsaKey(request));
    }
    std::string List(const std::string& serial) {
        const std::time_t now = std::time(nullptr);
        return Authority(KeyKind::kRsa).RevocationList({{serial, now - 60}}, now - 60, now + kDay);
    }
};

TEST_F(RevocationTest, ARevokedCertificateSignsNothing) {
    const LoopbackServer server(
        [list = List("1A2B")](const std::string&) { return LoopbackServer::Page("200 OK", list); });
    Select(server.Url("/ca.crl"));
    EXPECT_EQ(SignP1(kData).code, TESMARK_CERT_REVOKED);
    EXPECT_EQ(SignP7(kData).code, TESMARK_CERT_REVOKED);
    EXPECT_EQ(server.Requests().size(), 1u);
}

TEST_F(RevocationTest, ACertificateThatTheListLacksSigns) {
    const LoopbackServer server(
        [list = List("1A2C")](const std::string&) { return LoopbackServer::Page("200 OK", list); });
    Select(server.Url("/ca.crl"));
    EXPECT_EQ(SignP1(kData).code, 0);
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(SignP7(kData).code, 0);
}

TEST_F(RevocationTest, UnderAForgedListNothingIsSigned) {
    std::string list = List("1A2C");
    list.back() ^= 1;
    const LoopbackServer server(
        [list](const std::string&) { return LoopbackServer::Page("200 OK", list); });
    Select(server.Url("/ca.crl"));
    EXPECT_EQ(SignP1(kData).code, TESMARK_NOT_TRUSTED);
    EXPECT_EQ(SignP7(kData).code, TESMARK_NOT_TRUSTED);
}

TEST_F(RevocationTest, WithTheServerDownTheSignatureGoesOn) {
    Select(LoopbackServer::DeadUrl("/ca.crl"));
    ShownBoxes boxes;
    EXPECT_EQ(SignP1(kData).code, 0);
    EXPECT_FALSE(boxes.Take().empty());
}

TEST_F(RevocationTest, WithoutTheSettingNobodyIsAskedForAList) {
    m_prefix.SetNumber("bVerifyCRL", 0);
    const LoopbackServer server(
        [list = List("1A2B")](const std::string&) { return LoopbackServer::Page("200 OK", list); });
    Select(server.Url("/ca.crl"));
    EXPECT_EQ(SignP1(kData).code, 0);
    EXPECT_TRUE(server.Requests().empty());
}

}  // namespace
