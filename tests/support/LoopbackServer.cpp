#include "support/LoopbackServer.h"

#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
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

// As libcurl compares a host that is an address.
void NameThisAddress(X509* certificate) {
    X509_EXTENSION* const name =
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
    const bool added = name != nullptr && X509_add_ext(certificate, name, -1) == 1;
    X509_EXTENSION_free(name);
    Check(added);
}

std::string PemOf(X509* certificate) {
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> out(BIO_new(BIO_s_mem()), &BIO_free_all);
    Check(out && PEM_write_bio_X509(out.get(), certificate) == 1);
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<std::size_t>(size));
}

// 0 if the head tells none.
std::size_t BodySize(const std::string& head) {
    std::string lower = head;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    constexpr std::string_view kName = "\r\ncontent-length:";
    const std::size_t at = lower.find(kName);
    return at == lower.npos ? 0 : std::strtoul(lower.c_str() + at + kName.size(), nullptr, 10);
}

// A context with a certificate that signs itself.
std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> UntrustedContext() {
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_server_method()),
                                                              &SSL_CTX_free);
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"),
                                                                  &EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), &X509_free);
    Check(context && key && certificate);
    X509_set_version(certificate.get(), X509_VERSION_3);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("somebody else"), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    X509_set_pubkey(certificate.get(), key.get());
    NameThisAddress(certificate.get());
    Check(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0);
    Check(SSL_CTX_use_certificate(context.get(), certificate.get()) == 1);
    Check(SSL_CTX_use_PrivateKey(context.get(), key.get()) == 1);
    return context;
}

// One connection, plain or encrypted.
class Connection {
public:
    using Request = LoopbackServer::Request;

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

    // Head and body, or what came of them before the peer hung up.
    Request ReadRequest() {
        constexpr std::string_view kEnd = "\r\n\r\n";
        std::string text;
        std::size_t end = text.npos;
        while (end == text.npos && ReadMore(text)) {
            end = text.find(kEnd);
            // A greeting of TLS to a plain server has no end to wait for.
            if (m_tls == nullptr && text.starts_with('\x16')) break;
        }
        if (end == text.npos) return {"", text, ""};
        const std::size_t head = end + kEnd.size();
        const std::size_t whole = head + BodySize(text.substr(0, head));
        while (text.size() < whole && ReadMore(text)) continue;
        const std::size_t path = text.find(' ') + 1;
        return {text.substr(path, text.find(' ', path) - path), text.substr(0, head),
                text.substr(head)};
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

    void End(LoopbackServer::Ending ending) {
        std::string ignored;
        if (ending == LoopbackServer::Ending::ByPeer) {
            while (ReadMore(ignored)) continue;
        } else if (ending == LoopbackServer::Ending::ByReset) {
            m_open = false;
            CloseByReset(m_socket);
        }
    }

private:
    bool ReadMore(std::string& text) {
        char piece[1024];
        if (!m_open) return false;
        const std::ptrdiff_t size = m_tls != nullptr ? SSL_read(m_tls, piece, sizeof piece)
                                                     : Receive(m_socket, piece, sizeof piece);
        if (size <= 0) return false;
        text.append(piece, static_cast<std::size_t>(size));
        return true;
    }

    SocketHandle m_socket;
    SSL* m_tls = nullptr;
    bool m_open = true;
};

}  // namespace

class LoopbackServer::Server {
public:
    Server(Handler handler, Scheme scheme, int port)
        : m_handler(std::move(handler)), m_tls(nullptr, &SSL_CTX_free), m_port(port) {
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
    std::string Certificate() const {
        return m_tls ? PemOf(SSL_CTX_get0_certificate(m_tls.get())) : "";
    }
    std::vector<std::string> Requests() const {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

    void EndConnections(Ending ending) { m_ending = ending; }

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
        const Request request = connection.ReadRequest();
        if (request.head.empty()) return;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request.head);
        }
        connection.Write(m_handler(request));
        connection.End(m_ending);
    }

    Handler m_handler;
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> m_tls;
    int m_port;
    SocketHandle m_listening = -1;
    std::atomic<bool> m_stopped = false;
    std::atomic<Ending> m_ending = Ending::Orderly;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};

LoopbackServer::LoopbackServer(Answer answer, Scheme scheme)
    : LoopbackServer(
          [answer = std::move(answer)](const Request& request) { return answer(request.path); },
          scheme) {}

LoopbackServer::LoopbackServer(Handler handler, Scheme scheme, int port)
    : m_server(std::make_unique<Server>(std::move(handler), scheme, port)) {}

LoopbackServer::~LoopbackServer() = default;

std::string LoopbackServer::Url(const std::string& path) const { return m_server->Origin() + path; }

void LoopbackServer::EndConnections(Ending ending) { m_server->EndConnections(ending); }

std::string LoopbackServer::Certificate() const { return m_server->Certificate(); }

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
