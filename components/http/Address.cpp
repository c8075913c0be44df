#include "components/http/Address.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

namespace {

constexpr std::string_view kBetweenAddresses("; \t\r\n\0", 6);
constexpr int kLargestPort = 65'535;

// Where user and password and host of an address begin and end.
struct Authority {
    std::size_t begin;
    std::size_t host;  // behind the last "@"
    std::size_t end;
};

Authority AuthorityOf(std::string_view url) {
    const std::size_t scheme = url.find("://");
    const std::size_t begin = scheme == url.npos ? 0 : scheme + 3;
    const std::size_t end = std::min(url.find_first_of("/?#", begin), url.size());
    const std::size_t at = url.substr(begin, end - begin).rfind('@');
    return {begin, at == url.npos ? begin : begin + at + 1, end};
}

// libcurl takes a colon without a number for no port.
bool IsPort(std::string_view digits) {
    int port = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read, error] = std::from_chars(digits.data(), end, port);
    return digits.empty() ||
           (error == std::errc() && read == end && port > 0 && port <= kLargestPort);
}

// A name and what is no port behind it, without an "@" where one may be: a user, and a password
// that ends the host before its time, since its "/", "?", "#", ";" or blank isn't percent-encoded.
bool MayBeLogin(std::string_view url, const Authority& authority) {
    const std::size_t colon = url.find(':', authority.begin);
    return authority.host == authority.begin && colon < authority.end &&
           url[authority.begin] != '[' && !IsPort(url.substr(colon + 1, authority.end - colon - 1));
}

// As whoever wrote the address may have meant it.
Authority MeantAuthority(std::string_view url) {
    const Authority strict = AuthorityOf(url);
    const std::size_t at = url.rfind('@');
    if (at == url.npos || !MayBeLogin(url, strict)) return strict;
    return {strict.begin, at + 1, std::min(url.find_first_of("/?#", at), url.size())};
}

std::string WithoutPassword(std::string_view url) {
    const Authority authority = MeantAuthority(url);
    const std::size_t colon = url.find(':', authority.begin);
    if (colon >= authority.host) return std::string(url);
    return std::string(url.substr(0, colon + 1)) + "***" +
           std::string(url.substr(authority.host - 1));
}

// Where the address that begins at `begin` ends: if that may be within a password, where the next
// one that tells its scheme begins.
std::size_t EndOfAddress(std::string_view text, std::size_t begin) {
    const std::size_t end = std::min(text.find_first_of(kBetweenAddresses, begin), text.size());
    const std::string_view first = text.substr(begin, end - begin);
    if (!MayBeLogin(first, AuthorityOf(first))) return end;
    const std::size_t scheme = text.find("://", end);
    return scheme == text.npos ? text.size() : text.find_last_of(kBetweenAddresses, scheme);
}

bool BeginsWith(std::string_view url, std::string_view scheme) {
    return url.size() >= scheme.size() &&
           strncasecmp(url.data(), scheme.data(), scheme.size()) == 0;
}

std::string FaultOfHost(const std::string& url) {
    const Authority authority = AuthorityOf(url);
    const std::string_view host =
        std::string_view(url).substr(authority.host, authority.end - authority.host);
    // The colons of an address of IPv6 stand in brackets.
    const std::size_t bracket = host.starts_with('[') ? host.find(']') : 0;
    if (bracket == host.npos) return "its host has no \"]\"";
    const std::size_t colon = std::min(host.find(':', bracket), host.size());
    if (colon == 0) return "it names no host";
    if (colon < host.size() && !IsPort(host.substr(colon + 1))) {
        return "its port is none from 1 to 65535";
    }
    const bool isWhole =
        std::none_of(url.begin(), url.end(), [](unsigned char c) { return c <= ' ' || c == 0x7F; });
    return isWhole ? "" : "it has a blank or a control character";
}

}  // namespace

std::vector<std::string> SplitAddresses(const std::string& text) {
    std::vector<std::string> addresses;
    for (std::size_t at = 0;
         (at = text.find_first_not_of(kBetweenAddresses, at)) != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(kBetweenAddresses, at), text.size());
        addresses.push_back(text.substr(at, end - at));
        at = end;
    }
    return addresses;
}

std::string ToldAddress(const std::string& url) {
    const Authority authority = MeantAuthority(url);
    const std::size_t end = std::min(url.find_first_of("?#", authority.host), url.size());
    return url.substr(0, authority.begin) + url.substr(authority.host, end - authority.host);
}

std::string WithoutPasswords(const std::string& text) {
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin =
            std::min(text.find_first_not_of(kBetweenAddresses, at), text.size());
        const std::size_t end = EndOfAddress(text, begin);
        shown += text.substr(at, begin - at) +
                 WithoutPassword(std::string_view(text).substr(begin, end - begin));
        at = end;
    }
    return shown;
}

std::string FaultOfAddress(const std::string& url) {
    if (!BeginsWith(url, "http://") && !BeginsWith(url, "https://")) {
        return "it begins neither with http:// nor with https://";
    }
    return FaultOfHost(url);
}

std::string FaultOfProxy(const std::string& proxy) {
    constexpr std::string_view kKinds[] = {"http://",    "https://",  "socks4://",
                                           "socks4a://", "socks5://", "socks5h://"};
    const bool isKnown =
        proxy.find("://") == proxy.npos ||
        std::any_of(std::begin(kKinds), std::end(kKinds),
                    [&](std::string_view kind) { return BeginsWith(proxy, kind); });
    return isKnown ? FaultOfHost(proxy) : "it begins with neither http://, https:// nor socks5://";
}
