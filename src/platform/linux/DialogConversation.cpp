#include "platform/linux/DialogConversation.h"

#include "platform/CodePage.h"

namespace platform {

namespace {

// Closed by the user, or by the end of the program that showed it.
void Close(RemoteDialog& window, DialogProcedure& procedure) {
    const bool handled = procedure.OnClose(window);
    if (!handled && !window.HasEnded()) procedure.OnButton(window, kCancelButton);
}

void Pass(const DialogReport& event, RemoteDialog& window, DialogProcedure& procedure) {
    if (const auto* const button = std::get_if<report::Button>(&event))
        procedure.OnButton(window, button->control);
    else if (const auto* const selected = std::get_if<report::Selected>(&event))
        procedure.OnNodeSelected(window, selected->tree);
    else
        Close(window, procedure);
}

// From the moment that the window is visible.
void ServeUser(RemoteDialog& window, DialogProcedure& procedure) {
    while (!window.HasEnded()) {
        const std::optional<DialogReport> event = window.NextEvent();
        if (!event) {
            Close(window, procedure);
            return;
        }
        Pass(*event, window, procedure);
        if (!window.HasEnded()) window.TellHandled();
    }
}

template <class Message>
bool Hears(DialogLink& link, DialogLink::Patience patience, Message& message) {
    const auto line = link.Read(patience);
    const auto report = line ? ParseReport(*line) : std::nullopt;
    const auto* const expected = report ? std::get_if<Message>(&*report) : nullptr;
    if (expected) message = *expected;
    return expected != nullptr;
}

bool Says(DialogLink& link, const DialogCommand& command) { return link.Write(LineOf(command)); }

}  // namespace

int RunDialog(DialogLink& link, const DialogTemplate& dialog, DialogProcedure& procedure) {
    RemoteDialog window(link, dialog);
    if (!window.Build()) return kDialogNotShown;
    procedure.OnOpen(window);
    if (!window.HasEnded()) {
        if (!window.Show()) return kDialogNotShown;
        ServeUser(window, procedure);
    }
    window.TellEnd();
    return window.Value();
}

bool RunMessageBox(DialogLink& link, const char* text, const char* caption, int style) {
    constexpr auto kPatience = DialogLink::Patience::Program;
    Greeting greeting;
    if (!Says(link, Greeting{}) || !Hears(link, kPatience, greeting)) return false;
    if (greeting.version != kDialogProtocolVersion) return false;
    report::Shown shown;
    if (!Says(link, command::Message{style, Utf8FromAnsi(caption), Utf8FromAnsi(text)}) ||
        !Hears(link, kPatience, shown))
        return false;
    report::Closed closed;
    Hears(link, DialogLink::Patience::User, closed);
    return true;
}

}  // namespace platform
