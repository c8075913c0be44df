#include "ScanTest.h"
#include "session/Selection.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ScanFlowTest : public ScanTest {
protected:
    // The calls from the first login on, and the logout ahead of it.
    static std::vector<std::string> CallsOfTheScan() {
        const std::vector<std::string> all = fakes::CalledFunctions();
        return {std::find(all.begin(), all.end(), "SOF_Logout"), all.end()};
    }
};

TEST_F(ScanFlowTest, TheOneEntryOfTheScanIsScannedWithoutADialogWhateverItsSeals) {
    fakes::AddFile(kScanCert, "HLVQSEAL", "picture");
    ASSERT_EQ(EnsureServiceReady(), 0);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, 7);
    EXPECT_THAT(CallsOfTheScan(), ElementsAre("SOF_Logout", "SOF_Login", "EnumFilesInDevice",
                                              "EnumFilesInDevice", "SOF_ReadFile", "SOF_ReadFile"));
    EXPECT_EQ(SentPin(), Pin(""));
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_EQ(g_selectedSealIndex, 0);
    EXPECT_EQ(g_sealInfoCache.View(), "picture");
    EXPECT_EQ(g_sealFlowBusy, 0);
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
    EXPECT_THAT(ScanFailures(), IsEmpty());
}

TEST_F(ScanFlowTest, TheFetchDoesNotScanAgain) {
    PhoneLeaves({{"HLVQSEAL", "picture"}});
    ASSERT_EQ(Query(), 0);
    unsigned char picture[8] = {};
    EXPECT_EQ(session::GetSealInfo(picture, &m_length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "picture");
    EXPECT_EQ(fakes::CountCalls("SOF_Login"), 1);
}

TEST_F(ScanFlowTest, ABufferWithoutACacheIsFilledByTheScan) {
    PhoneLeaves({{"HLVQSEAL", "picture"}});
    unsigned char picture[8] = {};
    m_length = 1;
    EXPECT_EQ(session::GetSealInfo(picture, &m_length), 0);
    EXPECT_EQ(m_length, 7);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "picture");
}

TEST_F(ScanFlowTest, AFailedLoginEndsTheFlow) {
    fakes::On("SOF_Login").Returns(2148);
    ExpectQueryFails(TESMARK_LOGIN_FAILED);
    EXPECT_THAT(ScanFailures(), ElementsAre("pzm LoginIn error 2148"));
    EXPECT_EQ(CallsOfTheScan().back(), "SOF_Login");
}

TEST_F(ScanFlowTest, ADeviceWithOneNationalSealShowsNoDialogAndSelectsItsFile) {
    AddNationalSeal();
    PhoneLeaves({{"SEAL01", "national seal"}});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, 16);
    EXPECT_EQ(g_esealMode, 1);
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_selectedSealName.Text(), "SEAL01");
    EXPECT_EQ(g_sealPicWidth, 40);
    EXPECT_EQ(g_sealPicHeight, 40);
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
    EXPECT_FALSE(Called("TVK_Verify_SESeal"));
    ASSERT_EQ(g_pzmSealItems.size(), 1u);
    EXPECT_EQ(g_pzmSealItems[0].name, "SEAL01");
    EXPECT_EQ(g_pzmSealItems[0].sealData, nullptr);
    EXPECT_EQ(g_pzmSealItems[0].picData, nullptr);
}

TEST_F(ScanFlowTest, ADeviceWithOneBarePictureShowsNoDialogAndLeavesTheSelectedSeal) {
    g_selectedSeal.Assign("old seal");
    PhoneLeaves({{"HLVQSEAL", "picture"}});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_esealMode, 0);
    EXPECT_EQ(g_selectedSeal.View(), "old seal");
    EXPECT_EQ(g_selectedSealName.Text(), "HLVQSEAL");
    EXPECT_EQ(g_sealPicWidth, -1);
}

TEST_F(ScanFlowTest, AnOldSealIsAPictureWithTheNameInItsFile) {
    g_selectedSeal.Assign("old seal");
    PhoneLeaves({{"ESEAL01", fakes::EsSeal("es picture", "name in the file")}});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_esealMode, 0);
    EXPECT_EQ(g_selectedSeal.View(), "old seal");
    EXPECT_EQ(g_selectedSealName.Text(), "name in the file");
    EXPECT_EQ(g_sealInfoCache.View(), "es picture");
    PhoneLeaves({});
    fakes::ResetWorld();
    AddScanEntry();
    fakes::AddFile(kScanCert, "ESEAL01", fakes::EsSeal("es picture", ""));
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_selectedSealName.Text(), "印章");
}

TEST_F(ScanFlowTest, AnOldSealWithAnEmptyPictureIsSelectedAndNothingDelivered) {
    PhoneLeaves({{"ESEAL01", fakes::EsSeal("", "name")}});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, -7);
    EXPECT_EQ(g_selectedSealName.Text(), "name");
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_EQ(g_selectedSealIndex, -1);
}

TEST_F(ScanFlowTest, TheSecondScanThrowsTheSealsOfTheFirstAway) {
    AddNationalSeal();
    PhoneLeaves({{"SEAL01", "national seal"}});
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_pzmSealItems.size(), 1u);
    EXPECT_EQ(fakes::CountCalls("SOF_Login"), 2);
    EXPECT_EQ(fakes::CountCalls("SOF_Logout"), 2);
}

TEST_F(ScanFlowTest, OfTwoSealsThePickedOneIsSelectedAndNothingIsLeftOfTheOthers) {
    AddNationalSeal();
    PhoneLeaves({{"HLVQSEAL", "bare picture"}, {"SEAL01", "national seal"}});
    UserPicks(1);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_EQ(m_length, 16);
    EXPECT_EQ(g_esealMode, 1);
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_selectedSealName.Text(), "SEAL01");
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_EQ(g_sealPicHeight, 40);
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
    EXPECT_TRUE(g_pzmSealItems.empty());
}

TEST_F(ScanFlowTest, APickedPictureWithoutASealFileLeavesTheSelectedSeal) {
    g_selectedSeal.Assign("old seal");
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    UserPicks(1);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_sealInfoCache.View(), "second");
    EXPECT_EQ(g_selectedSeal.View(), "old seal");
}

TEST_F(ScanFlowTest, WithTwoSealsAndCancelTheSessionWithTheServiceStaysLoggedIn) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    for (const DialogEnd end : {DialogEnd::Closed, DialogEnd::Failed}) {
        UserLeaves(end);
        fakes::ClearCalls();
        ExpectQueryFails(TESMARK_CANCELLED);
        EXPECT_EQ(ScanFailures().back(), "user cancel dlg -3004");
        EXPECT_EQ(CallsOfTheScan()[1], "SOF_Login");
        EXPECT_EQ(fakes::CountCalls("SOF_Logout"), 1);
        EXPECT_TRUE(g_pzmSealItems.empty());
    }
    EXPECT_EQ(m_shown, 2);
}

TEST_F(ScanFlowTest, WithTwoSealsAndOkWithoutAClickTheResultIsZeroAndTheLengthAsItWas) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    UserConfirms();
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, -7);
    EXPECT_TRUE(g_sealInfoCache.Empty());
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_THAT(ScanFailures(), IsEmpty());
}

TEST_F(ScanFlowTest, OkWithoutAClickAfterAnEarlierPickFindsItsNameButNotItsFile) {
    AddNationalSeal();
    PhoneLeaves({{"HLVQSEAL", "bare picture"}, {"SEAL01", "national seal"}});
    UserPicks(1);
    ASSERT_EQ(Query(), 0);
    state::ClearSelectKeyID();
    UserConfirms();
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, -7);
    EXPECT_EQ(g_selectedSealName.Text(), "SEAL01");
    EXPECT_TRUE(g_selectedSeal.Empty());
}

TEST_F(ScanFlowTest, AScanDuringTheDialogOfAnotherLeavesNothingOfTheFirstInUse) {
    AddNationalSeal();
    PhoneLeaves({{"HLVQSEAL", "bare picture"}, {"SEAL01", "national seal"}});
    g_user.pzmSealTree = [this](PzmSealPick* pick) {
        if (++m_shown == 2) return DialogEnd::Closed;
        g_pzmDialogPick = "clicked";
        g_pzmDialogSeal = g_pzmSealItems.at(1);
        int length = 0;
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), TESMARK_CANCELLED);
        *pick = {g_pzmDialogPick, g_pzmDialogSeal};
        return DialogEnd::Confirmed;
    };
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_EQ(m_shown, 2);
    EXPECT_EQ(g_esealMode, 0);
    EXPECT_TRUE(g_selectedSeal.Empty());
    EXPECT_TRUE(g_selectedSealName.Empty());
    EXPECT_EQ(g_sealPicHeight, 0);
    EXPECT_EQ(g_selectedSealIndex, -1);
    EXPECT_TRUE(g_pzmSealItems.empty());
    EXPECT_EQ(g_pzmDialogSeal.sealData, nullptr);
    EXPECT_EQ(g_pzmDialogSeal.picData, nullptr);
    EXPECT_THAT(ScanFailures(), ElementsAre("user cancel dlg -3004", "user cancel dlg -3004"));
}

TEST_F(ScanFlowTest, AScanOfOneSealDuringTheDialogOfAnotherKeepsItsOwnPictureWithItsOwnFile) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    g_user.pzmSealTree = [](PzmSealPick* pick) {
        g_pzmDialogPick = "first";
        g_pzmDialogSeal = g_pzmSealItems.at(0);
        LeaveOneNationalSeal();
        int length = 0;
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), 0);
        EXPECT_EQ(length, 16);
        *pick = {g_pzmDialogPick, g_pzmDialogSeal};
        return DialogEnd::Confirmed;
    };
    unsigned char picture[8] = "as was";
    m_length = 7;
    EXPECT_EQ(session::GetSealInfo(picture, &m_length), TESMARK_CANCELLED);
    EXPECT_EQ(m_length, 7);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "as was");
    EXPECT_THAT(ScanFailures(), ElementsAre("user cancel dlg -3004"));
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_selectedSealName.Text(), "SEAL01");
    EXPECT_EQ(g_esealMode, 1);
    EXPECT_EQ(g_sealPicHeight, 40);
    EXPECT_EQ(g_certEsealOpt.m_certs.at(0).seals.at(0).picLen, 16);
    EXPECT_EQ(g_sealFlowBusy, 0);
}

TEST_F(ScanFlowTest, ASearchDuringTheDialogThatEmptiesTheListLeavesNowhereToKeepThePicture) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    UserPicks(0);
    const auto pickFirst = g_user.pzmSealTree;
    g_user.pzmSealTree = [&](PzmSealPick* pick) {
        fakes::ResetWorld();
        fakes::AddCertificate("翠枫证书", "cert-1");  // is left out of the list
        const unsigned char text[] = "text";
        session::SetCertSeal(text, 4, text, 4, 0);
        return pickFirst(pick);
    };
    EXPECT_EQ(Query(), 0);
    EXPECT_TRUE(g_certEsealOpt.m_certs.empty());
    EXPECT_EQ(g_sealInfoCache.View(), "first");
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
}

TEST_F(ScanFlowTest, ThePictureBecomesTheOnlySealOfTheFirstCertificateThoughAnotherWasPicked) {
    fakes::ResetWorld();
    fakes::AddCertificate("one", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("a"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("b"));
    AddScanEntry();
    PhoneLeaves({{"HLVQSEAL", "picture"}});
    g_user.certSealTree = [](CertSealPick* pick) {
        EXPECT_EQ(g_sealFlowBusy, 1);
        *pick = {1, -1};
        return DialogEnd::Confirmed;
    };
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    ASSERT_EQ(g_certEsealOpt.m_certs.size(), 2u);
    const std::vector<SealRecord>& seals = g_certEsealOpt.m_certs[0].seals;
    ASSERT_EQ(seals.size(), 1u);
    EXPECT_EQ(seals[0].type, 0);
    EXPECT_EQ(seals[0].name, "");
    EXPECT_EQ(seals[0].sealData, nullptr);
    EXPECT_STREQ(reinterpret_cast<char*>(seals[0].picData), "picture");
    EXPECT_EQ(seals[0].picLen, 7);
    EXPECT_TRUE(g_certEsealOpt.m_certs[1].seals.empty());
}

TEST_F(ScanFlowTest, APickedDeviceThatIsNotThePlaceholderIsScannedToo) {
    fakes::ResetWorld();
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("any", "hlvqDev123");
    fakes::AddFile("hlvqDev123", "HLVQSEAL", "picture");
    TreeEndsWith(DialogEnd::Confirmed, {1, -1});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_currentCertId.Text(), "hlvqDev123");
}

TEST_F(ScanFlowTest, NobodyIsBusyDuringTheDialogOfAScan) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    g_user.pzmSealTree = [](PzmSealPick*) {
        EXPECT_EQ(g_sealFlowBusy, 0);
        return DialogEnd::Closed;
    };
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
}

TEST_F(ScanFlowTest, TheDraggedPictureIsThatOfTheScan) {
    PhoneLeaves({{"HLVQSEAL", "picture"}});
    char* base64 = nullptr;
    ASSERT_EQ(session::GetDragSealPic(&base64), 0);
    EXPECT_STREQ(base64, Base64Encode(std::string("picture\0", 8)).c_str());
    std::free(base64);
    EXPECT_EQ(fakes::CountCalls("SOF_Login"), 1);
}

}  // namespace
