// DialogTalk.h - the program's end of the conversation with the library, the same for every front
// end: takes what the library says to the front end, and the user's acts to the library.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/linux/dialogprogram/ProtocolLine.h"
#include "tools/dialog/FrontEnd.h"

class DialogTalk {
public:
    enum class State {
        Going,
        Ended,    // close the window, exit with 0
        GivenUp,  // the library said what it may not: close the window, exit with another code
    };
    // Writes whole lines to the library. May block; what can't be written may be dropped, since the
    // end of the input will tell.
    using Send = std::function<void(const std::string& lines)>;

    // The front end has to outlive this.
    DialogTalk(FrontEnd& frontEnd, Send send);

    // Takes bytes of the library as they come, cut anywhere. To be called again after Going only.
    // The end of the input isn't told here: it is the window's end too.
    State Receive(std::string_view bytes);

    // What the user does. States are kept, and reported with the next event; events are reported in
    // their order, one after the other as the library has handled them. Before the dialog is shown
    // nothing is an event.
    void PickedRow(int list, int row);
    // What the field has no room for is cut.
    void Typed(int control, const std::string& text);
    void Resized(int control, int width, int height);
    // 0: none is selected any more.
    void PickedNode(int tree, int node);
    void Pressed(int button);
    void ClosedWindow();
    // A message box was answered: the conversation is at its end.
    State Answered();

    // An event is being handled, and others may be waiting.
    bool IsHandling() const { return m_handling; }
    State CurrentState() const { return m_state; }

private:
    struct Size {
        int width;
        int height;
        bool operator==(const Size&) const = default;
    };
    // By control, what the user can change.
    struct Contents {
        std::map<int, int> rows;
        std::map<int, std::string> texts;
        std::map<int, int> nodes;
        std::map<int, Size> surfaces;
    };
    struct Event {
        Contents contents;
        platform::DialogReport report;
    };
    // What has been made so far, to judge the numbers that come.
    struct Made {
        std::map<int, int> rows;
        std::map<int, int> nodes;
    };

    // Overloads for each kind of line: false if it has no place here.
    bool Do(const platform::Greeting& greeting);
    bool Do(const platform::command::Dialog& dialog);
    bool Do(const platform::command::Row& row);
    bool Do(const platform::command::Select& select);
    bool Do(const platform::command::Text& text);
    bool Do(const platform::command::Disabled& disabled);
    bool Do(const platform::command::Node& node);
    bool Do(const platform::command::Expand& expand);
    bool Do(const platform::command::Fill& fill);
    bool Do(const platform::command::Draw& draw);
    bool Do(const platform::command::Move& move);
    bool Do(const platform::command::Show&);
    bool Do(const platform::command::Done&);
    bool Do(const platform::command::End&);
    bool Do(const platform::command::Message& message);

    bool MayChange() const;
    bool Has(int control, std::initializer_list<platform::ControlKind> kinds) const;
    void Happened(platform::DialogReport report);
    void ReportNext();
    std::string Changes(const Contents& contents);

    FrontEnd& m_frontEnd;
    Send m_send;
    platform::LineReader m_reader{platform::kLongestLineToProgram};
    State m_state = State::Going;
    bool m_greeted = false;
    bool m_asking = false;  // a message box is open
    bool m_shown = false;
    bool m_handling = false;
    const platform::DialogTemplate* m_dialog = nullptr;
    Made m_made;
    Contents m_contents;  // as they are
    Contents m_known;     // as the library knows them
    std::deque<Event> m_events;
};
