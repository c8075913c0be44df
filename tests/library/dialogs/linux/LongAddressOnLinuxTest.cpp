// A front end of somebody else's may have a field without a limit.
#include "SealDialogTest.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineUrl.h"
#include "foundation/Registry.h"

namespace {

class LongAddressOnLinux : public SealDialogTest {
protected:
    LongAddressOnLinux() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", "before");
    }
};

TEST_F(LongAddressOnLinux, IsNeitherTriedNorStoredAndKeepsTheDialogOpen) {
    for (const std::size_t length : {493u, 511u, 512u, 20'000u}) {
        const ScriptedDialogs dialogs([length](ScriptedDialog& dialog) {
            dialog.Type(TESMARK_URL_FIELD, std::string(length, 'h'));
            dialog.PressButton(TESMARK_URL_TEST);
            dialog.PressButton(TESMARK_BUTTON_OK);
            EXPECT_FALSE(dialog.HasEnded());
        });
        EXPECT_EQ(ShowOnlineUrl(), kDialogCancelled);
    }
    EXPECT_EQ(fakes::CountCalls("dwnt_context_init"), 0);
    EXPECT_EQ(ReadTextSetting("sWSURL"), "before");
}

TEST_F(LongAddressOnLinux, MayBeShortenedAndStoredThen) {
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.Type(TESMARK_URL_FIELD, std::string(493, 'h'));
        dialog.PressButton(TESMARK_BUTTON_OK);
        dialog.Type(TESMARK_URL_FIELD, "192.0.2.7");
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    EXPECT_EQ(ShowOnlineUrl(), kDialogConfirmed);
    EXPECT_EQ(ReadTextSetting("sWSURL"), "http://192.0.2.7/QelmServlet");
}

}  // namespace
