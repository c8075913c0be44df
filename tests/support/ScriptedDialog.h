// ScriptedDialog.h - a dialog without a window, whose user is the test.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Dialog.h"

// Has every control that it is asked for, of the kind that it is used as. Its screen is 1024 by 768
// pixels with a task bar of 40 at its bottom, where it comes up at the upper left corner, 500 by
// 300 in size; the client area of a control is 200 by 100.
class ScriptedDialog : public platform::DialogWindow {
public:
    struct Node {
        platform::TreeNode parent = platform::kNoNode;
        std::string text;
        std::intptr_t data = 0;
        bool expanded = false;
    };
    struct Drawing {
        platform::Picture picture;
        platform::Rectangle place;
    };
    // What stands in a control. Nodes are numbered from 1, in the order of their making.
    struct Control {
        std::vector<std::string> rows;
        int row = -1;
        std::string text;
        bool toldDisabled = false;
        std::vector<Node> nodes;
        platform::TreeNode node = platform::kNoNode;
        std::vector<platform::Colour> fills;
        std::vector<Drawing> drawings;
    };

    explicit ScriptedDialog(platform::DialogProcedure& procedure) : m_procedure(procedure) {}

    // What the user does; once the dialog has ended, nothing. A dialog that leaves alone that it is
    // to be closed is closed as the system does it.
    void Open();
    void PressButton(int button);
    void CloseWindow();
    void PickRow(int list, int row);
    void Type(int control, const std::string& text);
    void PickNode(int tree, platform::TreeNode node);
    // The first node of that text in the order of their making; false if there is none.
    bool PickNode(int tree, const std::string& text);

    bool HasEnded() const { return m_ended; }
    // What it ended with.
    int Value() const { return m_value; }
    const Control& operator[](int control) const;

    void End(int value) override;
    void AppendRow(int list, const std::string& text) override;
    void SelectRow(int list, int row) override;
    int SelectedRow(int list) const override;
    void SetText(int control, const std::string& text) override;
    std::string Text(int control, std::size_t capacity) const override;
    void TellDisabled(int control) override;
    platform::TreeNode AppendNode(int tree, platform::TreeNode parent, const std::string& text,
                                  std::intptr_t data) override;
    void ExpandNode(int tree, platform::TreeNode node) override;
    platform::TreeNode SelectedNode(int tree) const override;
    std::intptr_t NodeData(int tree, platform::TreeNode node) const override;
    platform::Rectangle ClientArea(int) const override { return {0, 0, 200, 100}; }
    void Fill(int control, platform::Colour colour) override;
    void Draw(int control, const platform::Picture& picture,
              const platform::Rectangle& place) override;

    platform::Rectangle Bounds() const override { return m_bounds; }
    std::optional<platform::Rectangle> ParentArea() const override { return {}; }
    std::optional<Owner> OwnerWindow() const override { return {}; }
    std::optional<platform::Rectangle> WorkArea(Nearest) const override;
    void MoveTo(int left, int top) override;

private:
    platform::DialogProcedure& m_procedure;
    mutable std::map<int, Control> m_controls;
    platform::Rectangle m_bounds{0, 0, 500, 300};
    bool m_ended = false;
    int m_value = platform::kDialogNotShown;
};
