// ScriptedPinentry.cpp - a pinentry program that does what PINENTRY_SCRIPT says, and writes what it
// was told to the file PINENTRY_LOG.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

// What the program found when it began: open descriptors, and signals that aren't as at first.
std::string Surroundings() {
    std::string text = "descriptors";
    for (int descriptor = 0; descriptor < 1024; ++descriptor)
        if (fcntl(descriptor, F_GETFD) >= 0) text += " " + std::to_string(descriptor);
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    struct sigaction pipe {};
    sigaction(SIGPIPE, nullptr, &pipe);
    if (pipe.sa_handler != SIG_DFL) text += ", SIGPIPE handled";
    for (int signal = 1; signal < NSIG; ++signal)
        if (sigismember(&blocked, signal) == 1) text += ", blocked " + std::to_string(signal);
    return text;
}

// Ends the program when its script says so; gives the answer to `line` otherwise.
std::string Answer(const std::string& script, const std::string& line) {
    const bool asked = line == "GETPIN";
    if (asked && script == "die") std::exit(1);
    if (asked && script == "silence") pause();
    if (asked && script == "rubbish") return "what?";
    if (asked && script == "flood")
        return "D " + std::string(900, 'x') + "\nD " + std::string(900, 'x') + "\nOK";
    if (asked && script == "cancel") return "ERR 83886179 Operation cancelled <Pinentry>";
    if (asked && script == "timeout") return "ERR 83886142 Timeout <Pinentry>";
    if (asked && script == "empty") return "OK";
    if (asked) return "S PASSWORD_FROM_NOBODY\nD 12%2534%0A56\nOK";
    if (script == "unwilling") return "ERR 83886355 Unknown command <Pinentry>";
    return "OK";
}

}  // namespace

int main() {
    const std::string script = Variable("PINENTRY_SCRIPT");
    std::ofstream log(Variable("PINENTRY_LOG"), std::ios::binary);
    log << Surroundings() << std::endl;
    if (script == "no greeting") pause();
    if (script == "die at once") return 1;
    if (script == "wrong greeting") std::cout << "Good morning" << std::endl;
    std::cout << "OK Your orders please" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
        log << line << std::endl;
        std::cout << Answer(script, line) << std::endl;
        if (line == "BYE") break;
    }
    if (script == "stay") pause();
}
