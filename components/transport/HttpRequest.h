// HttpRequest.h - a request of the transport as it is put together, and what came of it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Not started: headers and body can be set. Over: body is empty; with kTransportOk as its result
// `answer` is what came back.
enum class RequestState { kOpen, kUnderWay, kOver };

struct HttpRequest {
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string body{};
    // The first step that failed. Callers look at few results, and a request that lacks a part must
    // not go out: sending it gives this code.
    int fault = 0;
    RequestState state = RequestState::kOpen;
    int result = 0;
    std::string answer{};
};

// A name that stands already gets the new value; names compare without regard to case.
// kTransportBadArgument: line ends or zero bytes in either, or a name that is no token or would
// contradict the body (Content-Length, Transfer-Encoding).
int SetHeader(HttpRequest& request, std::string_view name, std::string_view value);

// The headers as they are sent; text/xml is the content's type unless one is set.
std::vector<std::string> HeaderLines(const HttpRequest& request);
