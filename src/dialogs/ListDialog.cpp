#include "dialogs/ListDialog.h"

#include "platform/InvalidParameter.h"

namespace {

constexpr char kPleasePick[] = "-----请选择-----";

}  // namespace

void CListDialog::ShowEntries(platform::DialogWindow& window,
                              const std::vector<TextPair>& entries) {
    m_entries = entries;
    window.AppendRow(m_list, kPleasePick);
    for (const auto& [label, value] : m_entries) window.AppendRow(m_list, label);
    window.SelectRow(m_list, 0);
}

void CListDialog::OnConfirm(platform::DialogWindow& window) {
    const int row = window.SelectedRow(m_list);
    if (row == 0) return;
    if (row < 0 || static_cast<std::size_t>(row) > m_entries.size()) {
        return platform::RaiseInvalidParameter();
    }
    Take(m_entries[static_cast<std::size_t>(row) - 1]);
    window.End(kDialogConfirmed);
}
