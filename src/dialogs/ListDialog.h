// ListDialog.h - what the two dialogs with a drop-down list have in common.
#pragma once

#include "dialogs/DialogFrame.h"
#include "host/ModuleState.h"

// Row 0 of the list asks the user to pick and is no entry itself: OK does nothing while it is
// selected. A selection that is no row at all, as after the user typed a text of his own, is
// platform::RaiseInvalidParameter, and where that returns the dialog stays open.
class CListDialog : public CDialogFrame {
protected:
    // The first text of an entry is what its row shows. `entries` outlives the dialog.
    CListDialog(int list, const std::vector<TextPair>& entries)
        : m_list(list), m_entries(entries) {}

    void ShowEntries(platform::DialogWindow& window) const;
    void OnConfirm(platform::DialogWindow& window) final;
    // The user has confirmed this entry.
    virtual void Take(const TextPair& entry) = 0;

private:
    int m_list;
    const std::vector<TextPair>& m_entries;
};
