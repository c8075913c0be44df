// TtyFrontEnd.h - dialogs in lines of text: what can be chosen has a number, buttons have a letter,
// and the preview is told in words.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/dialog/DialogTalk.h"
#include "tools/dialog/tty/TtyHints.h"

// What comes from outside is printed so that it can't steer the terminal, and never as more than
// one line.
class TtyFrontEnd final : public FrontEnd {
public:
    // Takes UTF-8, whole lines but for the prompt at the end.
    using Print = std::function<void(const std::string& text)>;

    TtyFrontEnd(const TtyHints& hints, Print print);

    // To be told before anything is shown; has to outlive this.
    void TellTo(DialogTalk& talk) { m_talk = &talk; }
    // A line that the user has typed, in UTF-8 without its end.
    void Typed(const std::string& line);
    // The user wants to be out of it.
    void Closed();
    // The last prompt once more, as after a stop.
    void Prompt();
    // The user is asked for something.
    bool IsOpen() const { return m_open; }

    Placement Build(const platform::DialogTemplate& dialog) override;
    void Show() override;
    void EventHandled() override;
    void ShowMessage(int style, const std::string& caption, const std::string& text) override;
    void AppendRow(int list, const std::string& text) override;
    void SelectRow(int list, int row) override;
    void SetText(int control, const std::string& text) override;
    void TellDisabled(int) override {}
    void AppendNode(int tree, int parent, int node, const std::string& text) override;
    void ExpandNode(int, int) override {}
    void Fill(int control, platform::Colour colour) override;
    void Draw(int control, const platform::Picture& picture,
              const platform::Rectangle& place) override;
    void Move(int, int) override {}

private:
    struct Node {
        int parent;
        int depth;
        std::string text;
    };
    // Of the one list, tree, edit field and surface that a template has at most.
    struct Contents {
        std::vector<std::string> rows;
        int row = -1;
        std::vector<Node> nodes;  // number 1 first
        std::vector<int> shown;   // the nodes from the top, as they are numbered on the terminal
        int node = 0;
        std::string field;
        std::string preview;
    };

    int Find(platform::ControlKind kind) const;
    bool PressButton(const std::string& typed);
    void Choose(const std::string& number);
    void ChooseRow(int row);
    void ChooseNode(int place);

    void PrintAll();
    void PrintRows();
    void PrintNodes();
    void PrintField();
    void PrintPreview();
    void Line(const std::string& text) { m_print(text + "\n"); }
    std::string LabelOf(const platform::TemplateControl& button) const;

    const TtyHints& m_hints;
    Print m_print;
    DialogTalk* m_talk = nullptr;
    const platform::DialogTemplate* m_dialog = nullptr;
    Contents m_contents;
    std::string m_prompt;
    bool m_open = false;
    bool m_changed = false;         // rows, nodes or field, since they were printed
    bool m_previewChanged = false;  // the same
};
