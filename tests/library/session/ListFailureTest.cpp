// What the exports that list the certificates make of each failure of that, and of reading one.
#include "SessionTest.h"
#include "SweptCall.h"
#include "foundation/Text.h"

using testing::ElementsAre;

namespace {

constexpr int kFailure = 77;

struct Step : SweptCall {
    int result;
    const char* failure;
};

constexpr Step kListing[] = {
    {"GetDeviceCountEx", 1, TESMARK_DEVICE_COUNT_FAILED,
     "[GetUserList]GetDeviceCountEx: failed,error:77"},
    {"SOF_GetUserList", 1, TESMARK_CERT_LIST_FAILED,
     "[GetUserList]SOF_GetUserList: failed,error:77"},
    {"SOF_GetUserList", 2, TESMARK_CERT_LIST_FAILED,
     "[GetUserList]SOF_GetUserList: failed,error:77"},
    {"GetDeviceInfo", 1, TESMARK_CERT_LIST_FAILED, "[GetUserList]GetDeviceInfo: failed,error:77"},
};

constexpr Step kReading[] = {
    {"SOF_ExportUserCert", 1, TESMARK_CERT_EXPORT_FAILED,
     "[GetKeyCert]SOF_ExportUserCert: failed,error:77"},
    {"SOF_ExportUserCert", 2, TESMARK_CERT_EXPORT_FAILED,
     "[GetKeyCert]SOF_ExportUserCert: failed,error:77"},
    {"SOF_Base64Encode", 1, TESMARK_BASE64_FAILED, "[GetKeyCert]SOF_Base64Encode: failed,error:77"},
};

class FailureOfTheListTest : public SessionTest, public testing::WithParamInterface<Step> {
protected:
    FailureOfTheListTest() {
        fakes::AddCertificate("label", "cert-1");
        EXPECT_EQ(InitKVLLib(), 0);
        fakes::ClearCalls();
        ForgetLog();
        fakes::On(GetParam().function).ReturnsAt(GetParam().number, kFailure);
    }
    // The step's result, its one record, and no call behind the one that failed.
    void ExpectFailed(int result) const {
        EXPECT_EQ(result, GetParam().result);
        std::vector<std::string> failures = Failures();
        std::erase(failures, "[GetUserList]SOF_GetUserList: ");  // the list, as far as it was read
        EXPECT_THAT(failures, ElementsAre(GetParam().failure));
        EXPECT_EQ(fakes::CalledFunctions().back(), GetParam().function);
        EXPECT_EQ(fakes::CountCalls(GetParam().function), GetParam().number);
    }
    static int SelectedLength() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length;
    }
    static int Check() {
        const std::string text = Base64Encode("DER of cert-1");
        return CheckIsCertExist(reinterpret_cast<const unsigned char*>(text.data()),
                                static_cast<int>(text.size()));
    }
};

TEST_P(FailureOfTheListTest, ALogoutReturnsItAndKeepsTheSelection) {
    SetCurrentCertID("cert-1");
    ExpectFailed(Logout());
    EXPECT_EQ(SelectedLength(), 6);
}

TEST_P(FailureOfTheListTest, ACheckReturnsItAndKeepsTheSelection) {
    SetCurrentCertID("cert-1");
    ExpectFailed(Check());
    EXPECT_EQ(SelectedLength(), 6);
}

TEST_P(FailureOfTheListTest, TheTextOfACertificateToChooseReturnsItAndLeavesTheLength) {
    int length = -7;
    ExpectFailed(GetCertBase64Data(nullptr, &length));
    EXPECT_EQ(length, -7);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_P(FailureOfTheListTest, TheTypeOfACertificateToChooseReturnsItAndEndsTheSelection) {
    m_prefix.SetNumber("bSealPosition", 1);
    const unsigned char seal[] = "c2VhbA==";
    ASSERT_EQ(SetCertSeal(seal, 8, seal, 8, 1), 0);
    char type[261] = "as it was";
    ExpectFailed(GetCertType(type));
    EXPECT_STREQ(type, "as it was");
    EXPECT_EQ(SelectedSeal(), "");
    EXPECT_EQ(GetEsealMode(), 0);
}

INSTANTIATE_TEST_SUITE_P(EachCall, FailureOfTheListTest, testing::ValuesIn(kListing));

class FailureOfTheTextTest : public FailureOfTheListTest {};

TEST_P(FailureOfTheTextTest, ACheckReturnsItAndKeepsTheSelection) {
    SetCurrentCertID("cert-1");
    ExpectFailed(Check());
    EXPECT_EQ(SelectedLength(), 6);
}

TEST_P(FailureOfTheTextTest, TheTextItselfReturnsItAndLeavesTheSelectionAndTheOlderText) {
    SetCurrentCertID("cert-1");
    fakes::On(GetParam().function) = fakes::FunctionScript();
    int length = 0;
    ASSERT_EQ(GetCertBase64Data(nullptr, &length), 0);
    fakes::ClearCalls();
    fakes::On(GetParam().function).ReturnsAt(GetParam().number, kFailure);
    length = -7;
    ExpectFailed(GetCertBase64Data(nullptr, &length));
    EXPECT_EQ(length, -7);
    EXPECT_EQ(SelectedLength(), 6);
    const std::string text = Base64Encode("DER of cert-1");
    std::string older(text.size(), '?');
    length = static_cast<int>(older.size());
    EXPECT_EQ(GetCertBase64Data(reinterpret_cast<unsigned char*>(older.data()), &length), 0);
    EXPECT_EQ(older, text);
}

INSTANTIATE_TEST_SUITE_P(EachCall, FailureOfTheTextTest, testing::ValuesIn(kReading));

}  // namespace
