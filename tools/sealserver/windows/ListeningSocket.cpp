#include "tools/sealserver/ListeningSocket.h"

#include <winsock2.h>

void SetListeningOptions(std::uintptr_t socket) {
    const BOOL on = TRUE;
    setsockopt(static_cast<SOCKET>(socket), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
               reinterpret_cast<const char*>(&on), sizeof on);
}
