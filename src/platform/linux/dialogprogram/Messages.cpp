#include "platform/linux/dialogprogram/Messages.h"

#include <tuple>
#include <utility>

#include "platform/linux/dialogprogram/ProtocolLine.h"

namespace platform {

namespace {

// The word of a message and its fields in their order, for writing (const) and reading alike.
template <class Message>
struct Form;

#define FORM(type, word, ...)                           \
    template <>                                         \
    struct Form<type> {                                 \
        static constexpr std::string_view kWord = word; \
        template <class Self>                           \
        static auto Of([[maybe_unused]] Self& m) {      \
            return std::tie(__VA_ARGS__);               \
        }                                               \
    }

FORM(Greeting, "tesmark-dialog", m.version);

FORM(command::Dialog, "dialog", m.id);
FORM(command::Row, "row", m.control, m.text);
FORM(command::Select, "select", m.control, m.row);
FORM(command::Text, "text", m.control, m.text);
FORM(command::Disabled, "disabled", m.control);
FORM(command::Node, "node", m.tree, m.parent, m.text);
FORM(command::Expand, "expand", m.tree, m.node);
FORM(command::Fill, "fill", m.control, m.colour);
FORM(command::Draw, "picture", m.control, m.place, m.picture);
FORM(command::Move, "move", m.left, m.top);
FORM(command::Show, "show");
FORM(command::Done, "done");
FORM(command::End, "end");
FORM(command::Message, "message", m.style, m.caption, m.text);

FORM(report::Ready, "ready", m.bounds);
FORM(report::Unknown, "unknown");
FORM(report::Area, "area", m.area);
FORM(report::Surface, "surface", m.control, m.width, m.height);
FORM(report::Built, "built");
FORM(report::Shown, "shown");
FORM(report::Row, "row", m.control, m.row);
FORM(report::Text, "text", m.control, m.text);
FORM(report::Node, "node", m.tree, m.node);
FORM(report::Button, "button", m.control);
FORM(report::Selected, "selected", m.tree);
FORM(report::Close, "close");
FORM(report::Closed, "closed");

#undef FORM

void PutField(LineWriter& writer, const Colour& colour) { writer.PutColour(colour); }
template <class Field>
void PutField(LineWriter& writer, const Field& field) {
    writer.Put(field);
}

void TakeField(LineParser& parser, Colour& colour) { parser.TakeColour(colour); }
template <class Field>
void TakeField(LineParser& parser, Field& field) {
    parser.Take(field);
}

template <class Message>
std::string Write(const Message& message) {
    LineWriter writer(Form<Message>::kWord);
    std::apply([&](const auto&... fields) { (PutField(writer, fields), ...); },
               Form<Message>::Of(message));
    return std::move(writer).Finish();
}

// True if the line has this message's word.
template <class Message, class Variant>
bool Read(std::string_view line, std::optional<Variant>& result) {
    LineParser parser(line);
    if (parser.Word() != Form<Message>::kWord) return false;
    Message message{};
    std::apply([&](auto&... fields) { (TakeField(parser, fields), ...); },
               Form<Message>::Of(message));
    if (parser.IsWhole()) result = std::move(message);
    return true;
}

template <class Variant>
struct ReadAny;
template <class... Messages>
struct ReadAny<std::variant<Messages...>> {
    static std::optional<std::variant<Messages...>> Of(std::string_view line) {
        std::optional<std::variant<Messages...>> result;
        static_cast<void>((Read<Messages>(line, result) || ...));
        return result;
    }
};

}  // namespace

std::string LineOf(const DialogCommand& command) {
    return std::visit([](const auto& message) { return Write(message); }, command);
}

std::string LineOf(const DialogReport& report) {
    return std::visit([](const auto& message) { return Write(message); }, report);
}

std::optional<DialogCommand> ParseCommand(std::string_view line) {
    return ReadAny<DialogCommand>::Of(line);
}

std::optional<DialogReport> ParseReport(std::string_view line) {
    return ReadAny<DialogReport>::Of(line);
}

}  // namespace platform
