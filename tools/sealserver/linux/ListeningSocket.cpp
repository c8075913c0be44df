#include "tools/sealserver/ListeningSocket.h"

#include <sys/socket.h>

void SetListeningOptions(std::uintptr_t socket) {
    const int on = 1;
    setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
}
