// Controls.h - the controls of an open dialog, as its user sees and uses them.
#pragma once

#include <string>
#include <vector>

#include "dialogs/Resource.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <commctrl.h>

// The rows of a list as the user sees them from the top.
inline std::vector<std::string> RowsOf(HWND dialog, int list) {
    std::vector<std::string> rows;
    const LRESULT count = SendDlgItemMessageA(dialog, list, CB_GETCOUNT, 0, 0);
    for (LRESULT row = 0; row < count; ++row) {
        const auto index = static_cast<WPARAM>(row);
        const LRESULT length = SendDlgItemMessageA(dialog, list, CB_GETLBTEXTLEN, index, 0);
        std::string text(static_cast<std::size_t>(length) + 1, '\0');
        SendDlgItemMessageA(dialog, list, CB_GETLBTEXT, index,
                            reinterpret_cast<LPARAM>(text.data()));
        rows.emplace_back(text.c_str());
    }
    return rows;
}

// The user's view of the tree.
class Tree {
public:
    explicit Tree(HWND dialog) : m_window(GetDlgItem(dialog, TESMARK_SEAL_TREE)) {}

    LRESULT Next(WPARAM relation, LRESULT node = 0) const {
        return SendMessageA(m_window, TVM_GETNEXTITEM, relation, node);
    }
    std::string Text(LRESULT node) const {
        char text[64] = {};
        TVITEMA item{};
        item.mask = TVIF_HANDLE | TVIF_TEXT;
        item.hItem = reinterpret_cast<HTREEITEM>(node);
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(m_window, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        return text;
    }
    bool IsExpanded(LRESULT node) const {
        const LRESULT state =
            SendMessageA(m_window, TVM_GETITEMSTATE, static_cast<WPARAM>(node), TVIS_EXPANDED);
        return (state & TVIS_EXPANDED) != 0;
    }
    // The first node of that text from the top; 0 if there is none.
    LRESULT Find(const std::string& text) const { return FindFrom(Next(TVGN_ROOT), text); }
    void Select(LRESULT node) const { SendMessageA(m_window, TVM_SELECTITEM, TVGN_CARET, node); }

private:
    LRESULT FindFrom(LRESULT node, const std::string& text) const {
        for (; node != 0; node = Next(TVGN_NEXT, node)) {
            if (Text(node) == text) return node;
            if (const LRESULT below = FindFrom(Next(TVGN_CHILD, node), text)) return below;
        }
        return 0;
    }

    HWND m_window;
};

// What stands on the preview, as 0xRRGGBB.
inline unsigned PreviewPixel(HWND dialog, int x, int y) {
    const HWND preview = GetDlgItem(dialog, TESMARK_SEAL_PREVIEW);
    const HDC surface = GetDC(preview);
    const COLORREF pixel = GetPixel(surface, x, y);
    ReleaseDC(preview, surface);
    return static_cast<unsigned>(GetRValue(pixel) << 16 | GetGValue(pixel) << 8 | GetBValue(pixel));
}

inline SIZE PreviewSize(HWND dialog) {
    RECT area{};
    GetClientRect(GetDlgItem(dialog, TESMARK_SEAL_PREVIEW), &area);
    return {area.right, area.bottom};
}

// Types a text into a list's edit field as its user does.
inline void TypeIntoList(HWND dialog, int list, const char* text) {
    const HWND field = GetWindow(GetDlgItem(dialog, list), GW_CHILD);
    SetFocus(field);
    SendMessageA(field, EM_SETSEL, 0, -1);
    for (; *text != '\0'; ++text) SendMessageA(field, WM_CHAR, static_cast<WPARAM>(*text), 0);
}
