// PinentryProcess.h - a running pinentry program, spoken with by the Assuan protocol.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <string>

#include "components/certservice/pinentry/PinentryTalk.h"

struct assuan_context_s;

// Milliseconds.
struct PinentryLimits {
    int command = 15'000;                         // to the greeting, and for each command
    int user = kPinentryTimeout * 1000 + 10'000;  // for the command that the user answers
    int exit = 2'000;                             // between the end of the talk and its own end
};

// The program gets a socket as its standard input and output, the host's environment, nothing as
// standard error, and no other descriptor; signals are as in a fresh process. The host's signals
// and descriptors stay as they are: no SIGPIPE comes of a program that died. At the end the
// connection is closed, and a program that doesn't follow in time is killed; none is left behind.
//
// libassuan speaks the protocol, but doesn't start the program: its own assuan_pipe_connect forks,
// which costs a large host dearly, and makes the process ignore SIGPIPE for good.
class PinentryProcess : public PinentryChannel {
public:
    // Null if the program can't be started or doesn't greet.
    static std::unique_ptr<PinentryProcess> Start(const std::string& program,
                                                  const PinentryLimits& limits = {});
    ~PinentryProcess() override;

    PinentryAnswer Command(const std::string& line) override;
    PinentryAnswer CommandToUser(const std::string& line, std::string& data) override;

    // What the reading and writing on the connection know of it.
    struct Connection {
        std::int64_t deadline = 0;
        bool broken = false;
    };

private:
    explicit PinentryProcess(const PinentryLimits& limits) : m_limits(limits) {}
    bool Connect(int descriptor);
    PinentryAnswer Transact(const std::string& line, int limit, std::string* data);

    PinentryLimits m_limits;
    pid_t m_process = -1;
    assuan_context_s* m_assuan = nullptr;
    Connection m_connection;
};
