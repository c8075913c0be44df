// Whether a seal in a key may be used, as the sample service says it to the library with the open
// seal library.

#include "library/bridge/ExportCalls.h"
#include "platform/Files.h"
#include "road/RoadTest.h"
#include "tests/tools/sealserver/OnlineSeals.h"

namespace {

constexpr int kStatusUnreachable = 0x0C000072;
constexpr int kStatusUnknown = 0x0C000074;
constexpr int kStatusSuspended = 0x0C000075;

class SealStatusRoadTest : public RoadTest {
protected:
    SealStatusRoadTest() {
        m_certId = MakeKey(KeyKind::kSm2, "signer");
        EXPECT_EQ(m_keys.ExportCertificate(m_certId, m_certificate), 0);
        m_seal = MadeSeal(SealForm::kGb2020, Authority(KeyKind::kSm2), m_certificate);
        EXPECT_EQ(m_keys.WriteFile(m_certId, "GBESEAL01", m_seal), 0);
    }

    // What is set counts from the next start of the service on.
    void AskForStatusAt(const std::string& address) {
        m_prefix.SetNumber("ReqEsealStatus", 1);
        m_prefix.SetText("sEsealStateUrl", address);
        EXPECT_EQ(Login(m_certId), 0);
    }

    OnlineSeals m_service{platform::Utf8FromPath(InPrefix("seals.db"))};
    std::string m_certId;
    std::string m_certificate;
    std::string m_seal;
};

TEST_F(SealStatusRoadTest, ASealInTheKeyIsUsableWhileTheServiceSaysSo) {
    AskForStatusAt(m_service.Address());
    EXPECT_EQ(Picture().code, kStatusUnknown);
    const std::int64_t id = m_service.Offer(m_certificate, m_seal);
    EXPECT_EQ(Picture().bytes, SealPicture());
    ClearSelectKeyID();
    m_service.Suspend(id);
    EXPECT_EQ(Picture().code, kStatusSuspended);
}

TEST_F(SealStatusRoadTest, WithoutTheStatusServiceNoSealIsUsable) {
    AskForStatusAt("http://127.0.0.1:1/QelmServlet");
    EXPECT_EQ(Picture().code, kStatusUnreachable);
}

}  // namespace
