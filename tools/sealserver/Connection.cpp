#include "tools/sealserver/Connection.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <climits>
#include <new>
#include <stdexcept>

#include "platform/Clock.h"
#include "tools/sealserver/ConnectedSocket.h"

namespace {

// The clock's number wraps.
int PassedSince(int begun) {
    return static_cast<int>(static_cast<unsigned>(platform::MillisecondsSinceStart()) -
                            static_cast<unsigned>(begun));
}

int AtMost(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, INT_MAX)); }

BIO* Required(BIO* bio) {
    if (!bio) throw std::bad_alloc();
    return bio;
}

}  // namespace

void TlsContextEnd::operator()(SSL_CTX* context) const { SSL_CTX_free(context); }

TlsContext MakeTlsContext(const std::string& certificate, const std::string& key) {
    TlsContext context(SSL_CTX_new(TLS_server_method()));
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1 ||
        SSL_CTX_use_certificate_chain_file(context.get(), certificate.c_str()) != 1 ||
        SSL_CTX_use_PrivateKey_file(context.get(), key.c_str(), SSL_FILETYPE_PEM) != 1)
        throw std::runtime_error("the certificate's file or the key's is unfit");
    SSL_CTX_set_options(context.get(), SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION);
    return context;
}

void Connection::BioEnd::operator()(BIO* bio) const { BIO_free_all(bio); }

Connection::Connection(std::uintptr_t socket, SSL_CTX* tls, const ConnectionLimits& limits)
    : m_socket(socket),
      m_encrypted(tls != nullptr),
      m_limits(limits),
      m_begun(platform::MillisecondsSinceStart()),
      m_limit(limits.head),
      m_bio(Required(BIO_new_socket(static_cast<int>(socket), BIO_CLOSE))) {
    BIO_socket_nbio(static_cast<int>(socket), 1);
    if (!m_encrypted) return;
    BIO* const filter = Required(BIO_new_ssl(tls, 0));
    m_bio.reset(BIO_push(filter, m_bio.release()));
}

Connection::~Connection() {
    if (m_encrypted) BIO_ssl_shutdown(m_bio.get());
    EndSending(m_socket);
    BIO* const plain = BIO_find_type(m_bio.get(), BIO_TYPE_SOCKET);
    m_limit = PassedSince(m_begun) + m_limits.lingering;
    char unread[4096];
    while (TimeLeft() > 0) {
        if (BIO_read(plain, unread, sizeof unread) > 0) continue;
        if (!BIO_should_retry(plain) || !WaitForSocket(m_socket, false, TimeLeft())) break;
    }
}

int Connection::TimeLeft() const { return m_limit - PassedSince(m_begun); }

bool Connection::Wait() {
    const int left = std::min(TimeLeft(), m_limits.silence);
    return left > 0 && WaitForSocket(m_socket, BIO_should_write(m_bio.get()) != 0, left);
}

std::ptrdiff_t Connection::Read(char* data, std::size_t size) {
    while (TimeLeft() > 0) {
        ERR_clear_error();
        const int count = BIO_read(m_bio.get(), data, AtMost(size));
        if (count > 0) return count;
        if (!BIO_should_retry(m_bio.get()) || !Wait()) break;
    }
    return -1;
}

bool Connection::Write(const char* data, std::size_t size) {
    while (size > 0) {
        if (TimeLeft() <= 0) return false;
        ERR_clear_error();
        const int count = BIO_write(m_bio.get(), data, AtMost(size));
        if (count > 0) {
            data += count;
            size -= static_cast<std::size_t>(count);
        } else if (!BIO_should_retry(m_bio.get()) || !Wait()) {
            return false;
        }
    }
    return true;
}
