// ListDialog.h - what the two dialogs with a drop-down list have in common.
#pragma once

#include "dialogs/DialogFrame.h"
#include "host/ModuleState.h"

// Row 0 of the list asks the user to pick and is no entry itself: OK does nothing while it is
// selected. A selection that is no row at all, as after the user typed a text of his own, is
// platform::RaiseInvalidParameter, and where that returns the dialog stays open. What is taken is
// what the row shows, also where a host's call during the dialog filled the module's list anew.
class CListDialog : public CDialogFrame {
protected:
    explicit CListDialog(int list) : m_list(list) {}

    // The first text of an entry is what its row shows.
    void ShowEntries(platform::DialogWindow& window, const std::vector<TextPair>& entries);
    void OnConfirm(platform::DialogWindow& window) final;
    // The user has confirmed this entry.
    virtual void Take(const TextPair& entry) = 0;

private:
    int m_list;
    std::vector<TextPair> m_entries;
};
