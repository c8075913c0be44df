#include "components/transport/HttpRequest.h"

#include <algorithm>

#include "components/text/AsciiText.h"
#include "components/transport/TransportCodes.h"

namespace {

bool IsName(std::string_view name) {
    constexpr std::string_view kSigns = "!#$%&'*+-.^_`|~";
    return !name.empty() && std::all_of(name.begin(), name.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               kSigns.find(c) != kSigns.npos;
    });
}

}  // namespace

int SetHeader(HttpRequest& request, std::string_view name, std::string_view value) {
    constexpr std::string_view kForbidden("\r\n\0", 3);
    const std::string lower = LowerCase(name);
    if (!IsName(name) || value.find_first_of(kForbidden) != value.npos ||
        lower == "content-length" || lower == "transfer-encoding") {
        return kTransportBadArgument;
    }
    for (auto& header : request.headers) {
        if (LowerCase(header.first) != lower) continue;
        header.second = value;
        return kTransportOk;
    }
    request.headers.emplace_back(name, value);
    return kTransportOk;
}

std::vector<std::string> HeaderLines(const HttpRequest& request) {
    std::vector<std::string> lines;
    bool hasType = false;
    for (const auto& [name, value] : request.headers) {
        // libcurl takes a colon without a value for a header that is to be left out.
        lines.push_back(Trimmed(value).empty() ? name + ";" : name + ": " + value);
        hasType = hasType || LowerCase(name) == "content-type";
    }
    if (!hasType) lines.emplace_back("Content-Type: text/xml");
    return lines;
}
