#include "tools/dialog/CommandLine.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace {

constexpr char kRest[] =
    "\n"
    "The library starts it and speaks with it over standard input and output; started by hand it\n"
    "only waits for that. To see what would show dialogs in this session: tesmark doctor. Another\n"
    "program in its place: tesmark config set DialogProgram FILE.\n"
    "\n"
    "  --help     this text\n"
    "  --version  the version\n";

bool IsAmong(int count, const char* const* arguments, std::string_view wanted) {
    return std::any_of(arguments + 1, arguments + std::max(count, 1),
                       [wanted](const char* argument) { return argument == wanted; });
}

int Say(const std::string& text) {
    const bool said = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return std::fflush(stdout) == 0 && said ? 0 : 1;
}

}  // namespace

std::optional<int> AnswerPerson(int count, const char* const* arguments, const std::string& name,
                                const std::string& purpose) {
    if (IsAmong(count, arguments, "--help")) return Say(name + " " + purpose + ".\n" + kRest);
    if (IsAmong(count, arguments, "--version")) return Say(name + " " TESMARK_VERSION "\n");
    return std::nullopt;
}
