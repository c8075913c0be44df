// PinentryTalk.h - what is said to a pinentry program to have a PIN from the user.
#pragma once

#include <string>
#include <vector>

enum class PinentryAnswer {
    kOk,
    kCancelled,  // by the user
    kRefused,    // the program answered with any other error, a time-out of its own among them
    kBroken,     // it died, fell silent or talks rubbish; every later answer is the same
};

// A pinentry program that answers commands one after another.
class PinentryChannel {
public:
    virtual ~PinentryChannel() = default;
    // Sends one line of at most 1000 bytes, without its end.
    virtual PinentryAnswer Command(const std::string& line) = 0;
    // The same for the one command that the user takes a time to answer; the answer's data is
    // appended to `data`.
    virtual PinentryAnswer CommandToUser(const std::string& line, std::string& data) = 0;
};

struct PinQuestion {
    std::string label;  // of the key; GBK
    int retries = -1;   // tries left, or -1 where nobody knows
    std::string error;  // what went wrong before, or empty; GBK
};

// Seconds that a pinentry is asked to wait for the user before it gives up by itself.
constexpr int kPinentryTimeout = 300;

// Asks `question`. `options` are sent first ("ttyname=/dev/pts/1"); a program may not know one of
// them. The results are those of PinEntry::Ask.
int AskForPin(PinentryChannel& channel, const std::vector<std::string>& options,
              const PinQuestion& question, std::string& pin);

// A text (GBK) as the argument of a command: UTF-8, with "%" and control characters as "%XX", cut
// between two characters to at most 900 bytes.
std::string PinentryText(const std::string& text);
