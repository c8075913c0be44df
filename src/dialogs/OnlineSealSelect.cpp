#include "dialogs/OnlineSealSelect.h"

#include "dialogs/ListDialog.h"
#include "dialogs/Resource.h"

namespace {

class OnlineSealDlgProc final : public CListDialog {
public:
    OnlineSealDlgProc() : CListDialog(TESMARK_ONLINE_SEAL_LIST) {}

    void OnOpen(platform::DialogWindow& window) override { ShowEntries(window, g_onlineSealNames); }

private:
    void Take(const TextPair& entry) override { g_onlineSealPick = entry.second; }
};

}  // namespace

int ShowOnlineSealSelect() {
    OnlineSealDlgProc procedure;
    return platform::OpenDialog(kOnlineSealDialogModule, TESMARK_DIALOG_ONLINE_SEAL, procedure);
}
