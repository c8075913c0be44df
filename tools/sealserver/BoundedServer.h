// BoundedServer.h - cpp-httplib's server on connections that are bounded in time, bytes and number.
#pragma once

#include <httplib.h>

#include <functional>
#include <string>

#include "tools/sealserver/Connection.h"

// Takes the place of httplib::SSLServer, too. One request a connection. The library itself bounds
// neither the request's line nor the number of header fields nor a request's time, and parses
// "Range" by an expression that recurses for each character: here it gets a head only when that is
// whole and RequestHead.h lets it pass. Once it is stopped, connections that have sent nothing yet
// are closed like those that wait for their turn; the others are served to their end.
class BoundedServer : public httplib::Server {
public:
    struct RefusedHead {
        std::string address;
        std::string method;  // empty where the head has none
        std::string target;
        int status = 0;
    };
    // Told from the thread that serves the connection, before the answer goes out.
    using HeadLog = std::function<void(const RefusedHead&)>;

    // `tls` null: plain HTTP.
    BoundedServer(TlsContext tls, const ServerLimits& limits, HeadLog log);

    // Once the port is bound: the system keeps more connections than the library's five until they
    // are accepted, where it lets that be changed.
    void KeepBursts();

private:
    bool process_and_close_socket(socket_t socket) override;
    bool Serve(Connection& connection);
    bool HasBegun(const Connection& connection) const;
    void Refuse(Connection& connection, int status, const std::string& head);

    TlsContext m_tls;
    ServerLimits m_limits;
    HeadLog m_log;
};
