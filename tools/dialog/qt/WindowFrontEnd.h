// WindowFrontEnd.h - shows what the conversation with the library asks for in windows.
#pragma once

#include <memory>

#include "tools/dialog/DialogTalk.h"

class DialogWidget;
class MessageWindow;
class TopWindow;

class WindowFrontEnd : public FrontEnd {
public:
    WindowFrontEnd();
    ~WindowFrontEnd() override;

    // Where the user's acts go. To be told before anything else; `answered` is called once the user
    // has answered a message box and the conversation knows it.
    void ReportTo(DialogTalk& talk, std::function<void()> answered);

    Placement Build(const platform::DialogTemplate& dialog) override;
    void Show() override;
    void ShowMessage(int style, const std::string& caption, const std::string& text) override;
    void AppendRow(int list, const std::string& text) override;
    void SelectRow(int list, int row) override;
    void SetText(int control, const std::string& text) override;
    void TellDisabled(int control) override;
    void AppendNode(int tree, int parent, int node, const std::string& text) override;
    void ExpandNode(int tree, int node) override;
    void Fill(int control, platform::Colour colour) override;
    void Draw(int control, const platform::Picture& picture,
              const platform::Rectangle& place) override;
    void Move(int left, int top) override;

private:
    void Listen();
    void TellSurfaces();

    DialogTalk* m_talk = nullptr;
    std::function<void()> m_answered;
    std::unique_ptr<DialogWidget> m_dialog;
    std::unique_ptr<MessageWindow> m_message;
};
