// LoopbackServer.h - a small HTTP or HTTPS server on the loopback address, for one test.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Answers one request after another on a thread of its own; stopped and joined at the end. Over
// HTTPS its certificate is made up, for this address, and trusted by nobody.
class LoopbackServer {
public:
    enum class Scheme { Http, Https };
    // From the request's path to the whole answer, head included.
    using Answer = std::function<std::string(const std::string& path)>;
    struct Request {
        std::string path;  // of a request to a proxy the whole address
        std::string head;  // with the empty line at its end
        std::string body;  // as many bytes as Content-Length tells
    };
    using Handler = std::function<std::string(const Request& request)>;

    explicit LoopbackServer(Answer answer, Scheme scheme = Scheme::Http);
    // `port` 0 is any that is free. Throws std::runtime_error if the server can't be set up.
    explicit LoopbackServer(Handler handler, Scheme scheme = Scheme::Http, int port = 0);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    // "http://127.0.0.1:<port>" and `path`.
    std::string Url(const std::string& path) const;
    // How connections end once the answer is written, from now on. ByPeer: when the peer hangs up.
    enum class Ending { Orderly, ByReset, ByPeer };
    void EndConnections(Ending ending);
    // The server's certificate in PEM, for who is to trust it; empty over HTTP.
    std::string Certificate() const;
    // The requests so far, each up to the end of its head.
    std::vector<std::string> Requests() const;

    // `status` as "200 OK"; `headers` each with its line end.
    static std::string Page(const std::string& status, const std::string& body,
                            const std::string& headers = "");
    // An address to which nobody listens.
    static std::string DeadUrl(const std::string& path);

private:
    class Server;
    std::unique_ptr<Server> m_server;
};
