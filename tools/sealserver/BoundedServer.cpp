#include "tools/sealserver/BoundedServer.h"

#include <openssl/bio.h>

#include <algorithm>
#include <atomic>

#include "tools/sealserver/ConnectedSocket.h"
#include "tools/sealserver/RequestHead.h"
#include "tools/sealserver/ThreadStack.h"

namespace {

constexpr int kNothingCame = -1;
constexpr int kTooLate = 408;
// Between two looks whether the server is stopped.
constexpr int kGlanceMs = 100;

// Set by the thread that accepts, while a connection is one too many.
thread_local bool t_isTurnedAway = false;

class BoundedQueue : public httplib::TaskQueue {
public:
    explicit BoundedQueue(const ServerLimits& limits)
        : m_most(limits.waiting), m_threads(limits.threads) {}

    void enqueue(std::function<void()> serve) override {
        if (m_waiting >= m_most) {
            t_isTurnedAway = true;
            serve();
            t_isTurnedAway = false;
            return;
        }
        ++m_waiting;
        m_threads.enqueue([this, serve = std::move(serve)] {
            --m_waiting;
            serve();
        });
    }
    void shutdown() override { m_threads.shutdown(); }

private:
    const std::size_t m_most;
    std::atomic<std::size_t> m_waiting = 0;
    httplib::ThreadPool m_threads;
};

struct Endpoint {
    std::string address;
    int port = 0;
};

template <typename Ask>
Endpoint EndpointOf(std::uintptr_t socket, Ask ask) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    auto* const address = reinterpret_cast<sockaddr*>(&storage);
    char host[NI_MAXHOST] = "";
    char port[NI_MAXSERV] = "";
    if (ask(static_cast<socket_t>(socket), address, &size) != 0 ||
        getnameinfo(address, size, host, sizeof host, port, sizeof port,
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return {};
    return {host, std::atoi(port)};
}

Endpoint PeerOf(std::uintptr_t socket) { return EndpointOf(socket, getpeername); }

// The head that has been read, what came behind it, and then the connection.
class RequestStream : public httplib::Stream {
public:
    RequestStream(Connection& connection, std::string read)
        : m_connection(connection), m_read(std::move(read)) {}

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }

    ssize_t read(char* data, std::size_t size) override {
        if (m_at == m_read.size()) return m_connection.Read(data, size);
        const std::size_t count = m_read.copy(data, size, m_at);
        m_at += count;
        return static_cast<ssize_t>(count);
    }
    ssize_t write(const char* data, std::size_t size) override {
        return m_connection.Write(data, size) ? static_cast<ssize_t>(size) : -1;
    }

    void get_remote_ip_and_port(std::string& address, int& port) const override {
        Tell(PeerOf(m_connection.Socket()), address, port);
    }
    void get_local_ip_and_port(std::string& address, int& port) const override {
        Tell(EndpointOf(m_connection.Socket(), getsockname), address, port);
    }
    socket_t socket() const override { return static_cast<socket_t>(m_connection.Socket()); }

private:
    static void Tell(const Endpoint& endpoint, std::string& address, int& port) {
        address = endpoint.address;
        port = endpoint.port;
    }

    Connection& m_connection;
    std::string m_read;
    std::size_t m_at = 0;
};

// Fills `read` with the head and what came along with it; the status of a refusal, or 0.
int ReadHead(Connection& connection, std::string& read) {
    char piece[2048];
    for (std::size_t known = 0;;) {
        const std::ptrdiff_t count = connection.Read(piece, sizeof piece);
        if (count <= 0) return read.empty() ? kNothingCame : kTooLate;
        read.append(piece, static_cast<std::size_t>(count));
        const std::size_t end = EndOfHead(read, known);
        if (end > 0 || read.size() > kMaxHeadBytes)
            return StatusOfRefusedHead(std::string_view(read).substr(0, end > 0 ? end : read.npos));
        known = read.size();
    }
}

const char* ReasonOf(int status) {
    switch (status) {
        case 414: return "URI Too Long";
        case 416: return "Range Not Satisfiable";
        case 431: return "Request Header Fields Too Large";
        default: return "Request Timeout";
    }
}

}  // namespace

BoundedServer::BoundedServer(TlsContext tls, const ServerLimits& limits, HeadLog log)
    : m_tls(std::move(tls)), m_limits(limits), m_log(std::move(log)) {
    new_task_queue = [limits] {
        RequireServingStack();
        return new BoundedQueue(limits);
    };
    // The rest of a body that is refused isn't read, so no request may follow.
    set_keep_alive_max_count(1);
}

void BoundedServer::KeepBursts() { ::listen(svr_sock_, SOMAXCONN); }

bool BoundedServer::process_and_close_socket(socket_t socket) {
    if (t_isTurnedAway || svr_sock_ == INVALID_SOCKET)
        return BIO_closesocket(static_cast<int>(socket)) != 0;
    // What fails for want of memory is this connection alone.
    try {
        Connection connection(static_cast<std::uintptr_t>(socket), m_tls.get(),
                              m_limits.connection);
        return Serve(connection);
    } catch (const std::exception&) {
        return false;
    }
}

// Browsers open connections ahead of their requests, which would keep a server from its end.
bool BoundedServer::HasBegun(const Connection& connection) const {
    const ConnectionLimits& limits = m_limits.connection;
    for (int left = std::min(limits.silence, limits.head); left > 0; left -= kGlanceMs) {
        if (svr_sock_ == INVALID_SOCKET) return false;
        if (WaitForSocket(connection.Socket(), false, std::min(left, kGlanceMs))) return true;
    }
    return false;
}

bool BoundedServer::Serve(Connection& connection) {
    if (!HasBegun(connection)) return false;
    std::string read;
    const int status = ReadHead(connection, read);
    if (status == kNothingCame) return false;
    connection.HeadIsRead();
    if (status != 0) {
        Refuse(connection, status, read);
        return false;
    }
    RequestStream stream(connection, std::move(read));
    bool closed = false;
    return process_request(stream, true, closed, nullptr);
}

void BoundedServer::Refuse(Connection& connection, int status, const std::string& head) {
    const RequestLine line = LineOf(head);
    m_log({PeerOf(connection.Socket()).address, std::string(line.method), std::string(line.target),
           status});
    const std::string answer = "HTTP/1.1 " + std::to_string(status) + " " + ReasonOf(status) +
                               "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    connection.Write(answer.data(), answer.size());
}
