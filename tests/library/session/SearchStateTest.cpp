// What SetCertSeal leaves alone, as no export tells it.
#include "FlowTest.h"
#include "foundation/Text.h"
#include "session/Selection.h"

namespace {

class SearchStateTest : public FlowTest {
protected:
    // A former selection, of which nothing is in the keys.
    SearchStateTest() {
        g_currentCertId.Assign("old cert");
        g_selectedSeal.Assign("old seal");
        g_selectedSealName.Assign("old name");
        g_sealInfoCache.Assign("old picture");
        g_certBase64Data.Assign("old text");
        g_sealPicWidth = 30;
        g_sealPicHeight = 20;
        g_selectedSealIndex = 4;
        fakes::AddCertificate("label", "cert-1").serial = "01AB";
        fakes::AddFile("cert-1", "SEAL01", "national seal");
        fakes::AddNationalSeal("national seal", "name", "picture");
    }

    static int Search(const std::string& serial, const std::string& sealBase64, int mode) {
        return session::SetCertSeal(Bytes(serial), static_cast<int>(serial.size()),
                                    Bytes(sealBase64), static_cast<int>(sealBase64.size()), mode);
    }
    static void ExpectTheRestAsItWas() {
        EXPECT_EQ(g_selectedSealName.View(), "old name");
        EXPECT_EQ(g_sealPicWidth, 30);
        EXPECT_EQ(g_sealPicHeight, 20);
        EXPECT_EQ(g_sealInfoCache.View(), "old picture");
        EXPECT_EQ(g_certBase64Data.View(), "old text");
        EXPECT_EQ(g_selectedSealIndex, 4);
    }

private:
    static const unsigned char* Bytes(const std::string& text) {
        return reinterpret_cast<const unsigned char*>(text.data());
    }
};

TEST_F(SearchStateTest, ASealThatIsFoundLeavesNameSizeAndPictureOfTheFormerOne) {
    EXPECT_EQ(Search("01AB", Base64Encode("national seal"), 2), 0);
    EXPECT_EQ(g_currentCertId.View(), "cert-1");
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_esealMode, 1);
    ExpectTheRestAsItWas();
}

TEST_F(SearchStateTest, ACertificateThatIsFoundAloneLeavesTheSealToo) {
    EXPECT_EQ(Search("01AB", Base64Encode("national seal"), 0), 0);
    EXPECT_EQ(g_currentCertId.View(), "cert-1");
    EXPECT_EQ(g_selectedSeal.View(), "old seal");
    EXPECT_EQ(g_esealMode, 0);
    ExpectTheRestAsItWas();
}

TEST_F(SearchStateTest, TheOnlineSourceChangesModeAndSealAlone) {
    m_prefix.SetNumber("bSealPosition", 1);
    EXPECT_EQ(Search("01AB", Base64Encode("online seal"), 2), 0);
    EXPECT_EQ(g_currentCertId.View(), "old cert");
    EXPECT_EQ(g_selectedSeal.View(), "online seal");
    EXPECT_EQ(g_esealMode, 2);
    ExpectTheRestAsItWas();
}

TEST_F(SearchStateTest, PositionThreeChangesTheModeAlone) {
    m_prefix.SetNumber("bSealPosition", 3);
    EXPECT_EQ(Search("01AB", Base64Encode("national seal"), 2), 0);
    EXPECT_EQ(g_currentCertId.View(), "old cert");
    EXPECT_EQ(g_selectedSeal.View(), "old seal");
    EXPECT_EQ(g_esealMode, 2);
    EXPECT_FALSE(Called("SOF_GetUserList"));
    ExpectTheRestAsItWas();
}

}  // namespace
