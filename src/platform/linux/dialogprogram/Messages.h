// Messages.h - what the library and the program that shows its dialogs say to each other, one
// structure for each word. docs/dialog-protocol.md tells what they mean and when they are said.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/DialogWindow.h"

namespace platform {

constexpr int kDialogProtocolVersion = 1;

// Both sides' first line.
struct Greeting {
    int version = kDialogProtocolVersion;
};

// From the library.
namespace command {

struct Dialog {
    int id = 0;
};
struct Row {
    int control = 0;
    std::string text;
};
struct Select {
    int control = 0;
    int row = 0;
};
struct Text {
    int control = 0;
    std::string text;
};
struct Disabled {
    int control = 0;
};
struct Node {
    int tree = 0;
    int parent = 0;
    std::string text;
};
struct Expand {
    int tree = 0;
    int node = 0;
};
struct Fill {
    int control = 0;
    Colour colour = 0;
};
struct Draw {
    int control = 0;
    Rectangle place;
    Picture picture;
};
struct Move {
    int left = 0;
    int top = 0;
};
struct Show {};
struct Done {};
struct End {};
struct Message {
    int style = 0;
    std::string caption;
    std::string text;
};

}  // namespace command

// From the program.
namespace report {

struct Ready {
    Rectangle bounds;
};
struct Unknown {};
struct Area {
    std::optional<Rectangle> area;
};
struct Surface {
    int control = 0;
    int width = 0;
    int height = 0;
};
struct Built {};
struct Shown {};
struct Row {
    int control = 0;
    int row = 0;
};
struct Text {
    int control = 0;
    std::string text;
};
struct Node {
    int tree = 0;
    int node = 0;
};
struct Button {
    int control = 0;
};
struct Selected {
    int tree = 0;
};
struct Close {};
struct Closed {};

}  // namespace report

// A line of another kind, and of none, is no message.
using DialogCommand =
    std::variant<Greeting, command::Dialog, command::Row, command::Select, command::Text,
                 command::Disabled, command::Node, command::Expand, command::Fill, command::Draw,
                 command::Move, command::Show, command::Done, command::End, command::Message>;
using DialogReport =
    std::variant<Greeting, report::Ready, report::Unknown, report::Area, report::Surface,
                 report::Built, report::Shown, report::Row, report::Text, report::Node,
                 report::Button, report::Selected, report::Close, report::Closed>;

// With its line feed. Texts are UTF-8; what no line may hold becomes U+FFFD.
std::string LineOf(const DialogCommand& command);
std::string LineOf(const DialogReport& report);

// Nothing for an invalid line. `line` has no line feed.
std::optional<DialogCommand> ParseCommand(std::string_view line);
std::optional<DialogReport> ParseReport(std::string_view line);

}  // namespace platform
