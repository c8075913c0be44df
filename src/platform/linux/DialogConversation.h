// DialogConversation.h - the library's end of the conversation with the program that shows a
// dialog: what the procedure does goes there, and what the user does comes from there.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Dialog.h"
#include "platform/linux/dialogprogram/Messages.h"
#include "platform/linux/dialogprogram/Templates.h"

namespace platform {

// The way to the program and back.
class DialogLink {
public:
    enum class Patience {
        Program,  // until the window is there: within what is left of the opening's time
        User,     // without a limit
    };
    virtual ~DialogLink() = default;

    // Hands over a line with its line feed. False if it can't be: nothing more can then.
    virtual bool Write(const std::string& line) = 0;
    // The next line, without its line feed. Nothing if none comes any more, or not in time.
    virtual std::optional<std::string> Read(Patience patience) = 0;
};

// The dialog as its logic sees it. Once the link is broken, nothing is told to the program any
// more, and what is asked is answered as it stood.
class RemoteDialog final : public DialogWindow {
public:
    RemoteDialog(DialogLink& link, const DialogTemplate& dialog) : m_link(link), m_dialog(dialog) {}

    // Makes the window, not visible yet. False if the program can't, or fails.
    bool Build();
    // Makes it visible; the same.
    bool Show();
    // Waits for what the user does next. Nothing if the program fails.
    std::optional<DialogReport> NextEvent();
    void TellHandled() { Say(command::Done{}); }
    void TellEnd() { Say(command::End{}); }

    bool HasEnded() const { return m_ended; }
    int Value() const { return m_value; }

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
    Rectangle Bounds() const override { return m_bounds; }
    std::optional<Rectangle> ParentArea() const override { return {}; }
    std::optional<Owner> OwnerWindow() const override { return {}; }
    std::optional<Rectangle> WorkArea(Nearest) const override { return m_workArea; }
    void MoveTo(int left, int top) override;

private:
    struct Control {
        int rows = 0;
        int row = -1;
        std::string text;                 // GBK
        std::vector<std::intptr_t> data;  // of the nodes, which count from 1
        TreeNode node = kNoNode;
        Rectangle area;
    };

    void Say(const DialogCommand& command);
    std::optional<DialogReport> Hear(DialogLink::Patience patience);
    bool HearSurfaces();
    // Overloads for each state: false if it can't be.
    bool Take(const report::Row& row);
    bool Take(const report::Text& text);
    bool Take(const report::Node& node);
    bool Take(const report::Surface& surface);
    bool IsEvent(const DialogReport& report) const;

    bool Is(int control, ControlKind kind) const;
    bool HasNode(int tree, TreeNode node) const;
    const Control& At(int control) const;

    DialogLink& m_link;
    const DialogTemplate& m_dialog;
    bool m_broken = false;
    bool m_ended = false;
    int m_value = kDialogNotShown;
    std::map<int, Control> m_controls;
    Rectangle m_bounds;
    std::optional<Rectangle> m_workArea;
};

// Shows `dialog` by the program at the other end, as OpenDialog does.
int RunDialog(DialogLink& link, const DialogTemplate& dialog, DialogProcedure& procedure);

// Shows a message box and waits for its answer. False if it couldn't be shown. Texts are GBK.
bool RunMessageBox(DialogLink& link, const char* text, const char* caption, int style);

}  // namespace platform
