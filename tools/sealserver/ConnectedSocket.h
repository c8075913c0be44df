// ConnectedSocket.h - what is asked of a client's socket beside its bytes.
#pragma once

#include <cstdint>

// Until the socket has bytes or room for some, or has ended; false after `milliseconds`.
bool WaitForSocket(std::uintptr_t socket, bool forRoom, int milliseconds);
// The peer finds the end of what was sent; what it sends itself may still come in.
void EndSending(std::uintptr_t socket);
