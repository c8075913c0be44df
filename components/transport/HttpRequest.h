// HttpRequest.h - a request of the transport as it is put together, and the context it belongs to.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct HttpRequest {
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

// Where requests go. Owns its requests, as the interface has no call that releases one.
class CTransportContext {
public:
    // All return a TransportCode.
    int Set(std::string_view name, std::string_view value);
    int EndConfiguration() const;

    HttpRequest* CreateRequest();
    bool Owns(const HttpRequest* request) const;

private:
    std::string m_serverHost;
    std::vector<std::unique_ptr<HttpRequest>> m_requests;
};

// A name that stands already gets the new value; names compare without regard to case. Line ends
// and zero bytes have no place in either: kTransportBadArgument.
int SetHeader(HttpRequest& request, std::string_view name, std::string_view value);
