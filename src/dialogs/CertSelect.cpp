#include "dialogs/CertSelect.h"

#include "dialogs/ListDialog.h"
#include "dialogs/Resource.h"
#include "seal/KeyLists.h"

namespace {

std::vector<TextPair> ReadEntries(std::string_view list) {
    std::vector<TextPair> entries;
    ListedCert entry;
    for (std::size_t position = 0; NextListedCert(list, position, entry);) {
        entries.emplace_back(entry.label, entry.certId);
    }
    return entries;
}

class CertSelectDlgProc final : public CListDialog {
public:
    CertSelectDlgProc() : CListDialog(TESMARK_CERT_LIST) {}

    // Without certificates the list doesn't even ask to pick one.
    void OnOpen(platform::DialogWindow& window) override {
        g_dialogCertItems.clear();
        if (g_dialogCertLabel.empty()) return;
        g_dialogCertItems = ReadEntries(g_dialogCertLabel);
        ShowEntries(window, g_dialogCertItems);
    }

private:
    void Take(const TextPair& entry) override {
        g_pickedCertLabel = entry.first;
        g_currentCertId.Assign(entry.second);
    }
};

}  // namespace

int ShowCertSelect() {
    CertSelectDlgProc procedure;
    return platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, procedure);
}
