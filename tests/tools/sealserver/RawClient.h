// RawClient.h - a connection to the server that keeps to no rule of HTTP.
#pragma once

#include <openssl/bio.h>

#include <memory>
#include <stdexcept>
#include <string>

class RawClient {
public:
    // The server's address as its Url tells it, without the path. Plain, whatever the scheme.
    explicit RawClient(const std::string& address)
        : m_bio(BIO_new_connect(address.substr(address.find("//") + 2).c_str())) {
        if (!m_bio || BIO_do_connect(m_bio.get()) != 1)
            throw std::runtime_error("no connection to " + address);
    }

    void Send(const std::string& text) {
        BIO_write(m_bio.get(), text.data(), static_cast<int>(text.size()));
    }
    // What comes until the server ends the connection, or until `mark` has come.
    std::string Receive(const std::string& mark = "") {
        std::string received;
        char piece[1024];
        while (mark.empty() || received.find(mark) == received.npos) {
            const int count = BIO_read(m_bio.get(), piece, sizeof piece);
            if (count <= 0) break;
            received.append(piece, static_cast<std::size_t>(count));
        }
        return received;
    }

private:
    struct End {
        void operator()(BIO* bio) const { BIO_free_all(bio); }
    };
    std::unique_ptr<BIO, End> m_bio;
};
