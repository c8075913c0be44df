// ScriptedDialogProgram.cpp - a program that shows no dialog but plays one: it takes the steps of
// DIALOG_SCRIPT, one a line, and writes what it hears to the file DIALOG_LOG.
//
//   say LINE      tell a line                   raw BYTES   bytes without a line's end
//   hear WORD     hear lines up to that one     rest        hear lines up to the end of the input
//   flood LINE    tell it for ever              long        a line that doesn't end
//   close output  close input                   hang        die
//   heir          end and leave the streams to another process, which ends with them
//   note TEXT     a line in the log             complain    a line on standard error
//
// It ends with the process that has started it, whatever it is at.
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

// What the program found when it began: open descriptors, and signals that the host left ignored or
// blocked; handlers don't outlive the start of a program.
std::string Surroundings() {
    std::string text = "descriptors";
    for (int descriptor = 0; descriptor < 4096; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0) text += " " + std::to_string(descriptor);
    }
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int signal = 1; signal < SIGRTMIN; ++signal) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) text += ", ignored " + std::to_string(signal);
        if (sigismember(&blocked, signal) == 1) text += ", blocked " + std::to_string(signal);
    }
    return text;
}

void Tell(const std::string& bytes) {
    for (std::size_t told = 0; told < bytes.size();) {
        const ssize_t count = write(STDOUT_FILENO, bytes.data() + told, bytes.size() - told);
        if (count <= 0) std::exit(4);
        told += static_cast<std::size_t>(count);
    }
}

// An empty word is no line's: all of them are heard.
bool Hear(const std::string& word, std::ofstream& log) {
    for (std::string line; std::getline(std::cin, line);) {
        log << (line.size() < 2000 ? line : line.substr(0, 60) + "...") << std::endl;
        if (line.substr(0, line.find('\t')) == word) return true;
    }
    return word.empty();
}

[[noreturn]] void Hang() {
    for (;;) pause();
}

[[noreturn]] void LeaveHeir() {
    if (fork() != 0) _exit(0);
    std::ofstream nowhere;
    Hear("", nowhere);
    _exit(0);
}

void Do(const std::string& step, std::ofstream& log) {
    const std::string verb = step.substr(0, step.find(' '));
    const std::string rest = step.size() > verb.size() ? step.substr(verb.size() + 1) : "";
    if (verb == "say") Tell(rest + "\n");
    if (verb == "raw") Tell(rest);
    if (verb == "long") Tell(std::string(70'000, 'x'));
    if (verb == "hear" && !Hear(rest, log)) std::exit(3);
    if (verb == "rest") Hear("", log);
    if (verb == "close") close(rest == "input" ? STDIN_FILENO : STDOUT_FILENO);
    if (verb == "note") log << rest << std::endl;
    if (verb == "complain") std::cerr << rest << std::endl;
    if (verb == "die") raise(SIGKILL);
    if (verb == "hang") Hang();
    if (verb == "heir") LeaveHeir();
    while (verb == "flood") Tell(rest + "\n");
}

}  // namespace

int main() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string surroundings = Surroundings();
    std::ofstream log(Variable("DIALOG_LOG"), std::ios::binary);
    log << surroundings << std::endl;
    std::istringstream script(Variable("DIALOG_SCRIPT"));
    for (std::string step; std::getline(script, step);) Do(step, log);
}
