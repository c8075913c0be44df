// HttpServer.h - the service and the administrator's page behind one port.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/sealserver/ServerLimits.h"

class AccessLog;
class AdminSite;
class SealService;

constexpr char kServicePath[] = "/QelmServlet";
// Of a request's body: a seal file of the largest size in a form.
constexpr std::size_t kMaxBodyBytes = 9u << 20;

struct HttpSettings {
    std::string address = "127.0.0.1";
    int port = 0;             // 0: any that is free
    std::string certificate;  // a PEM file with the chain; empty: plain HTTP
    std::string key;          // a PEM file
    // Names by which browsers and clients reach it, beside "localhost" and numeric addresses.
    std::vector<std::string> names;
    ServerLimits limits{};
};

// "127.0.0.0/8", "::1" and "localhost".
bool IsLoopback(const std::string& address);

// Listens from the constructor on, answers while Serve runs, on threads of its own. Requests to
// kServicePath go to the service, all others to the site. Refused are hosts by another name
// (403: a web page of another origin that has its own name lead here), forms of another site's
// pages (403: they would use up the attempts at the password), other methods than GET, HEAD and
// POST (405), bodies that are compressed (415), without a length told at the front (411), or over
// kMaxBodyBytes (413), and heads that RequestHead.h doesn't let pass (414, 416, 431). A form of the
// site whose body isn't taken in is answered by a page that says why.
class HttpServer {
public:
    // Throws std::runtime_error where the address or port can't be had, or the certificate's files
    // are unfit.
    HttpServer(HttpSettings settings, SealService& service, AdminSite& site, AccessLog& log);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    // "http://127.0.0.1:<port>" and `path`.
    std::string Url(const std::string& path) const;
    // Until Stop is called and the requests that have their turn are answered, as long as each may
    // last; connections that wait for theirs or have sent nothing yet are closed. Once only.
    void Serve();
    // By any other thread; waits for Serve to begin, but not for its end.
    void Stop();

private:
    class Front;
    std::unique_ptr<Front> m_front;
};
