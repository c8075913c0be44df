#include "dialogs/OnlineUrl.h"

#include <optional>

#include "SealDialogTest.h"
#include "dialogs/DialogFrame.h"
#include "foundation/Registry.h"
#include "foundation/Text.h"
#include "host/ModuleState.h"
#include "support/LockedStore.h"
#include "support/ShownBoxes.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kStored[] = "http://192.0.2.45/qelm42/QelmServlet";
constexpr char kOfflineNotice[] = "本客户端为离线版，配置不可用！";

// The longest that an address has room for.
constexpr std::size_t kMostHost = 511 - 7 - 12;

class OnlineUrlTest : public SealDialogTest {
protected:
    void BeOnline(const std::string& address = kStored) {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", address);
    }
    int Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        const int value = ShowOnlineUrl();
        m_asked = dialogs.Asked();
        return value;
    }
    // What stands in the field when the dialog opens, for a user who then cancels.
    std::string Field() {
        std::string text = "not opened";
        Show([&](ScriptedDialog& dialog) { text = dialog[TESMARK_URL_FIELD].text; });
        return text;
    }
    std::string FieldFor(const std::string& address) {
        BeOnline(address);
        return Field();
    }
    // What is stored for this text.
    std::string StoredFor(const std::string& text) {
        BeOnline("");
        EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                      dialog.Type(TESMARK_URL_FIELD, text);
                      dialog.PressButton(TESMARK_BUTTON_OK);
                  }),
                  kDialogConfirmed);
        return ReadTextSetting("sWSURL");
    }
    // The addresses that were tried.
    static std::vector<std::string> Tried() {
        std::vector<std::string> addresses;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "dwnt_config_set") addresses.push_back(call.arguments[2]);
        }
        return addresses;
    }
    // What is tried for this text, and what the user sees of it.
    std::string BoxesOfTestWith(const std::string& text) {
        ShownBoxes boxes;
        Show([&](ScriptedDialog& dialog) {
            dialog.Type(TESMARK_URL_FIELD, text);
            dialog.PressButton(TESMARK_URL_TEST);
            EXPECT_FALSE(dialog.HasEnded());
        });
        return Utf8ToAnsi(boxes.Take());
    }

    std::vector<std::string> m_asked;
};

TEST_F(OnlineUrlTest, TheHostPartOfTheStoredAddressStandsInTheField) {
    BeOnline();
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  EXPECT_EQ(dialog[TESMARK_URL_FIELD].text, "192.0.2.45/qelm42");
                  EXPECT_FALSE(dialog[TESMARK_URL_FIELD].toldDisabled);
                  dialog.CloseWindow();
              }),
              kDialogCancelled);
    EXPECT_THAT(m_asked, ElementsAre("TesmarkOpt_x64 103"));
    EXPECT_EQ(g_sealPositionMode, 1);
}

TEST_F(OnlineUrlTest, OfALongerSchemeTheFirstSevenCharactersAreDroppedAndTheRestShows) {
    EXPECT_EQ(FieldFor("https://192.0.2.45/QelmServlet"), "/192.0.2.45");
    EXPECT_EQ(FieldFor("gopher+http://192.0.2.45/QelmServlet"), "http://192.0.2.45");
}

TEST_F(OnlineUrlTest, TheFirstSevenCharactersAreDroppedWhateverTheyAre) {
    EXPECT_EQ(FieldFor("ftp://192.0.2.45/QelmServlet"), "92.0.2.45");
    EXPECT_EQ(FieldFor("192.0.2.45/QelmServlet"), ".45");
    EXPECT_EQ(FieldFor("x/QelmServlet"), "");
}

TEST_F(OnlineUrlTest, WithoutThePathTheFieldIsEmpty) {
    for (const char* address : {"http://192.0.2.45", "http://192.0.2.45/qelmservlet", "http://",
                                "http:/", "", "http:///QelmServle"}) {
        EXPECT_EQ(FieldFor(address), "") << address;
    }
}

TEST_F(OnlineUrlTest, WhatStandsBehindTheFirstPathIsLeftOut) {
    EXPECT_EQ(FieldFor("http://a/QelmServlet/QelmServlet?x=1"), "a");
    EXPECT_EQ(FieldFor("http:///QelmServlet"), "");
    EXPECT_EQ(FieldFor("http://主机/QelmServlets"), "主机");
}

TEST_F(OnlineUrlTest, AnAddressOf200BytesCountsAsNotStored) {
    const std::string host(199 - 7 - 12, 'h');
    EXPECT_EQ(FieldFor("http://" + host + "/QelmServlet"), host);
    EXPECT_EQ(FieldFor("http://" + host + "h/QelmServlet"), "");
}

TEST_F(OnlineUrlTest, WithoutAStoredAddressTheFieldIsEmpty) {
    m_prefix.SetNumber("bSealPosition", 1);
    EXPECT_EQ(Field(), "");
}

TEST_F(OnlineUrlTest, OnAnOfflineInstallationTheFieldTellsSoAndIsToldThatItIsDisabled) {
    for (const unsigned mode : {0u, 2u, 3u, 4u, 0xFFFFFFFFu}) {
        BeOnline();
        m_prefix.SetNumber("bSealPosition", mode);
        Show([](ScriptedDialog& dialog) {
            EXPECT_EQ(dialog[TESMARK_URL_FIELD].text, kOfflineNotice);
            EXPECT_TRUE(dialog[TESMARK_URL_FIELD].toldDisabled);
        });
        EXPECT_EQ(g_sealPositionMode, static_cast<int>(mode));
    }
}

TEST_F(OnlineUrlTest, WithoutASettingTheModeOfAnEarlierDialogStays) {
    EXPECT_EQ(Field(), kOfflineNotice);
    g_sealPositionMode = 1;
    m_prefix.SetText("sWSURL", kStored);
    EXPECT_EQ(Field(), "192.0.2.45/qelm42");
    EXPECT_EQ(g_sealPositionMode, 1);
}

TEST_F(OnlineUrlTest, AModeOfMoreThanFourBytesCountsAsAbsentAndAShorterOneFillsItsOwn) {
    g_sealPositionMode = 0x300;
    m_prefix.SetBytes("bSealPosition", std::string("\1\0\0\0\0", 5));
    EXPECT_EQ(Field(), kOfflineNotice);
    EXPECT_EQ(g_sealPositionMode, 0x300);
    m_prefix.SetBytes("bSealPosition", "\1");
    EXPECT_EQ(Field(), "");
    EXPECT_EQ(g_sealPositionMode, 1);
}

TEST_F(OnlineUrlTest, WithoutRightsOnTheSettingsTheModeStaysAndAnOnlineFieldIsEmpty) {
    BeOnline();
    const LockedStore locked(m_prefix);
    EXPECT_EQ(Field(), kOfflineNotice);
    EXPECT_EQ(g_sealPositionMode, 0);
    g_sealPositionMode = 1;
    EXPECT_EQ(Field(), "");
    EXPECT_EQ(g_sealPositionMode, 1);
}

TEST_F(OnlineUrlTest, OkStoresTheWholeAddressUntested) {
    EXPECT_EQ(StoredFor("192.0.2.7/qelm7"), "http://192.0.2.7/qelm7/QelmServlet");
    EXPECT_THAT(Tried(), IsEmpty());
}

TEST_F(OnlineUrlTest, OkAtOnceStoresWhatTheFieldShows) {
    BeOnline("https://192.0.2.45/QelmServlet?x=1");
    Show([](ScriptedDialog& dialog) { dialog.PressButton(TESMARK_BUTTON_OK); });
    EXPECT_EQ(ReadTextSetting("sWSURL"), "http:///192.0.2.45/QelmServlet");
}

TEST_F(OnlineUrlTest, WhiteSpaceAtBothEndsIsLeftOut) {
    EXPECT_EQ(StoredFor(" \t\r\n\v\f192.0.2.7 /qelm7 \t\r\n\v\f"),
              "http://192.0.2.7 /qelm7/QelmServlet");
    EXPECT_EQ(StoredFor("主机 "), "http://主机/QelmServlet");
    EXPECT_EQ(StoredFor("　a　"), "http://　a　/QelmServlet");
}

TEST_F(OnlineUrlTest, TheSecondByteOfACharacterIsNoBlankOfItsOwn) {
    BeOnline();
    for (const char* text : {"a\x81 ", "a\x81  ", "a\x81"}) BoxesOfTestWith(text);
    EXPECT_THAT(Tried(), ElementsAre("http://a\x81 /QelmServlet", "http://a\x81 /QelmServlet",
                                     "http://a\x81/QelmServlet"));
}

TEST_F(OnlineUrlTest, AFieldOfNothingOrBlanksIsStoredAsTheFixedPartsAlone) {
    EXPECT_EQ(StoredFor(""), "http:///QelmServlet");
    EXPECT_EQ(StoredFor("  \t "), "http:///QelmServlet");
}

TEST_F(OnlineUrlTest, OfflineOkStoresNothing) {
    m_prefix.SetText("sWSURL", kStored);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    EXPECT_EQ(ReadTextSetting("sWSURL"), kStored);
}

TEST_F(OnlineUrlTest, AnAddressThatCannotBeStoredIsConfirmedAllTheSame) {
    BeOnline();
    std::optional<LockedStore> locked;
    EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                  locked.emplace(m_prefix);
                  dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    locked.reset();
    EXPECT_EQ(ReadTextSetting("sWSURL"), kStored);
}

TEST_F(OnlineUrlTest, CancelAndTheCloseBoxStoreNothing) {
    BeOnline();
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
                  dialog.PressButton(TESMARK_BUTTON_CANCEL);
              }),
              kDialogCancelled);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
                  dialog.CloseWindow();
              }),
              kDialogCancelled);
    EXPECT_EQ(ReadTextSetting("sWSURL"), kStored);
}

TEST_F(OnlineUrlTest, ADialogThatCannotBeShownReadsNothing) {
    BeOnline();
    EXPECT_EQ(Show(nullptr), platform::kDialogNotShown);
    EXPECT_EQ(g_sealPositionMode, 0);
}

TEST_F(OnlineUrlTest, TheTestTriesTheTypedAddressTellsTheOutcomeAndStoresNothing) {
    BeOnline();
    fakes::On("dwnt_http_response_data_get").Gives("<ROOT><STATUSCODE>200</STATUSCODE></ROOT>");
    EXPECT_THAT(BoxesOfTestWith("  192.0.2.7/qelm7 "), HasSubstr("连接服务器成功！"));
    EXPECT_THAT(Tried(), ElementsAre("http://192.0.2.7/qelm7/QelmServlet"));
    EXPECT_EQ(ReadTextSetting("sWSURL"), kStored);
}

TEST_F(OnlineUrlTest, AFailedTestLeavesTheDialogOpenForAnother) {
    BeOnline();
    fakes::On("dwnt_http_processEx").ReturnsAt(1, 5);
    fakes::On("dwnt_http_response_data_get").Gives("<ROOT><STATUSCODE>200</STATUSCODE></ROOT>");
    ShownBoxes boxes;
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_URL_TEST);
                  dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
                  dialog.PressButton(TESMARK_URL_TEST);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    const std::string shown = Utf8ToAnsi(boxes.Take());
    const auto failure = shown.find("连接服务器失败!");
    ASSERT_NE(failure, std::string::npos);
    EXPECT_NE(shown.find("连接服务器成功！", failure), std::string::npos);
    EXPECT_THAT(Tried(), ElementsAre(kStored, "http://192.0.2.7/QelmServlet"));
    EXPECT_EQ(ReadTextSetting("sWSURL"), "http://192.0.2.7/QelmServlet");
}

TEST_F(OnlineUrlTest, OfflineTheTestTriesAnAddressMadeOfTheNotice) {
    const ShownBoxes boxes;
    Show([](ScriptedDialog& dialog) { dialog.PressButton(TESMARK_URL_TEST); });
    EXPECT_THAT(Tried(), ElementsAre("http://" + std::string(kOfflineNotice) + "/QelmServlet"));
}

TEST_F(OnlineUrlTest, TheLongestAddressIsTriedAndStored) {
    const std::string host(kMostHost, 'h');
    BeOnline();
    BoxesOfTestWith(host);
    EXPECT_THAT(Tried(), ElementsAre("http://" + host + "/QelmServlet"));
    BoxesOfTestWith(std::string(19, ' ') + host);
    EXPECT_EQ(Tried().size(), 2u);
    StoredFor(host);
    std::string stored(600, '\0');
    std::size_t size = stored.size();
    ASSERT_TRUE(platform::QueryRegistryValue(OpenSettings().key, "sWSURL", stored.data(), &size));
    EXPECT_EQ(size, 512u);
}

}  // namespace
