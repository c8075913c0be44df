#include "components/certservice/pinentry/linux/PinentryPlan.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "components/certservice/ServiceStore.h"

namespace {

constexpr const char* kPrograms[] = {"pinentry",       "pinentry-qt",     "pinentry-gnome3",
                                     "pinentry-gtk-2", "pinentry-curses", "pinentry-tty"};

std::string Variable(const char* name) {
    const char* const value = getenv(name);
    return value ? value : "";
}

std::string Terminal() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        char name[256];
        if (isatty(stream) && ttyname_r(stream, name, sizeof name) == 0) return name;
    }
    return {};
}

std::string Locale() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (std::string value = Variable(name); !value.empty()) return value;
    return {};
}

bool IsProgram(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::string RealName(const std::string& path) {
    char* const resolved = realpath(path.c_str(), nullptr);
    const std::string real = resolved ? resolved : path;
    free(resolved);
    return real.substr(real.rfind('/') + 1);
}

bool StartsWithAny(std::string_view text, std::initializer_list<std::string_view> starts) {
    return std::any_of(starts.begin(), starts.end(),
                       [&](std::string_view start) { return text.starts_with(start); });
}

bool IsUsable(const std::string& program, const PinentrySession& session) {
    if (!IsProgram(program)) return false;
    const std::string name = RealName(program);
    if (StartsWithAny(name, {"pinentry-tty", "pinentry-curses"})) return !session.terminal.empty();
    if (StartsWithAny(name, {"pinentry-qt", "pinentry-gnome", "pinentry-gtk", "pinentry-x11",
                             "pinentry-fltk", "pinentry-efl"}))
        return session.display || !session.terminal.empty();
    return true;
}

std::string FindProgram(const PinentrySession& session) {
    for (const char* name : kPrograms) {
        std::string_view rest = session.searchPath;
        while (!rest.empty()) {
            const std::string_view folder = rest.substr(0, rest.find(':'));
            rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
            const std::string program = std::string(folder) + "/" + name;
            if (!folder.empty() && IsUsable(program, session)) return program;
        }
    }
    return {};
}

void AddOption(PinentryPlan& plan, const char* name, const std::string& value) {
    if (!value.empty()) plan.options.push_back(std::string(name) + "=" + value);
}

}  // namespace

PinentrySession CurrentPinentrySession() {
    PinentrySession session;
    session.configured = ReadStorePath("PinentryProgram");
    session.searchPath = Variable("PATH");
    session.display = !Variable("DISPLAY").empty() || !Variable("WAYLAND_DISPLAY").empty();
    session.terminal = Terminal();
    session.terminalType = Variable("TERM");
    session.locale = Locale();
    return session;
}

std::optional<PinentryPlan> PlanPinentry(const PinentrySession& session) {
    PinentryPlan plan;
    if (session.configured.empty())
        plan.program = FindProgram(session);
    else if (IsUsable(session.configured, session))
        plan.program = session.configured;
    if (plan.program.empty()) return std::nullopt;
    AddOption(plan, "ttyname", session.terminal);
    if (!session.terminal.empty()) AddOption(plan, "ttytype", session.terminalType);
    AddOption(plan, "lc-ctype", session.locale);
    AddOption(plan, "lc-messages", session.locale);
    return plan;
}
