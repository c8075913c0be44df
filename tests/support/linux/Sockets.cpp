#include "support/Sockets.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace {

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

int Native(SocketHandle socket) { return static_cast<int>(socket); }

}  // namespace

SocketHandle BindToLoopback(int& port) {
    const int bound = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(port);
    socklen_t size = sizeof address;
    // Connections of a server that has just ended would keep a certain port.
    const int again = port != 0 ? 1 : 0;
    setsockopt(bound, SOL_SOCKET, SO_REUSEADDR, &again, sizeof again);
    if (bound < 0 || bind(bound, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        getsockname(bound, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return -1;
    }
    port = ntohs(address.sin_port);
    return bound;
}

bool Listen(SocketHandle socket) { return listen(Native(socket), 8) == 0; }

SocketHandle Accept(SocketHandle listening) {
    return accept4(Native(listening), nullptr, nullptr, SOCK_CLOEXEC);
}

bool Knock(int port) {
    const int caller = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(port);
    const bool heard =
        connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(caller);
    return heard;
}

std::ptrdiff_t Receive(SocketHandle socket, char* data, std::size_t size) {
    return recv(Native(socket), data, size, 0);
}

std::ptrdiff_t Send(SocketHandle socket, const char* data, std::size_t size) {
    return send(Native(socket), data, size, MSG_NOSIGNAL);
}

void CloseSocket(SocketHandle socket) { close(Native(socket)); }

void CloseByReset(SocketHandle socket) {
    constexpr linger reset{1, 0};
    setsockopt(Native(socket), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
}

void IgnoreBrokenPipes() { std::signal(SIGPIPE, SIG_IGN); }
