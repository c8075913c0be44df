// Connection.h - a client's connection, plain or by TLS, that lasts no longer than it may.
#pragma once

#include <openssl/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "tools/sealserver/ServerLimits.h"

struct TlsContextEnd {
    void operator()(SSL_CTX* context) const;
};
using TlsContext = std::unique_ptr<SSL_CTX, TlsContextEnd>;

// TLS 1.2 at least, by a PEM file with the certificate's chain and one with its key; throws
// std::runtime_error if they are unfit.
TlsContext MakeTlsContext(const std::string& certificate, const std::string& key);

// For one thread. The limits count from the constructor on.
class Connection {
public:
    // Takes over the connected socket. `tls` null: plain; else the handshake is made by the first
    // Read or Write.
    Connection(std::uintptr_t socket, SSL_CTX* tls, const ConnectionLimits& limits);
    // Ends it in order: a client that is still sending gets the answer nevertheless.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::uintptr_t Socket() const { return m_socket; }
    // The head is there: from now on the limit is the whole's.
    void HeadIsRead() { m_limit = m_limits.whole; }

    // The bytes read, at least one; 0 or less at the end, after a failure, and when the time is
    // over.
    std::ptrdiff_t Read(char* data, std::size_t size);
    // All of it; false after a failure and when the time is over.
    bool Write(const char* data, std::size_t size);

private:
    struct BioEnd {
        void operator()(BIO* bio) const;
    };
    int TimeLeft() const;
    bool Wait();

    std::uintptr_t m_socket;
    bool m_encrypted;
    ConnectionLimits m_limits;
    int m_begun;
    int m_limit;
    std::unique_ptr<BIO, BioEnd> m_bio;
};
