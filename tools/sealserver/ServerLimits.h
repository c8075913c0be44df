// ServerLimits.h - what one client may cost, and all of them together.
#pragma once

#include <cstddef>

// In milliseconds, counted from when the connection's turn has come.
struct ConnectionLimits {
    int silence = 5'000;    // without a byte in the direction that is waited for
    int head = 10'000;      // until the head is there, the handshake of TLS included
    int whole = 60'000;     // until the answer is sent
    int lingering = 1'000;  // behind the answer, for a client that is still sending
};

struct ServerLimits {
    ConnectionLimits connection{};
    std::size_t threads = 32;   // connections that are served at a time
    std::size_t waiting = 256;  // that wait for their turn; further ones are closed at once
};
