#include "support/LoopbackServer.h"

#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "support/Sockets.h"

namespace {

void Check(bool done) {
    if (!done) throw std::runtime_error("the loopback server can't be set up");
}

SocketHandle BoundSocket(int& port) {
    const SocketHandle bound = BindToLoopback(port);
    Check(bound >= 0);
    return bound;
}

// A context with a certificate that signs itself.
std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> UntrustedContext() {
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_server_method()),
                                                              &SSL_CTX_free);
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"),
                                                                  &EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), &X509_free);
    Check(context && key && certificate);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("somebody else"), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    X509_set_pubkey(certificate.get(), key.get());
    Check(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0);
    Check(SSL_CTX_use_certificate(context.get(), certificate.get()) == 1);
    Check(SSL_CTX_use_PrivateKey(context.get(), key.get()) == 1);
    return context;
}

// One connection, plain or encrypted.
class Connection {
public:
    Connection(SocketHandle socket, SSL_CTX* context) : m_socket(socket) {
        if (context == nullptr) return;
        m_tls = SSL_new(context);
        SSL_set_fd(m_tls, static_cast<int>(socket));
        m_open = SSL_accept(m_tls) == 1;
    }
    ~Connection() {
        if (m_tls != nullptr && m_open) SSL_shutdown(m_tls);
        if (m_tls != nullptr) SSL_free(m_tls);
        CloseSocket(m_socket);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Up to the end of the head, or what came before the peer hung up.
    std::string ReadHead() {
        std::string head;
        char piece[1024];
        while (m_open && head.find("\r\n\r\n") == std::string::npos) {
            const std::ptrdiff_t size = m_tls != nullptr ? SSL_read(m_tls, piece, sizeof piece)
                                                         : Receive(m_socket, piece, sizeof piece);
            if (size <= 0) break;
            head.append(piece, static_cast<std::size_t>(size));
        }
        return head;
    }

    void Write(const std::string& text) {
        for (std::size_t sent = 0; m_open && sent < text.size();) {
            const char* const rest = text.data() + sent;
            const std::ptrdiff_t size =
                m_tls != nullptr ? SSL_write(m_tls, rest, static_cast<int>(text.size() - sent))
                                 : Send(m_socket, rest, text.size() - sent);
            if (size <= 0) return;
            sent += static_cast<std::size_t>(size);
        }
    }

private:
    SocketHandle m_socket;
    SSL* m_tls = nullptr;
    bool m_open = true;
};

}  // namespace

class LoopbackServer::Server {
public:
    Server(Answer answer, Scheme scheme)
        : m_answer(std::move(answer)), m_tls(nullptr, &SSL_CTX_free) {
        if (scheme == Scheme::Https) {
            m_tls = UntrustedContext();
            IgnoreBrokenPipes();
        }
        m_listening = BoundSocket(m_port);
        Check(Listen(m_listening));
        m_thread = std::thread([this] { Serve(); });
    }
    ~Server() {
        m_stopped = true;
        Knock(m_port);
        m_thread.join();
        CloseSocket(m_listening);
    }

    std::string Origin() const {
        return (m_tls ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(m_port);
    }
    std::vector<std::string> Requests() const {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

private:
    void Serve() {
        for (;;) {
            const SocketHandle accepted = Accept(m_listening);
            if (m_stopped) {
                if (accepted >= 0) CloseSocket(accepted);
                return;
            }
            if (accepted >= 0) Talk(accepted);
        }
    }

    void Talk(SocketHandle accepted) {
        Connection connection(accepted, m_tls.get());
        const std::string head = connection.ReadHead();
        if (head.empty()) return;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(head);
        }
        const std::size_t path = head.find(' ') + 1;
        connection.Write(m_answer(head.substr(path, head.find(' ', path) - path)));
    }

    Answer m_answer;
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> m_tls;
    int m_port = 0;
    SocketHandle m_listening = -1;
    std::atomic<bool> m_stopped = false;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};

LoopbackServer::LoopbackServer(Answer answer, Scheme scheme)
    : m_server(std::make_unique<Server>(std::move(answer), scheme)) {}

LoopbackServer::~LoopbackServer() = default;

std::string LoopbackServer::Url(const std::string& path) const { return m_server->Origin() + path; }

std::vector<std::string> LoopbackServer::Requests() const { return m_server->Requests(); }

std::string LoopbackServer::Page(const std::string& status, const std::string& body,
                                 const std::string& headers) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

// Bound for a moment, so that the port was free, and never listened to.
std::string LoopbackServer::DeadUrl(const std::string& path) {
    int port = 0;
    CloseSocket(BoundSocket(port));
    return "http://127.0.0.1:" + std::to_string(port) + path;
}
