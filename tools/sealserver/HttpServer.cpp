#include "tools/sealserver/HttpServer.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>
#include <utility>

#include "components/text/AsciiText.h"
#include "tools/sealserver/AccessLog.h"
#include "tools/sealserver/AdminSite.h"
#include "tools/sealserver/BoundedServer.h"
#include "tools/sealserver/Html.h"
#include "tools/sealserver/ListeningSocket.h"
#include "tools/sealserver/SealService.h"

namespace {

constexpr int kTooLarge = 413;

using httplib::Request;
using httplib::Response;
using httplib::Server;
using Handled = Server::HandlerResponse;

// A request is answered and logged by one thread from its beginning to its end.
thread_local std::string t_note;

// Pages load nothing from elsewhere, are in no frame of others and send their forms here alone.
constexpr char kContentPolicy[] =
    "default-src 'none'; img-src 'self'; style-src 'self'; form-action 'self'; "
    "frame-ancestors 'none'; base-uri 'none'";

std::string WithoutPort(const std::string& host) {
    if (host.starts_with("[")) return host.substr(0, host.find(']') + 1);
    return host.substr(0, host.find(':'));
}

bool IsNumeric(const std::string& host) {
    if (host.starts_with("[")) return host.ends_with("]");
    return !host.empty() && host.find_first_not_of("0123456789.") == host.npos;
}

std::string CookieOf(const Request& request, const std::string& name) {
    const std::string cookies = "; " + request.get_header_value("Cookie");
    const std::string wanted = "; " + name + "=";
    const std::size_t found = cookies.find(wanted);
    if (found == cookies.npos) return {};
    const std::size_t begin = found + wanted.size();
    return cookies.substr(begin, cookies.find(';', begin) - begin);
}

WebRequest WebRequestOf(const Request& request) {
    WebRequest web;
    web.method = request.method == "POST" ? "POST" : "GET";
    web.path = request.path;
    web.address = request.remote_addr;
    web.session = CookieOf(request, kSessionCookie);
    for (const auto& [name, value] : request.params)
        (web.method == "POST" ? web.fields : web.query).emplace(name, value);
    for (const auto& [name, part] : request.files) web.fields[name] = part.content;
    return web;
}

// Posted by a page of another site, as a browser tells; other programs tell neither.
bool ComesFromElsewhere(const Request& request) {
    if (request.has_header("Sec-Fetch-Site")) {
        const std::string site = request.get_header_value("Sec-Fetch-Site");
        if (site != "same-origin" && site != "none") return true;
    }
    if (!request.has_header("Origin")) return false;
    const std::string origin = request.get_header_value("Origin");
    const std::size_t scheme = origin.find("://");
    return scheme == origin.npos || origin.substr(scheme + 3) != request.get_header_value("Host");
}

void Refuse(Response& response, int status, const char* text) {
    response.status = status;
    response.set_content(text, "text/plain; charset=utf-8");
}

void RefuseForm(Response& response) {
    const PageFrame frame{"Refused", "", "",
                          response.status == kTooLarge
                              ? "This is too large: a file may have 8 MiB. Nothing of it was "
                                "taken. Go back and choose another file."
                              : "The form can't be read. Go back and send it again."};
    response.set_content(Page(frame, ""), "text/html; charset=utf-8");
    response.set_header("Cache-Control", "no-store");
}

}  // namespace

bool IsLoopback(const std::string& address) {
    return address == "localhost" || address == "::1" ||
           (address.starts_with("127.") && IsNumeric(address));
}

class HttpServer::Front {
public:
    Front(HttpSettings settings, SealService& service, AdminSite& site, AccessLog& log)
        : m_settings(std::move(settings)), m_service(service), m_site(site), m_log(log) {
        TlsContext tls;
        if (!m_settings.certificate.empty())
            tls = MakeTlsContext(m_settings.certificate, m_settings.key);
        m_server = std::make_unique<BoundedServer>(
            std::move(tls), m_settings.limits, [this](const BoundedServer::RefusedHead& head) {
                m_log.Write({head.address, head.method, head.target, head.status, 0, ""});
            });
        SetUp();
        Bind();
    }

    std::string Url(const std::string& path) const {
        const std::string host = m_settings.address.find(':') == std::string::npos
                                     ? m_settings.address
                                     : "[" + m_settings.address + "]";
        return (m_settings.certificate.empty() ? "http://" : "https://") + host + ":" +
               std::to_string(m_port) + path;
    }

    void Serve() {
        const Ending ending{m_hasServed};
        m_server->listen_after_bind();
    }
    void Stop() {
        // Until it runs there is nothing that could be stopped.
        while (!m_server->is_running() && !m_hasServed) std::this_thread::yield();
        m_server->stop();
    }

private:
    struct Ending {
        std::atomic<bool>& told;
        ~Ending() { told = true; }
    };

    void Bind() {
        const std::string& address = m_settings.address;
        m_port = m_settings.port;
        const bool bound = m_port == 0 ? (m_port = m_server->bind_to_any_port(address)) > 0
                                       : m_server->bind_to_port(address, m_port);
        if (!bound)
            throw std::runtime_error("can't listen at " + address + ", port " +
                                     std::to_string(m_settings.port));
        m_server->KeepBursts();
    }

    void SetUp() {
        m_server->set_socket_options(
            [](socket_t socket) { SetListeningOptions(static_cast<std::uintptr_t>(socket)); });
        m_server->set_payload_max_length(kMaxBodyBytes);
        m_server->set_default_headers({{"X-Content-Type-Options", "nosniff"},
                                       // Without one a browser tells no form's origin.
                                       {"Referrer-Policy", "same-origin"},
                                       {"Content-Security-Policy", kContentPolicy}});
        m_server->set_pre_routing_handler([this](const Request& request, Response& response) {
            return Admit(request, response) ? Handled::Unhandled : Handled::Handled;
        });
        const auto answer = [this](const Request& request, Response& response) {
            request.path == kServicePath ? AnswerClient(request, response)
                                         : AnswerBrowser(request, response);
        };
        m_server->Get(".*", answer);
        m_server->Post(".*", answer);
        // A form that is refused while its body is read comes here without a word.
        m_server->set_error_handler(Server::HandlerWithResponse([](const Request& request,
                                                                   Response& response) {
            if (request.method != "POST" || !response.body.empty() || request.path == kServicePath)
                return Handled::Unhandled;
            RefuseForm(response);
            return Handled::Handled;
        }));
        m_server->set_exception_handler([](const Request&, Response& response, std::exception_ptr) {
            Refuse(response, 500, "The server failed.\n");
        });
        // Before the answer goes out, so that whoever has it finds it in the log.
        m_server->set_post_routing_handler([this](const Request& request, Response& response) {
            m_log.Write({request.remote_addr, request.method, request.target, response.status,
                         response.body.size(), std::exchange(t_note, {})});
        });
    }

    bool IsOurName(const std::string& host) const {
        const std::string name = LowerCase(WithoutPort(host));
        return name == "localhost" || IsNumeric(name) || name == LowerCase(m_settings.address) ||
               std::any_of(m_settings.names.begin(), m_settings.names.end(),
                           [&](const std::string& ours) { return name == LowerCase(ours); });
    }

    bool Admit(const Request& request, Response& response) const {
        const bool isPost = request.method == "POST";
        if (!IsOurName(request.get_header_value("Host"))) {
            Refuse(response, 403, "This host is known by another name.\n");
        } else if (!isPost && (request.path == kServicePath ||
                               (request.method != "GET" && request.method != "HEAD"))) {
            Refuse(response, 405, "Not a method for this address.\n");
            response.set_header("Allow", request.path == kServicePath ? "POST" : "GET, HEAD, POST");
        } else if (isPost && request.path != kServicePath && ComesFromElsewhere(request)) {
            Refuse(response, 403, "The form is another site's.\n");
        } else if (request.has_header("Transfer-Encoding") ||
                   (isPost && !request.has_header("Content-Length"))) {
            Refuse(response, 411, "The body's length has to be told.\n");
        } else if (request.has_header("Content-Encoding")) {
            Refuse(response, 415, "The body is to come as it is.\n");
        } else {
            return true;
        }
        return false;
    }

    void AnswerClient(const Request& request, Response& response) {
        ServiceReply reply =
            m_service.Answer(request.get_header_value("EncryptType"),
                             request.get_header_value("RequestContent"), request.body);
        response.set_content(reply.body, "text/xml; charset=utf-8");
        t_note = std::move(reply.summary);
    }

    void AnswerBrowser(const Request& request, Response& response) {
        const WebReply reply = m_site.Answer(WebRequestOf(request));
        response.status = reply.status;
        response.set_content(reply.body, reply.type);
        bool hasAge = false;
        for (const auto& [name, value] : reply.headers) {
            response.set_header(name, value);
            hasAge = hasAge || name == "Cache-Control";
        }
        if (!hasAge) response.set_header("Cache-Control", "no-store");
        t_note = reply.note;
    }

    HttpSettings m_settings;
    SealService& m_service;
    AdminSite& m_site;
    AccessLog& m_log;
    std::unique_ptr<BoundedServer> m_server;
    int m_port = 0;
    std::atomic<bool> m_hasServed = false;
};

HttpServer::HttpServer(HttpSettings settings, SealService& service, AdminSite& site, AccessLog& log)
    : m_front(std::make_unique<Front>(std::move(settings), service, site, log)) {}

HttpServer::~HttpServer() = default;

std::string HttpServer::Url(const std::string& path) const { return m_front->Url(path); }
void HttpServer::Serve() { m_front->Serve(); }
void HttpServer::Stop() { m_front->Stop(); }
