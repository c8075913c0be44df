// Exchange.h - one POST over HTTP or HTTPS, by libcurl, which is opened for the first one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "components/http/ExchangeSettings.h"

struct ExchangeRequest {
    std::string url{};
    std::vector<std::string> headers{};  // "Name: value"
    std::string_view body{};
    std::size_t largestAnswer = 0;
    long mostRedirects = 0;  // 0: none is followed
    std::string user{};      // empty: no authentication
    std::string password{};
};

// How it ended. kFailed: `curlCode` tells how.
enum class ExchangeEnd { kAnswered, kNoLibrary, kTooLarge, kHeadTooLarge, kFailed };

struct ExchangeOutcome {
    ExchangeEnd end = ExchangeEnd::kNoLibrary;
    int curlCode = 0;
    std::string fault{};     // empty for kAnswered, else a clause in UTF-8, which a server may word
    int status = 0;          // of HTTP; what follows is told with kAnswered alone
    std::string type{};      // media type in lower case, without parameters
    bool isEncoded = false;  // compressed: it isn't asked for, but a server may do it
    std::string body{};
};

// Posts the request and takes the answer, whatever its status, on a connection of its own. A
// redirect is followed with the request, to http and https addresses, from https to https alone.
// Certificates of servers and of HTTPS proxies are checked, with TLS 1.2 at least; with a CA file
// none is trusted but its own. User and password go to the host of `url` only, once it asks for
// them; no cookie is kept. Blocks for settings.timeoutMs at the most. Any number of threads may do
// it at a time.
ExchangeOutcome PostRequest(const ExchangeSettings& settings, const ExchangeRequest& request);
