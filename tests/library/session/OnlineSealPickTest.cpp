// Several seals of the online service, of which the user picks one in the library's own dialog.
#include "OnlineTest.h"
#include "dialogs/Resource.h"
#include "host/ModuleState.h"
#include "session/OnlineSeal.h"
#include "session/SealRetrieval.h"
#include "support/ScriptedDialogs.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class OnlineSealPickTest : public OnlineTest {
protected:
    OnlineSealPickTest() {
        m_listAnswer = SealList(
            2, SealInfo("7001", Utf8(u8"财务专用章")) + SealInfo("7002", Utf8(u8"合同专用章")));
        g_onlineSealPick = "earlier";
        g_stampPictureMode = 0;
        g_currentCertId.Assign("cert-1");
    }
    ~OnlineSealPickTest() override {
        state::ClearSelectKeyID();
        g_stampPictureMode = 1;
        g_onlineSealNames.clear();
        g_onlineSealPick.clear();
        if (g_appOpt.initialised) KVLUnInitialize(g_appOpt);
    }

    int Query() {
        m_length = 0;
        return session::GetSealInfo(nullptr, &m_length);
    }
    static void Pick(ScriptedDialog& dialog, int row) {
        dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, row);
        dialog.PressButton(TESMARK_BUTTON_OK);
    }
};

TEST_F(OnlineSealPickTest, TheUserPicksByNameAndTheServiceIsAskedByNumber) {
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        EXPECT_THAT(dialog[TESMARK_ONLINE_SEAL_LIST].rows,
                    ElementsAre("-----请选择-----", "财务专用章", "合同专用章"));
        Pick(dialog, 2);
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt 102"));
    EXPECT_THAT(Sent(), ElementsAre(ListRequest(), SealRequest("7002")));
    EXPECT_THAT(g_onlineSealNames,
                ElementsAre(Pair("财务专用章", "7001"), Pair("合同专用章", "7002")));
    EXPECT_EQ(g_sealInfoCache.View(), "picture");
}

TEST_F(OnlineSealPickTest, CancelIsMinus20AndClearsWithoutASecondRequest) {
    g_esealMode = 1;
    g_selectedSeal.Assign("seal");
    g_sealInfoCache.Assign("cached");
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, 1);
        dialog.PressButton(TESMARK_BUTTON_CANCEL);
    });
    EXPECT_EQ(Query(), TESMARK_ONLINE_CANCELLED);
    EXPECT_EQ(Sent().size(), 1u);
    EXPECT_EQ(m_length, 0);
    EXPECT_TRUE(g_currentCertId.Empty());
    EXPECT_TRUE(g_selectedSeal.Empty());
    EXPECT_TRUE(g_sealInfoCache.Empty());
    EXPECT_EQ(g_esealMode, 0);
    EXPECT_EQ(g_onlineSealPick, "earlier");
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(OnlineSealPickTest, ADialogThatCannotBeShownAsksForTheSealWithoutANumberAndKeepsTheEarlier) {
    const ScriptedDialogs dialogs(nullptr);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(Sent().back(), SealRequest(""));
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(OnlineSealPickTest, TheSealsOfferedAreThoseOfThisListAlone) {
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) { Pick(dialog, 1); });
    ASSERT_EQ(Query(), 0);
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(g_onlineSealNames.size(), 2u);
    EXPECT_EQ(dialogs.Asked().size(), 2u);
}

TEST_F(OnlineSealPickTest, OneSealAsksNobodyAndLeavesTheOnesOfferedBefore) {
    g_onlineSealNames = {{"name", "number"}};
    m_listAnswer = SealList(1, SealInfo("7001", "name"));
    const ScriptedDialogs dialogs([](ScriptedDialog&) { ADD_FAILURE() << "shown"; });
    EXPECT_EQ(Query(), 0);
    EXPECT_THAT(dialogs.Asked(), IsEmpty());
    EXPECT_THAT(g_onlineSealNames, ElementsAre(Pair("name", "number")));
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(OnlineSealPickTest, NoMoreSealsAreOfferedThanAnAnswerOfThatLengthCouldTell) {
    m_listAnswer = Success("<COUNT>2147483647</COUNT>" + SealInfo("7001", "one") +
                           std::string(2'000'000, ' '));
    const ScriptedDialogs dialogs(nullptr);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_onlineSealNames.size(), m_listAnswer.size() / std::string("<SEALINFO>").size());
    EXPECT_EQ(g_onlineSealNames.front(), TextPair("one", "7001"));
}

TEST_F(OnlineSealPickTest, ElementsThatAreNeverEndedFillNoMoreEntriesThanThereAre) {
    constexpr int kEntries = 100'000;
    std::string entries;
    for (int i = 0; i < kEntries; ++i) entries += "<SEALINFO>";
    m_listAnswer = SealList(kEntries, entries);
    const ScriptedDialogs dialogs(nullptr);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_onlineSealNames.size(), static_cast<std::size_t>(kEntries));
}

TEST_F(OnlineSealPickTest, FewerSealsThanTheListPromisesAreOfferedWithEmptyOnes) {
    m_listAnswer = SealList(3, SealInfo("7001", "one") + SealInfo("7002", "two"));
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        EXPECT_THAT(dialog[TESMARK_ONLINE_SEAL_LIST].rows,
                    ElementsAre("-----请选择-----", "one", "two", ""));
        Pick(dialog, 3);
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(Sent().back(), SealRequest(""));
}

TEST_F(OnlineSealPickTest, MoreSealsThanTheListPromisesAreNotOffered) {
    m_listAnswer =
        SealList(2, SealInfo("1", "one") + SealInfo("2", "two") + SealInfo("3", "three"));
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        EXPECT_EQ(dialog[TESMARK_ONLINE_SEAL_LIST].rows.size(), 3u);
        Pick(dialog, 1);
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(Sent().back(), SealRequest("1"));
}

// A host's call out of the dialog's loop of messages has its own list and its own pick.
TEST_F(OnlineSealPickTest, AQuestionOutOfTheDialogIsAnsweredAndThePickIsTheRowsOwn) {
    int depth = 0;
    const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
        if (++depth == 2) return Pick(dialog, 2);
        m_listAnswer = SealList(2, SealInfo("8001", "other") + SealInfo("8002", "another"));
        int length = 0;
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), 0);
        EXPECT_EQ(length, 7);
        Pick(dialog, 1);
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(Sent().back(), SealRequest("7001"));
}

TEST_F(OnlineSealPickTest, AQuestionOutOfTheTreeOfTheKeysIsBusyForTheKeysAlone) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("first"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("second"));
    m_listAnswer = SealList(1, SealInfo("7001", "name"));
    m_prefix.SetNumber("bSealPosition", 0);
    const ScriptedDialogs dialogs([&](ScriptedDialog&) {
        int length = 0;
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), TESMARK_BUSY);
        m_prefix.SetNumber("bSealPosition", 1);
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), 0);
        EXPECT_EQ(length, 7);
    });
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt_x64 104"));
    EXPECT_EQ(g_sealInfoCache.View(), "picture");
}

TEST_F(OnlineSealPickTest, TheRetrievalAloneGivesThePictureAndSelectsNoName) {
    g_selectedSealName.Assign("as it was");
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) { Pick(dialog, 2); });
    ASSERT_EQ(EnsureServiceReady(), 0);
    CBuffer picture;
    int length = -7;
    EXPECT_EQ(FetchSealFromService(kUrl, "cert-1", picture, &length), 0);
    EXPECT_EQ(picture.View(), "picture");
    EXPECT_EQ(length, 7);
    EXPECT_EQ(g_selectedSeal.View(), fakes::EsSeal("picture"));
    EXPECT_EQ(g_selectedSealName.View(), "as it was");
    EXPECT_TRUE(g_sealInfoCache.Empty());
}

TEST_F(OnlineSealPickTest, AServiceThatACallOfTheHostsEndedMeanwhileIsStartedAgain) {
    CBuffer picture;
    int length = -7;
    m_listAnswer = SealList(1, SealInfo("7001", "name"));
    ASSERT_FALSE(g_appOpt.initialised);
    EXPECT_EQ(FetchSealFromService(kUrl, "cert-1", picture, &length), 0);
    KVLUnInitialize(g_appOpt);
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(FetchSealFromService(kUrl, "cert-1", picture, &length), TESMARK_SERVICE_FAILED);
}

}  // namespace
