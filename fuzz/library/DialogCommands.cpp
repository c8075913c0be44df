// The program's end of a dialog, on a terminal: whatever the library says, what the program says is
// a message, and nothing that it prints steers the terminal.

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/driver/Require.h"
#include "platform/linux/dialogprogram/Messages.h"
#include "platform/linux/dialogprogram/Utf8.h"
#include "tools/dialog/tty/TtyFrontEnd.h"

namespace {

using State = DialogTalk::State;

void CheckPrinted(std::string_view text) {
    while (!text.empty()) {
        const auto code = platform::TakeCharacter(text);
        REQUIRE(code);
        REQUIRE(*code == '\n' || !platform::IsControlCharacter(*code));
    }
}

void CheckSaid(std::string_view lines) {
    while (!lines.empty()) {
        const std::size_t end = lines.find('\n');
        REQUIRE(end != std::string_view::npos);
        REQUIRE(platform::ParseReport(lines.substr(0, end)));
        lines.remove_prefix(end + 1);
    }
}

}  // namespace

// Between two lines of the library the user types something.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    TtyFrontEnd frontEnd(kChineseHints, CheckPrinted);
    DialogTalk talk(frontEnd, CheckSaid);
    frontEnd.TellTo(talk);
    const char* const typed[] = {"1", "2", "x\xE5\x8D\xB0", "", "t", "=y"};
    std::size_t turn = 0;
    while (!input.empty() && talk.CurrentState() == State::Going) {
        const std::size_t length = std::min(input.find('\n'), input.size() - 1) + 1;
        talk.Receive(input.substr(0, length));
        input.remove_prefix(length);
        if (frontEnd.IsOpen() && !talk.IsHandling()) frontEnd.Typed(typed[turn++ % 6]);
    }
    return 0;
}
