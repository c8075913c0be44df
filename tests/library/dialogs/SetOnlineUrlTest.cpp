// The address of the online service through the built library, with its dialog and its boxes as the
// user has them.
#include <gmock/gmock.h>

#include <utility>

#include "AddressUser.h"
#include "fakes/LibraryTest.h"
#include "foundation/Registry.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kStored[] = "http://192.0.2.45/qelm42/QelmServlet";
constexpr char kOfflineNotice[] = "本客户端为离线版，配置不可用！";

class SetOnlineUrlTest : public LibraryTest {
protected:
    SetOnlineUrlTest() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", kStored);
        fakes::On("dwnt_http_response_data_get").Gives("<ROOT><STATUSCODE>200</STATUSCODE></ROOT>");
    }
    // The result for a user who does this.
    int Show(std::vector<AddressUser::Act> acts) {
        const AddressUser user(m_prefix, std::move(acts));
        const int result = SetOnlineUrl();
        m_seen = user.Look();
        return result;
    }
    static AddressUser::Act Types(const char* text) { return AddressUser::Types(text); }
    static AddressUser::Act Ok() { return AddressUser::Presses(TESMARK_BUTTON_OK); }
    static AddressUser::Act Cancel() { return AddressUser::Presses(TESMARK_BUTTON_CANCEL); }
    static AddressUser::Act Closes() { return AddressUser::Presses(AddressUser::kClose); }
    static AddressUser::Act Test() { return AddressUser::Presses(TESMARK_URL_TEST); }
    static std::string Stored() { return ReadTextSetting("sWSURL"); }
    // The addresses that were tried.
    static std::vector<std::string> Tried() {
        std::vector<std::string> addresses;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "dwnt_config_set") addresses.push_back(call.arguments[2]);
        }
        return addresses;
    }

    AddressUser::Seen m_seen;
};

TEST_F(SetOnlineUrlTest, TheTypedAddressIsStored) {
    EXPECT_EQ(Show({Types(" 192.0.2.7/qelm7 "), Ok()}), TESMARK_OK);
    EXPECT_EQ(m_seen.dialogs, 1);
    EXPECT_EQ(m_seen.field, "192.0.2.45/qelm42");
    EXPECT_FALSE(m_seen.toldDisabled);
    EXPECT_THAT(m_seen.boxes, IsEmpty());
    EXPECT_EQ(Stored(), "http://192.0.2.7/qelm7/QelmServlet");
    EXPECT_THAT(fakes::CalledFunctions(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(SetOnlineUrlTest, WhatWasStoredStandsInTheNextDialog) {
    EXPECT_EQ(Show({Types("主机/工程"), Ok()}), TESMARK_OK);
    EXPECT_EQ(Show({Ok()}), TESMARK_OK);
    EXPECT_EQ(m_seen.field, "主机/工程");
    EXPECT_EQ(Stored(), "http://主机/工程/QelmServlet");
}

TEST_F(SetOnlineUrlTest, AnEmptyFieldIsStoredAsTheFixedPartsAlone) {
    EXPECT_EQ(Show({Types("   "), Ok()}), TESMARK_OK);
    EXPECT_EQ(Stored(), "http:///QelmServlet");
}

TEST_F(SetOnlineUrlTest, CancelAndTheCloseBoxStoreNothing) {
    EXPECT_EQ(Show({Types("192.0.2.7"), Cancel()}), TESMARK_FAILED);
    EXPECT_EQ(Show({Types("192.0.2.7"), Closes()}), TESMARK_FAILED);
    EXPECT_EQ(m_seen.dialogs, 1);
    EXPECT_EQ(Stored(), kStored);
}

TEST_F(SetOnlineUrlTest, TheTestTellsItsOutcomeInABoxAndTheDialogGoesOn) {
    EXPECT_EQ(Show({Types("192.0.2.7/qelm7"), Test(), Cancel()}), TESMARK_FAILED);
    EXPECT_THAT(m_seen.boxes, ElementsAre("48 电子签章: 连接服务器成功！"));
    EXPECT_THAT(Tried(), ElementsAre("http://192.0.2.7/qelm7/QelmServlet"));
    EXPECT_EQ(Stored(), kStored);
}

TEST_F(SetOnlineUrlTest, AfterAFailedTestAnotherAddressCanBeTriedAndStored) {
    fakes::On("dwnt_http_processEx").ReturnsAt(1, 5);
    EXPECT_EQ(Show({Test(), Types("192.0.2.7"), Test(), Ok()}), TESMARK_OK);
    EXPECT_THAT(m_seen.boxes,
                ElementsAre("64 电子签章: 连接服务器失败!", "48 电子签章: 连接服务器成功！"));
    EXPECT_THAT(Tried(), ElementsAre(kStored, "http://192.0.2.7/QelmServlet"));
    EXPECT_EQ(Stored(), "http://192.0.2.7/QelmServlet");
    EXPECT_THAT(Errors(), ElementsAre("[dwnt_http_processEx返回状态码：5]"));
}

TEST_F(SetOnlineUrlTest, OnAnOfflineInstallationOkStoresNothing) {
    m_prefix.SetNumber("bSealPosition", 0);
    EXPECT_EQ(Show({Types("192.0.2.7"), Ok()}), TESMARK_OK);
    EXPECT_EQ(m_seen.field, kOfflineNotice);
    EXPECT_TRUE(m_seen.toldDisabled);
    EXPECT_EQ(Stored(), kStored);
}

TEST_F(SetOnlineUrlTest, OnAnOfflineInstallationTheNoticeItselfCanBeTried) {
    m_prefix.SetNumber("bSealPosition", 2);
    EXPECT_EQ(Show({Test(), Closes()}), TESMARK_FAILED);
    EXPECT_THAT(Tried(), ElementsAre("http://" + std::string(kOfflineNotice) + "/QelmServlet"));
    EXPECT_THAT(m_seen.boxes, ElementsAre("48 电子签章: 连接服务器成功！"));
}

TEST_F(SetOnlineUrlTest, WithoutTheSettingTheModeThatAnEarlierDialogReadStays) {
    for (const unsigned mode : {1u, 0u}) {
        m_prefix.SetNumber("bSealPosition", mode);
        Show({Cancel()});
        m_prefix.Remove("bSealPosition");
        Show({Cancel()});
        EXPECT_EQ(m_seen.field, mode == 1 ? "192.0.2.45/qelm42" : kOfflineNotice);
    }
}

TEST_F(SetOnlineUrlTest, ASettingThatIsNoNumberLeavesTheModeThatAnEarlierDialogRead) {
    for (const unsigned mode : {1u, 0u}) {
        m_prefix.SetNumber("bSealPosition", mode);
        Show({Cancel()});
        m_prefix.SetBytes("bSealPosition", "longer than a number");
        Show({Cancel()});
        EXPECT_EQ(m_seen.field, mode == 1 ? "192.0.2.45/qelm42" : kOfflineNotice);
    }
}

}  // namespace
