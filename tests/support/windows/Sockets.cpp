#include "support/Sockets.h"

#include <winsock2.h>

namespace {

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

SOCKET Native(SocketHandle socket) { return static_cast<SOCKET>(socket); }

SOCKET StreamSocket() {
    static const int started = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    return started == 0 ? socket(AF_INET, SOCK_STREAM, 0) : INVALID_SOCKET;
}

}  // namespace

SocketHandle BindToLoopback(int& port) {
    const SOCKET bound = StreamSocket();
    sockaddr_in address = Loopback(port);
    int size = sizeof address;
    if (bound == INVALID_SOCKET ||
        bind(bound, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        getsockname(bound, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return -1;
    }
    port = ntohs(address.sin_port);
    return static_cast<SocketHandle>(bound);
}

bool Listen(SocketHandle socket) { return listen(Native(socket), 8) == 0; }

SocketHandle Accept(SocketHandle listening) {
    return static_cast<SocketHandle>(accept(Native(listening), nullptr, nullptr));
}

bool Knock(int port) {
    const SOCKET caller = StreamSocket();
    const sockaddr_in address = Loopback(port);
    const bool heard =
        connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    closesocket(caller);
    return heard;
}

std::ptrdiff_t Receive(SocketHandle socket, char* data, std::size_t size) {
    return recv(Native(socket), data, static_cast<int>(size), 0);
}

std::ptrdiff_t Send(SocketHandle socket, const char* data, std::size_t size) {
    return send(Native(socket), data, static_cast<int>(size), 0);
}

void CloseSocket(SocketHandle socket) { closesocket(Native(socket)); }

void CloseByReset(SocketHandle socket) {
    constexpr linger reset{1, 0};
    setsockopt(Native(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&reset),
               sizeof reset);
}

void IgnoreBrokenPipes() {}
