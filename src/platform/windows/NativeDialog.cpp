#include "platform/windows/NativeDialog.h"

#include "platform/windows/Painting.h"
// After the system's own header.
#include <commctrl.h>

namespace platform {

namespace {

LPARAM AsParameter(const void* pointer) { return reinterpret_cast<LPARAM>(pointer); }

HTREEITEM Native(TreeNode node) { return reinterpret_cast<HTREEITEM>(node); }

// Null if the dialog has no such control, or one of another class. A number below 0 is shared by
// the controls that are never spoken of.
HWND FindControl(HWND dialog, int control, const char* windowClass) {
    const HWND found = control < 0 ? nullptr : GetDlgItem(dialog, control);
    char name[32] = {};  // a longer one is cut, and none of those that are looked for
    const bool isNamed = found != nullptr && GetClassNameA(found, name, sizeof name) != 0;
    return isNamed && lstrcmpiA(name, windowClass) == 0 ? found : nullptr;
}

LRESULT Send(HWND control, UINT message, WPARAM first, LPARAM second) {
    return control != nullptr ? SendMessageA(control, message, first, second) : 0;
}

// The surface of a control while this lives; null if there is no such control.
class Surface {
public:
    explicit Surface(HWND control)
        : m_window(control), m_surface(m_window != nullptr ? GetDC(m_window) : nullptr) {}
    ~Surface() {
        if (m_surface != nullptr) ReleaseDC(m_window, m_surface);
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    HDC Get() const { return m_surface; }

private:
    HWND m_window;
    HDC m_surface;
};

Rectangle BoundsOf(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    return FromNative(bounds);
}

Rectangle ClientAreaOf(HWND window) {
    RECT area{};
    if (window != nullptr) GetClientRect(window, &area);
    return FromNative(area);
}

}  // namespace

HWND NativeDialog::List(int control) const { return FindControl(m_window, control, WC_COMBOBOXA); }

HWND NativeDialog::Label(int control) const { return FindControl(m_window, control, WC_STATICA); }

HWND NativeDialog::Tree(int control) const { return FindControl(m_window, control, WC_TREEVIEWA); }

HWND NativeDialog::FieldOrLabel(int control) const {
    const HWND field = FindControl(m_window, control, WC_EDITA);
    return field != nullptr ? field : Label(control);
}

void NativeDialog::End(int value) {
    if (m_ended) return;
    m_ended = true;
    EndDialog(m_window, value);
}

void NativeDialog::AppendRow(int list, const std::string& text) {
    Send(List(list), CB_INSERTSTRING, static_cast<WPARAM>(-1), AsParameter(text.c_str()));
}

void NativeDialog::SelectRow(int list, int row) {
    Send(List(list), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

int NativeDialog::SelectedRow(int list) const {
    const HWND control = List(list);
    if (control == nullptr) return CB_ERR;
    return static_cast<int>(Send(control, CB_GETCURSEL, 0, 0));
}

void NativeDialog::SetText(int control, const std::string& text) {
    Send(FieldOrLabel(control), WM_SETTEXT, 0, AsParameter(text.c_str()));
}

std::string NativeDialog::Text(int control, std::size_t capacity) const {
    std::string text(capacity, '\0');
    Send(FieldOrLabel(control), WM_GETTEXT, capacity, AsParameter(text.data()));
    return text.c_str();
}

void NativeDialog::TellDisabled(int control) {
    if (control >= 0) Send(GetDlgItem(m_window, control), WM_ENABLE, FALSE, 0);
}

TreeNode NativeDialog::AppendNode(int tree, TreeNode parent, const std::string& text,
                                  std::intptr_t data) {
    std::string copy = text;
    TVINSERTSTRUCTA node{};
    node.hParent = parent == kNoNode ? TVI_ROOT : Native(parent);
    node.hInsertAfter = TVI_LAST;
    node.item.mask = TVIF_TEXT | TVIF_PARAM;
    node.item.pszText = copy.data();
    node.item.lParam = data;
    return static_cast<TreeNode>(Send(Tree(tree), TVM_INSERTITEMA, 0, AsParameter(&node)));
}

void NativeDialog::ExpandNode(int tree, TreeNode node) {
    Send(Tree(tree), TVM_EXPAND, TVE_EXPAND, static_cast<LPARAM>(node));
}

TreeNode NativeDialog::SelectedNode(int tree) const {
    return static_cast<TreeNode>(Send(Tree(tree), TVM_GETNEXTITEM, TVGN_CARET, 0));
}

std::intptr_t NativeDialog::NodeData(int tree, TreeNode node) const {
    TVITEMA item{};
    item.mask = TVIF_HANDLE | TVIF_PARAM;
    item.hItem = Native(node);
    Send(Tree(tree), TVM_GETITEMA, 0, AsParameter(&item));
    return item.lParam;
}

Rectangle NativeDialog::ClientArea(int control) const { return ClientAreaOf(Label(control)); }

void NativeDialog::Fill(int control, Colour colour) {
    const Surface surface(Label(control));
    if (surface.Get() != nullptr) PaintColour(surface.Get(), colour, ClientArea(control));
}

void NativeDialog::Draw(int control, const Picture& picture, const Rectangle& place) {
    const Surface surface(Label(control));
    if (surface.Get() != nullptr) PaintPicture(surface.Get(), picture, place);
}

Rectangle NativeDialog::Bounds() const { return BoundsOf(m_window); }

std::optional<Rectangle> NativeDialog::ParentArea() const {
    if ((GetWindowLongA(m_window, GWL_STYLE) & WS_CHILD) == 0) return {};
    return ClientAreaOf(GetParent(m_window));
}

std::optional<WindowPlacement::Owner> NativeDialog::OwnerWindow() const {
    const HWND owner = GetWindow(m_window, GW_OWNER);
    if (owner == nullptr) return {};
    const LONG style = GetWindowLongA(owner, GWL_STYLE);
    return Owner{BoundsOf(owner), (style & WS_VISIBLE) != 0, (style & WS_MINIMIZE) != 0};
}

std::optional<Rectangle> NativeDialog::WorkArea(Nearest nearest) const {
    const HWND window = nearest == Nearest::ToOwner ? GetWindow(m_window, GW_OWNER) : m_window;
    const HMONITOR monitor = MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (monitor == nullptr || GetMonitorInfoA(monitor, &info) == 0) return {};
    return FromNative(info.rcWork);
}

void NativeDialog::MoveTo(int left, int top) {
    SetWindowPos(m_window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace platform
