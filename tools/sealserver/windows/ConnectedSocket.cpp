#include "tools/sealserver/ConnectedSocket.h"

#include <winsock2.h>

bool WaitForSocket(std::uintptr_t socket, bool forRoom, int milliseconds) {
    WSAPOLLFD wanted{static_cast<SOCKET>(socket), static_cast<SHORT>(forRoom ? POLLOUT : POLLIN),
                     0};
    return WSAPoll(&wanted, 1, milliseconds) > 0;
}

void EndSending(std::uintptr_t socket) { shutdown(static_cast<SOCKET>(socket), SD_SEND); }
