// Seals of the online seal service and their status, with the sample service behind the library.

#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/closed/SealLibrary.h"
#include "road/RoadTest.h"
#include "support/NoProxy.h"
#include "tests/tools/sealserver/RunningServer.h"
#include "tools/sealserver/Administration.h"

namespace {

constexpr char kData[] = "the bytes of the document";
constexpr int kNoSeal = -3052;
constexpr int kStatusUnreachable = 0x0C000072;
constexpr int kStatusUnknown = 0x0C000074;
constexpr int kStatusSuspended = 0x0C000075;

class OnlineRoadTest : public RoadTest {
protected:
    OnlineRoadTest() {
        m_certId = MakeKey(KeyKind::kSm2, "online");
        EXPECT_EQ(m_keys.ExportCertificate(m_certId, m_certificate), 0);
    }

    std::string Address() const { return m_running.Address() + kServicePath; }
    // Entered as an administrator would: by the certificate's file.
    std::int64_t Enter(const std::string& seal) {
        return EnterSeal(m_store, EnterCertificate(m_store, m_certificate, "", ""), {seal, "", ""});
    }
    std::string Gb2020Seal() {
        return MadeSeal(SealForm::kGb2020, Authority(KeyKind::kSm2), m_certificate);
    }
    // What is set counts from the next start of the service on.
    void GoOnline() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", Address());
        EXPECT_EQ(Login(m_certId), 0);
    }
    void AskForStatusAt(const std::string& address) {
        m_prefix.SetNumber("ReqEsealStatus", 1);
        m_prefix.SetText("sEsealStateUrl", address);
        EXPECT_EQ(Login(m_certId), 0);
    }

    const NoProxy m_noProxy;
    SealStore m_store{InPrefix("seals.db")};
    RunningServer m_running{{}, m_store, ""};
    std::string m_certId;
    std::string m_certificate;
};

TEST_F(OnlineRoadTest, ASealOfTheServiceIsShownAndSignsAndTheSignatureVerifies) {
    Enter(Gb2020Seal());
    GoOnline();
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 1);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    const std::string text = Base64Encode(kData);
    EXPECT_EQ(TVK_Verify_SES_Sign(AsBytes(signature.bytes), AsLength(signature.bytes),
                                  AsBytes(text), AsLength(text)),
              0);
}

TEST_F(OnlineRoadTest, AnEsSealOfTheServiceIsShown) {
    Enter(MadeEsSeal());
    GoOnline();
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(OnlineRoadTest, WhatTheServiceDoesNotGiveOutIsNoSeal) {
    GoOnline();
    EXPECT_EQ(Picture().code, kNoSeal);
    m_store.SetSuspended(Enter(Gb2020Seal()), true);
    EXPECT_EQ(Login(m_certId), 0);
    EXPECT_EQ(Picture().code, kNoSeal);
}

TEST_F(OnlineRoadTest, ASealInTheKeyIsUsableWhileTheServiceSaysSo) {
    const std::string seal = Gb2020Seal();
    ASSERT_EQ(m_keys.WriteFile(m_certId, "GBESEAL01", seal), 0);
    AskForStatusAt(Address());
    EXPECT_EQ(Picture().code, kStatusUnknown);
    const std::int64_t id = Enter(seal);
    EXPECT_EQ(Picture().bytes, SealPicture());
    ClearSelectKeyID();
    m_store.SetSuspended(id, true);
    EXPECT_EQ(Picture().code, kStatusSuspended);
}

TEST_F(OnlineRoadTest, WithoutTheStatusServiceNoSealIsUsable) {
    ASSERT_EQ(m_keys.WriteFile(m_certId, "GBESEAL01", Gb2020Seal()), 0);
    AskForStatusAt("http://127.0.0.1:1/QelmServlet");
    EXPECT_EQ(Picture().code, kStatusUnreachable);
}

}  // namespace
