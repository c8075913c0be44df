// The operations of the bridge that no export shows by itself yet.
#include <gmock/gmock.h>

#include <filesystem>

#include "bridge/AppOpt.h"
#include "fakes/LibraryTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class KeyQueryTest : public LibraryTest {
protected:
    KeyQueryTest() {
        fakes::AddCertificate("Zhang", "A");
        KVLInitialize(m_appOpt);
        fakes::ClearCalls();
        ForgetLog();
    }
    ~KeyQueryTest() override { KVLUnInitialize(m_appOpt); }

    // No operation can start the service any more.
    void TakeServiceDown() {
        KVLUnInitialize(m_appOpt);
        fakes::On("SOF_Initialize").Returns(1);
        fakes::ClearCalls();
        ForgetLog();
    }

    CAppOpt m_appOpt;
    CBuffer m_answer;
};

// --- the user list ---

TEST_F(KeyQueryTest, TheUserListHoldsTheEntriesOfHardwareKeysAlone) {
    fakes::AddCertificate("soft", "B").device = "SOFT";
    fakes::AddCertificate("Li", "C");
    fakes::AddCertificate("like hard", "D").device = "HARDWARE";
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), 0);
    EXPECT_STREQ(m_answer.Text(), "Zhang||A&&&Li||C&&&");
    EXPECT_EQ(m_answer.Length(), 19);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("GetDeviceCountEx(ctx, 1)", "SOF_GetUserList(ctx, size?)",
                    "SOF_GetUserList(ctx, out[44])", "GetDeviceInfo(ctx, \"A\", 7, out[32])",
                    "GetDeviceInfo(ctx, \"B\", 7, out[32])",
                    "GetDeviceInfo(ctx, \"C\", 7, out[32])",
                    "GetDeviceInfo(ctx, \"D\", 7, out[32])"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetUserList]: begin",
                                   "3 [GetUserList]SOF_GetUserList: "
                                   "Zhang||A&&&soft||B&&&Li||C&&&like hard||D&&&"));
}

TEST_F(KeyQueryTest, AUserListWithSoftCertificatesAloneIsNoCertificateInTheKey) {
    fakes::Reset();
    fakes::AddCertificate("soft", "B").device = "SOFT";
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_CERT);
    EXPECT_EQ(Errors().back(), "[GetUserList]not exist cert in key.");
    EXPECT_FALSE(m_answer);
}

TEST_F(KeyQueryTest, TextBehindTheLastEntryIsNoEntry) {
    for (const char* list : {"Zhang||A&&&rest", "Zhang||A&&&rest||of it", "Zhang||A&&&&&&"}) {
        fakes::On("SOF_GetUserList").Gives(list);
        EXPECT_EQ(m_appOpt.GetUserList(m_answer), 0);
        EXPECT_STREQ(m_answer.Text(), "Zhang||A&&&");
    }
}

TEST_F(KeyQueryTest, AListWithoutAnEntryIsNoCertificateInTheKey) {
    for (const char* list : {"Zhang", "Zhang||A", "&&&"}) {
        fakes::On("SOF_GetUserList").Gives(list);
        EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_CERT);
    }
}

TEST_F(KeyQueryTest, DevicesThatCannotBeCountedAreToldAndNoKeyTooAndNothingElseIsAsked) {
    fakes::On("GetDeviceCountEx").ReturnsAt(1, 121);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_DEVICE_COUNT_FAILED);
    fakes::Reset();
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_KEY);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("GetDeviceCountEx"));
    EXPECT_THAT(Errors(), ElementsAre("[GetUserList]GetDeviceCountEx: failed,error:121",
                                      "[GetUserList]not exist key."));
}

TEST_F(KeyQueryTest, AnEmptyUserListIsNoCertificateInTheKeyAtEitherStep) {
    fakes::On("SOF_GetUserList").ReportsSizeAt(1, 0).ReportsSizeAt(3, 0);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_CERT);
    EXPECT_EQ(fakes::CountCalls("SOF_GetUserList"), 1);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_CERT);
    EXPECT_THAT(Errors(), ElementsAre("[GetUserList]not exist cert in key.",
                                      "[GetUserList]SOF_GetUserList: Zhang||A&&&",
                                      "[GetUserList]not exist cert in key."));
}

TEST_F(KeyQueryTest, AFailedUserListIsToldAtEitherStep) {
    fakes::On("SOF_GetUserList").ReturnsAt(1, 122).ReturnsAt(3, 123);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_CERT_LIST_FAILED);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_CERT_LIST_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[GetUserList]SOF_GetUserList: failed,error:122",
                                      "[GetUserList]SOF_GetUserList: ",
                                      "[GetUserList]SOF_GetUserList: failed,error:123"));
}

TEST_F(KeyQueryTest, AUserListThatNoMemoryHoldsHasItsOwnRecord) {
    fakes::On("SOF_GetUserList").ReportsSizeAt(1, -2);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("malloc szUserList error"));
}

TEST_F(KeyQueryTest, ADeviceThatDoesNotTellItsKindFailsTheWholeList) {
    fakes::On("GetDeviceInfo").ReturnsAt(1, 124).GivesAt(2, "");
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_CERT_LIST_FAILED);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_CERT_LIST_FAILED);
    const auto errors = Errors();
    ASSERT_EQ(errors.size(), 4u);
    EXPECT_EQ(errors[1], "[GetUserList]GetDeviceInfo: failed,error:124");
    EXPECT_EQ(errors[3], "[GetUserList]GetDeviceInfo: failed,error:0");
    EXPECT_FALSE(m_answer);
}

// --- the last login ---

TEST_F(KeyQueryTest, TheLastLoginIsAskedForInTwoSteps) {
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), 0);
    EXPECT_STREQ(m_answer.Text(), "A");
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_GetLastLoginCertID(ctx, \"A\", size?)",
                                                "SOF_GetLastLoginCertID(ctx, \"A\", out[1])"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetLastLoginCertID]: begin", "8 GetLastLoginCertID begin",
                                   "8 [GetLastLoginCertID]: ok"));
}

TEST_F(KeyQueryTest, AnOlderServiceWithoutTheCallIsDetectedInItsFile) {
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::WithoutLastLogin));
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_NO_LAST_LOGIN_CALL);
    ASSERT_EQ(Errors().size(), 1u);
    EXPECT_THAT(Errors()[0], StartsWith("SOF_GetLastLoginCertID: not exist, error:"));
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(KeyQueryTest, AFileThatIsGoneOrCannotBeLoadedGivesZeroAndNoAnswer) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), 0);
    EXPECT_FALSE(m_answer);
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::NoLibrary));
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), 0);
    EXPECT_FALSE(m_answer);
    ASSERT_EQ(Errors().size(), 2u);
    EXPECT_THAT(Errors()[0], StartsWith("[GetLastLoginCertID]get_kvl_path: error:"));
    EXPECT_THAT(Errors()[1], StartsWith("[GetLastLoginCertID]LoadLibrary: failed, error:"));
}

TEST_F(KeyQueryTest, EachStepOfTheLastLoginHasItsOwnFailure) {
    fakes::On("SOF_GetLastLoginCertID").ReturnsAt(1, 131).ReturnsAt(3, 132);
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_LAST_LOGIN_FAILED);
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_LAST_LOGIN_FAILED);
    EXPECT_THAT(Errors(),
                ElementsAre("[GetCertID]SOF_GetLastLoginCertID: failed,error:131",
                            "[GetLastLoginCertID]SOF_GetLastLoginCertID: failed,error:132"));
    EXPECT_FALSE(m_answer);
}

TEST_F(KeyQueryTest, AnEmptyLastLoginIsToldAtEitherStep) {
    fakes::On("SOF_GetLastLoginCertID").ReportsSizeAt(1, 0).ReportsSizeAt(3, 0);
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_NO_LAST_LOGIN);
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_NO_LAST_LOGIN);
    EXPECT_THAT(Errors(), ElementsAre("[GetLastLoginCertID]not exist cert in key.",
                                      "[GetLastLoginCertID]not exist cert in key."));
}

TEST_F(KeyQueryTest, ALastLoginThatNoMemoryHoldsHasACodeOfItsOwn) {
    fakes::On("SOF_GetLastLoginCertID").ReportsSizeAt(1, -2);
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_LAST_LOGIN_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("malloc szLastLoginCertID error"));
}

// --- the certificate as text ---

TEST_F(KeyQueryTest, ACertificateIsEncodedIntoTwiceItsLength) {
    EXPECT_EQ(m_appOpt.GetKeyCert("A", m_answer), 0);
    EXPECT_STREQ(m_answer.Text(), "REVSIG9mIEE=");
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_Base64Encode(ctx, 8 \"DER of A\", out[16])");
}

TEST_F(KeyQueryTest, AFailureBehindTheFirstStepLeavesNoText) {
    ASSERT_EQ(m_appOpt.GetKeyCert("A", m_answer), 0);
    fakes::ClearCalls();
    fakes::On("SOF_ExportUserCert").ReturnsAt(1, 141).ReportsSizeAt(4, -2);
    fakes::On("SOF_Base64Encode").ReturnsAt(1, 142);
    EXPECT_EQ(m_appOpt.GetKeyCert("A", m_answer), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_FALSE(m_answer);
    EXPECT_EQ(m_appOpt.GetKeyCert("A", m_answer), TESMARK_BASE64_FAILED);
    EXPECT_FALSE(m_answer);
    EXPECT_EQ(m_appOpt.GetKeyCert("A", m_answer), TESMARK_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyCert]SOF_ExportUserCert: failed,error:141",
                                      "[GetKeyCert]SOF_Base64Encode: failed,error:142"));
}

TEST_F(KeyQueryTest, TheFieldOfACertificateGivenAsTextIsTheCommonNameWhateverIsAskedFor) {
    EXPECT_EQ(m_appOpt.GetCertificateInfo("REVSIG9mIEE=", 2, m_answer), 0);
    EXPECT_STREQ(m_answer.Text(), "Zhang");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_Base64Decode(ctx, 12 \"REVSIG9mIEE=\", size?)",
                            "SOF_Base64Decode(ctx, 12 \"REVSIG9mIEE=\", out[8])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, size?)",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, out[5])"));
}

TEST_F(KeyQueryTest, ATextThatCannotBeDecodedIsToldWithTheEncodersName) {
    fakes::On("SOF_Base64Decode").ReturnsAt(1, 151).ReturnsAt(3, 152).ReportsSizeAt(4, -2);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(m_appOpt.GetCertificateInfo("REVS", 17, m_answer), TESMARK_CERT_INFO_NO_MEMORY);
    }
    EXPECT_THAT(Errors(), ElementsAre("[GetCertificateInfo]SOF_Base64Encode: error:151",
                                      "[GetCertificateInfo]SOF_Base64Encode: error:152"));
}

TEST_F(KeyQueryTest, ANameThatCannotBeHadIsTold) {
    fakes::On("SOF_GetCertInfo").ReturnsAt(1, 153).ReturnsAt(3, 154);
    EXPECT_EQ(m_appOpt.GetCertificateInfo("REVSIG9mIEE=", 17, m_answer), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(m_appOpt.GetCertificateInfo("REVSIG9mIEE=", 17, m_answer), TESMARK_CERT_FIELD_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[GetCertificateInfo]SOF_GetCertInfo: error:153",
                                      "[GetCertificateInfo]SOF_GetCertInfo: error:154"));
}

// --- files and login ---

TEST_F(KeyQueryTest, AFileIsReadWithTheCertificateFirst) {
    fakes::AddFile("A", "ESEAL01", "content");
    int length = 0;
    EXPECT_EQ(m_appOpt.ReadKeyFile("ESEAL01", "A", nullptr, &length), 0);
    EXPECT_EQ(length, 7);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_ReadFile(ctx, \"A\", \"ESEAL01\", size?)"));
    EXPECT_EQ(m_appOpt.ReadKeyFile("none", "A", nullptr, &length), TESMARK_KEY_FILE_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[ReadKeyFile]SOF_ReadFile: error:" +
                                      std::to_string(fakes::kNoSuchFile)));
}

TEST_F(KeyQueryTest, TheNamesOfFilesComeWithTheServicesOwnCode) {
    fakes::AddFile("A", "ESEAL01", "content");
    int length = 0;
    EXPECT_EQ(m_appOpt.EnumFilesInKey("A", nullptr, &length), 0);
    EXPECT_EQ(length, 10);
    fakes::On("EnumFilesInDevice").Returns(161);
    EXPECT_EQ(m_appOpt.EnumFilesInKey("A", nullptr, &length), 161);
    EXPECT_THAT(Log(), ElementsAre("8 [EnumFilesInKey]: begin", "8 [EnumFilesInKey]: begin"));
}

TEST_F(KeyQueryTest, LoginAndLogoutPassTheServicesResultAndShareTheirRecords) {
    fakes::On("SOF_Login").Returns(171);
    fakes::On("SOF_Logout").Returns(172);
    EXPECT_EQ(m_appOpt.LoginIn("A", "1234"), 171);
    EXPECT_EQ(m_appOpt.Logout("A"), 172);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_Login(ctx, \"A\", \"1234\")", "SOF_Logout(ctx, \"A\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [LoginIn]: begin", "8 [LoginIn]: begin", "8 [LoginIn]: end"));
}

// --- the gate ---

TEST_F(KeyQueryTest, EveryOperationTriesOnceToStartTheServiceAndThenRefuses) {
    TakeServiceDown();
    int length = 0;
    char type[300];
    std::string crl;
    const unsigned char byte = 0;
    EXPECT_EQ(m_appOpt.GetKeyType("A", type), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetKeyCert("A", m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetKeyCertEx("A", m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetUserList(m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetCertificateInfo("", 17, m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetCertificateInfoEx(&byte, 1, 2, m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.GetCertOidData(&byte, 1, nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.ReadKeyFile("f", "A", nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.EnumFilesInKey("A", nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.LoginIn("A", "1234"), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.SignPlainDataEx(1, &byte, 1, "A", nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.SignData(&byte, 1, "A", m_answer), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.SignBigFile(1, "/a", "A", nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.SignData_GB(&byte, 1, "A", &byte, 1, "seal", nullptr, &length),
              TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.SignBigFile_GB("/a", "A", &byte, 1, "seal", nullptr, &length),
              TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.HashData("SM3", &byte, 1, nullptr, 0, nullptr, &length),
              TESMARK_SERVICE_FAILED);
    EXPECT_EQ(m_appOpt.HashFile("SM3", "/a", nullptr, 0, nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 17);
    EXPECT_EQ(fakes::Calls().size(), 17u);
}

TEST_F(KeyQueryTest, TheOlderOperationsRefuseWithACodeOfTheirOwn) {
    TakeServiceDown();
    std::string crl;
    const unsigned char byte = 0;
    EXPECT_EQ(m_appOpt.GetLastLoginCertID("A", m_answer), TESMARK_SERVICE_DOWN);
    EXPECT_EQ(Errors().back(), "CheckKVLOKStatus error");
    EXPECT_EQ(m_appOpt.Logout("A"), TESMARK_SERVICE_DOWN);
    ForgetLog();
    EXPECT_EQ(m_appOpt.GetCrlDataFromCert(&byte, 1, crl), TESMARK_SERVICE_DOWN);
    EXPECT_THAT(Errors(), ElementsAre("[KVLInitialize]: failed,error:1"));
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 3);
}

TEST_F(KeyQueryTest, TheEndOfAServiceThatNeverCameUpStillReleasesTheSealLibrary) {
    CAppOpt appOpt;
    KVLUnInitialize(appOpt);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("TVK_Release()"));
}

TEST_F(KeyQueryTest, TheEndKeepsTheSettingForRevocationListsUntilTheNextStart) {
    CAppOpt appOpt;
    m_prefix.SetNumber("bVerifyCRL", 1);
    ASSERT_EQ(KVLInitialize(appOpt), 0);
    EXPECT_EQ(appOpt.verifyCrl, 1u);
    m_prefix.SetNumber("bVerifyCRL", 0);
    KVLUnInitialize(appOpt);
    EXPECT_EQ(appOpt.verifyCrl, 1u);
    EXPECT_EQ(appOpt.kvl, nullptr);
    EXPECT_EQ(appOpt.context, nullptr);
    EXPECT_EQ(appOpt.initialised, 0);
    ASSERT_EQ(KVLInitialize(appOpt), 0);
    EXPECT_EQ(appOpt.verifyCrl, 0u);
    KVLUnInitialize(appOpt);
}

// --- the table ---

TEST_F(KeyQueryTest, TheTableIsBoundWithItsModuleAndCleared) {
    CKVLOpt table(fakes::ServicePath().c_str());
    ASSERT_NE(table.module, nullptr);
    EXPECT_NE(table.SOF_Initialize, nullptr);
    EXPECT_NE(table.SOF_EncryptDataEx, nullptr);
    EXPECT_NE(table.SOF_DecryptData, nullptr);
    EXPECT_NE(table.SOF_TSGenREQ, nullptr);
    EXPECT_EQ(table.LoadEntries(0), 1);
    EXPECT_EQ(table.SOF_Initialize, nullptr);
    EXPECT_EQ(table.SOF_EncryptDataEx, nullptr);
    EXPECT_EQ(table.SOF_TSGenREQ, nullptr);
    EXPECT_EQ(table.LoadEntries(1), 1);
    EXPECT_NE(table.SOF_GetLastError, nullptr);
}

TEST_F(KeyQueryTest, AMissingNameLeavesItsPlaceEmptyAndTheOthersBound) {
    const CKVLOpt table(fakes::ServicePath(fakes::Service::WithoutTsGenReq).c_str());
    ASSERT_NE(table.module, nullptr);
    EXPECT_EQ(table.SOF_TSGenREQ, nullptr);
    EXPECT_NE(table.SetUserConfig, nullptr);
}

TEST_F(KeyQueryTest, AFileThatCannotBeLoadedLeavesTheTableUnbound) {
    const CKVLOpt table(fakes::ServicePath(fakes::Service::NoLibrary).c_str());
    EXPECT_EQ(table.module, nullptr);
    EXPECT_EQ(table.SOF_Initialize, nullptr);
}

}  // namespace
