// A front end of somebody else's may have lists that take a free text.
#include "SealDialogTest.h"
#include "dialogs/CertSelect.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineSealSelect.h"

namespace {

using FreeTextOnLinux = SealDialogTest;

TEST_F(FreeTextOnLinux, ATextThatIsNoCertificateKeepsTheDialogOpen) {
    g_dialogCertLabel = "one||cert-1&&&";
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.Type(TESMARK_CERT_LIST, "text");
        dialog.PressButton(TESMARK_BUTTON_OK);
        EXPECT_FALSE(dialog.HasEnded());
    });
    EXPECT_EQ(ShowCertSelect(), kDialogCancelled);
    EXPECT_TRUE(g_currentCertId.Empty());
}

TEST_F(FreeTextOnLinux, ATextThatIsNoSealKeepsTheDialogOpen) {
    g_onlineSealNames = {{"a seal", "no-3"}};
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.Type(TESMARK_ONLINE_SEAL_LIST, "text");
        dialog.PressButton(TESMARK_BUTTON_OK);
        EXPECT_FALSE(dialog.HasEnded());
    });
    EXPECT_EQ(ShowOnlineSealSelect(), kDialogCancelled);
    EXPECT_EQ(g_onlineSealPick, "");
}

TEST_F(FreeTextOnLinux, AListWithoutRowsStaysOpenToo) {
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.PressButton(TESMARK_BUTTON_OK);
        EXPECT_FALSE(dialog.HasEnded());
    });
    EXPECT_EQ(ShowCertSelect(), kDialogCancelled);
}

}  // namespace
