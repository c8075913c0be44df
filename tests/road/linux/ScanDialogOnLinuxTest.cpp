// Scans that need a choice: the library asks in its dialogs, which a program shows.

#include <filesystem>

#include "components/certservice/ScanDevice.h"
#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/closed/SealLibrary.h"
#include "road/PhoneRoad.h"
#include "support/linux/DialogUser.h"

namespace {

constexpr char kData[] = "the bytes of the document";

// A phone with two seals: in the dialog the root is the first node, the ES seal the second, the
// national one the third.
class ScanDialogOnLinux : public PhoneRoad {
protected:
    ScanDialogOnLinux() {
        MakePhone(KeyKind::kSm2);
        Bring("ESEAL1", MadeEsSeal());
        BringGmSeal("SEAL01");
    }
    void LetUser(const std::string& acts) const { LetUserAct(InPrefix("user"), 104, acts); }
    bool WasShown() const { return std::filesystem::exists(InPrefix("user.shown")); }
};

TEST_F(ScanDialogOnLinux, OfTwoSealsThePickedOneIsDeliveredAndSigns) {
    LetUser(PicksNode(3) + PressesOk());
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_EQ(Selected(), kScanCertId);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    const std::string text = Base64Encode(kData);
    EXPECT_EQ(TVK_Verify_SES_Sign(AsBytes(signature.bytes), AsLength(signature.bytes),
                                  AsBytes(text), AsLength(text)),
              0);
}

TEST_F(ScanDialogOnLinux, TheOtherSealGivesItsOwnMode) {
    LetUser(PicksNode(3) + PicksNode(2) + PressesOk());
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(ScanDialogOnLinux, ACancelledDialogLeavesThePhoneLoggedIn) {
    LetUser(PicksNode(3) + PressesCancel());
    EXPECT_EQ(Picture().code, -3004);
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Files(), "ESEAL1&&&SEAL01&&&");
}

TEST_F(ScanDialogOnLinux, WithoutAPickThereIsNoPictureAndNoFailure) {
    LetUser(PressesOk());
    int length = 77;
    EXPECT_EQ(GetSealInfo(nullptr, &length), 0);
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(length, 77);
}

TEST_F(ScanDialogOnLinux, BesideAKeyThePhoneIsPickedAndThenScannedWith) {
    ASSERT_EQ(m_phone.WriteFile("DevKeys/zhang", "ESEAL1", MadeEsSeal()), 0);
    std::filesystem::remove(KeyPath("DevKeys/.scan/zhang") + "/files/SEAL01");
    const std::string key = MakeKey(KeyKind::kSm2, "key");
    AddSeal(key, SealForm::kGb2020);
    // The root, the key, its seal, the phone.
    LetUser(PicksNode(4) + PressesOk());
    EXPECT_EQ(Picture().bytes, SealPicture());
    EXPECT_EQ(Selected(), kScanCertId);
    EXPECT_EQ(GetEsealMode(), 0);
}

}  // namespace
