// ListeningSocket.h - how a port is taken.
#pragma once

#include <cstdint>

// For a socket that is about to be bound: a port that another one listens on can't be taken as
// well, one that has just been given back can.
void SetListeningOptions(std::uintptr_t socket);
