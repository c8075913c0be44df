// Sockets.h - the few calls in which the platforms' sockets differ.
#pragma once

#include <cstddef>
#include <cstdint>

// A descriptor or handle; -1 is none.
using SocketHandle = std::intptr_t;

// A stream socket bound to `port` of the loopback address, which for 0 becomes one that is free; -1
// if it can't be had.
SocketHandle BindToLoopback(int& port);
bool Listen(SocketHandle socket);
// Blocks. -1 on failure.
SocketHandle Accept(SocketHandle listening);
// True if somebody listened there; hangs up at once.
bool Knock(int port);
// Blocks; 0 or less when there is no more.
std::ptrdiff_t Receive(SocketHandle socket, char* data, std::size_t size);
std::ptrdiff_t Send(SocketHandle socket, const char* data, std::size_t size);
void CloseSocket(SocketHandle socket);
// The next CloseSocket resets the connection, whatever is still under way.
void CloseByReset(SocketHandle socket);
// A peer that hangs up early must not end the test program.
void IgnoreBrokenPipes();
