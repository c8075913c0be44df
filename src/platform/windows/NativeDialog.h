// NativeDialog.h - a dialog of the system's, with its controls.
#pragma once

#include "platform/DialogWindow.h"
#include "platform/windows/Win32.h"

namespace platform {

// Over a window that it doesn't own.
class NativeDialog final : public DialogWindow {
public:
    explicit NativeDialog(HWND window) : m_window(window) {}

    bool HasEnded() const { return m_ended; }

    void End(int value) override;

    void AppendRow(int list, const std::string& text) override;
    void SelectRow(int list, int row) override;
    int SelectedRow(int list) const override;

    void SetText(int control, const std::string& text) override;
    std::string Text(int control, std::size_t capacity) const override;
    void TellDisabled(int control) override;

    TreeNode AppendNode(int tree, TreeNode parent, const std::string& text,
                        std::intptr_t data) override;
    void ExpandNode(int tree, TreeNode node) override;
    TreeNode SelectedNode(int tree) const override;
    std::intptr_t NodeData(int tree, TreeNode node) const override;

    Rectangle ClientArea(int control) const override;
    void Fill(int control, Colour colour) override;
    void Draw(int control, const Picture& picture, const Rectangle& place) override;

    Rectangle Bounds() const override;
    std::optional<Rectangle> ParentArea() const override;
    std::optional<Owner> OwnerWindow() const override;
    std::optional<Rectangle> WorkArea(Nearest nearest) const override;
    void MoveTo(int left, int top) override;

private:
    // The control of that number if it is of that kind; null otherwise.
    HWND List(int control) const;
    HWND FieldOrLabel(int control) const;
    HWND Label(int control) const;
    HWND Tree(int control) const;

    HWND m_window;
    bool m_ended = false;
};

}  // namespace platform
