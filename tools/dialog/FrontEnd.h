// FrontEnd.h - what shows a dialog or a message box to the user, as the conversation with the
// library drives it. Texts are UTF-8 and come from outside: they may hold line feeds, returns and
// tabs, and no other control character.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/dialogprogram/Messages.h"
#include "platform/linux/dialogprogram/Templates.h"

// Every control that is named exists in the template and is of the kind that the operation is for;
// rows and nodes that are named exist. None of it is an act of the user's: DialogTalk isn't told
// of the changes that these make.
class FrontEnd {
public:
    struct Placement {
        platform::Rectangle bounds;
        // Nothing where windows can't be placed by their program.
        std::optional<platform::Rectangle> workArea;
        // Of each control that can be painted.
        std::vector<platform::report::Surface> surfaces;
    };

    virtual ~FrontEnd() = default;

    // Makes the window, not visible yet.
    virtual Placement Build(const platform::DialogTemplate& dialog) = 0;
    // From here on the user can do something.
    virtual void Show() = 0;
    // The event that was reported last has been handled.
    virtual void EventHandled() {}
    // The user's answer is told by DialogTalk::Answered.
    virtual void ShowMessage(int style, const std::string& caption, const std::string& text) = 0;

    virtual void AppendRow(int list, const std::string& text) = 0;
    // -1 selects none.
    virtual void SelectRow(int list, int row) = 0;
    virtual void SetText(int control, const std::string& text) = 0;
    virtual void TellDisabled(int control) = 0;
    // `node` is the new node's number.
    virtual void AppendNode(int tree, int parent, int node, const std::string& text) = 0;
    virtual void ExpandNode(int tree, int node) = 0;
    virtual void Fill(int control, platform::Colour colour) = 0;
    virtual void Draw(int control, const platform::Picture& picture,
                      const platform::Rectangle& place) = 0;
    virtual void Move(int left, int top) = 0;
};
