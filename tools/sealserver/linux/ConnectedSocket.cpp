#include "tools/sealserver/ConnectedSocket.h"

#include <poll.h>
#include <sys/socket.h>

bool WaitForSocket(std::uintptr_t socket, bool forRoom, int milliseconds) {
    pollfd wanted{static_cast<int>(socket), static_cast<short>(forRoom ? POLLOUT : POLLIN), 0};
    return poll(&wanted, 1, milliseconds) > 0;
}

void EndSending(std::uintptr_t socket) { shutdown(static_cast<int>(socket), SHUT_WR); }
