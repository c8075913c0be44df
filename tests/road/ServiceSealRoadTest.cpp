// A stamp with a seal of the online seal service: the library, the open transport, the sample
// service on the loopback address, the open seal library.

#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/Files.h"
#include "platform/closed/SealLibrary.h"
#include "road/RoadTest.h"
#include "support/LoopbackServer.h"
#include "tests/tools/sealserver/OnlineSeals.h"

namespace {

constexpr char kData[] = "the bytes of the document";

int Verify(const std::string& data, const std::string& signature) {
    return P7VerifyData(AsBytes(data), AsLength(data), AsBytes(signature), AsLength(signature));
}

class ServiceSealRoadTest : public RoadTest {
protected:
    ServiceSealRoadTest() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", m_service.Address());
    }

    void MakeSigner(KeyKind kind) {
        m_certId = MakeKey(kind, "signer");
        ASSERT_EQ(m_keys.ExportCertificate(m_certId, m_certificate), 0);
        ASSERT_EQ(Login(m_certId), 0);
    }
    std::int64_t Offer(SealForm form, KeyKind kind) {
        return m_service.Offer(m_certificate, MadeSeal(form, Authority(kind), m_certificate));
    }
    static std::string Selected() {
        return InTwoSteps(
                   [](unsigned char* out, int* outLen) { return GetSelectedCertId(out, outLen); })
            .bytes;
    }
    void ExpectSize(int wantedWidth, int wantedHeight) const {
        int width = -1;
        int height = -1;
        EXPECT_EQ(GetSealPicSize(&width, &height), 0);
        EXPECT_EQ(width, wantedWidth);
        EXPECT_EQ(height, wantedHeight);
    }

    OnlineSeals m_service{platform::Utf8FromPath(InPrefix("seals.db"))};
    std::string m_certId;
    std::string m_certificate;
};

struct Kind {
    const char* name;
    SealForm form;
    KeyKind kind;
};

class SealOfServiceRoadTest : public ServiceSealRoadTest, public testing::WithParamInterface<Kind> {
protected:
    SealOfServiceRoadTest() {
        MakeSigner(GetParam().kind);
        Offer(GetParam().form, GetParam().kind);
    }
};

TEST_P(SealOfServiceRoadTest, PictureAndSizeAreTheSealsAndTheModeIsOne) {
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 1);
    ExpectSize(40, 30);
}

TEST_P(SealOfServiceRoadTest, TheSealSignatureIsAcceptedAndOverOtherDataIsNot) {
    ASSERT_EQ(Picture().code, 0);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(Verify(kData, signature.bytes), 0);
    std::string changed = kData;
    changed.back() ^= 1;
    EXPECT_NE(Verify(changed, signature.bytes), 0);
}

TEST_P(SealOfServiceRoadTest, TheSealSignatureOfAFileIsAccepted) {
    ASSERT_EQ(Picture().code, 0);
    const std::string path = WriteFile("document.pdf", std::string(300'000, 'x'));
    const Handed signature = SignP7File(path);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(TVK_Verify_SES_Sign_BigFile(AsBytes(signature.bytes), AsLength(signature.bytes),
                                          path.c_str()),
              0);
}

INSTANTIATE_TEST_SUITE_P(Forms, SealOfServiceRoadTest,
                         testing::Values(Kind{"Gb2020Sm2", SealForm::kGb2020, KeyKind::kSm2},
                                         Kind{"Gm2014Sm2", SealForm::kGm2014, KeyKind::kSm2},
                                         Kind{"Gb2020Rsa", SealForm::kGb2020, KeyKind::kRsa}),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_F(ServiceSealRoadTest, AnEsSealGivesAMessageThatOpenSslAccepts) {
    MakeSigner(KeyKind::kRsa);
    m_service.Offer(m_certificate, MadeEsSeal());
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 0);
    ExpectSize(0, 0);
    const Handed message = SignP7(kData);
    ASSERT_EQ(message.code, 0);
    EXPECT_TRUE(CmsAccepts(message.bytes, WriteFile("document.pdf", kData)));
}

TEST_F(ServiceSealRoadTest, WithNothingSelectedTheOnlyCertificateIsAskedFor) {
    MakeSigner(KeyKind::kSm2);
    Offer(SealForm::kGb2020, KeyKind::kSm2);
    ClearSelectKeyID();
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(Selected(), m_certId);
}

TEST_F(ServiceSealRoadTest, WithoutATestSignatureTheKeyIsNotTouched) {
    MakeSigner(KeyKind::kSm2);
    Offer(SealForm::kGb2020, KeyKind::kSm2);
    ASSERT_EQ(Logout(), 0);
    SetGetStampPictureMode(0);
    EXPECT_EQ(Picture().bytes, SealPicture());
}

TEST_F(ServiceSealRoadTest, ASealThatIsSuspendedOrWasNeverThereEndsTheSelection) {
    MakeSigner(KeyKind::kSm2);
    EXPECT_EQ(Picture().code, -3052);
    EXPECT_EQ(Selected(), "");
    m_service.Suspend(Offer(SealForm::kGb2020, KeyKind::kSm2));
    SetCurrentCertID(m_certId.c_str());
    EXPECT_EQ(Picture().code, -3052);
    EXPECT_EQ(Selected(), "");
}

TEST_F(ServiceSealRoadTest, OfTwoSealsNoneIsPickedSinceItsDialogCannotBeShown) {
    MakeSigner(KeyKind::kSm2);
    Offer(SealForm::kGb2020, KeyKind::kSm2);
    m_service.Offer(m_certificate, MadeEsSeal());
    EXPECT_EQ(Picture().code, -2);
    EXPECT_EQ(Selected(), "");
}

TEST_F(ServiceSealRoadTest, ASealOfAMakerThatNobodyTrustsIsRefused) {
    MakeSigner(KeyKind::kSm2);
    int code = 0;
    const auto stranger =
        DevelopmentCa::Open(KeyKind::kSm2, InPrefix("stranger"), InPrefix("elsewhere"), code);
    ASSERT_NE(stranger, nullptr);
    m_service.Offer(m_certificate, MadeSeal(SealForm::kGb2020, *stranger, m_certificate));
    EXPECT_NE(Picture().code, 0);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(ServiceSealRoadTest, WithoutAnAddressAndWithoutAServerThereIsNoSeal) {
    MakeSigner(KeyKind::kSm2);
    m_prefix.SetText("sWSURL", "");
    EXPECT_EQ(Picture().code, -3041);
    m_prefix.SetText("sWSURL", LoopbackServer::DeadUrl("/QelmServlet"));
    SetCurrentCertID(m_certId.c_str());
    EXPECT_EQ(Picture().code, 0x0E000011);
}

}  // namespace
