#include "components/transport/HttpRequest.h"

#include <algorithm>
#include <cctype>

#include "components/transport/TransportCodes.h"

namespace {

bool EqualNames(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

}  // namespace

int CTransportContext::Set(std::string_view name, std::string_view value) {
    if (name != "ServerHost") return kTransportUnknownName;
    m_serverHost = value;
    return kTransportOk;
}

int CTransportContext::EndConfiguration() const {
    return m_serverHost.empty() ? kTransportNoServer : kTransportOk;
}

HttpRequest* CTransportContext::CreateRequest() {
    return m_requests.emplace_back(std::make_unique<HttpRequest>()).get();
}

bool CTransportContext::Owns(const HttpRequest* request) const {
    return std::any_of(m_requests.begin(), m_requests.end(),
                       [request](const auto& own) { return own.get() == request; });
}

int SetHeader(HttpRequest& request, std::string_view name, std::string_view value) {
    constexpr std::string_view kForbidden("\r\n\0", 3);
    if (name.empty() || name.find(':') != name.npos) return kTransportBadArgument;
    if (name.find_first_of(kForbidden) != name.npos ||
        value.find_first_of(kForbidden) != value.npos)
        return kTransportBadArgument;
    for (auto& header : request.headers) {
        if (!EqualNames(header.first, name)) continue;
        header.second = value;
        return kTransportOk;
    }
    request.headers.emplace_back(name, value);
    return kTransportOk;
}
