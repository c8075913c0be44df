// ServiceTest.h - what tests of the online seal service share.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fakes/LibraryTest.h"
#include "foundation/Text.h"

constexpr char kAddress[] = "http://192.0.2.45/qelm42/QelmServlet";

// A transport whose calls all succeed, with nothing for an answer until the service is given one.
class ServiceTest : public LibraryTest {
protected:
    // Of each exchange, as UTF-8.
    static void ServiceAnswers(const std::string& utf8) {
        fakes::On("dwnt_http_response_data_get").Gives(utf8);
    }
    // The bodies that the service has got.
    static std::vector<std::string> Bodies() {
        std::vector<std::string> bodies;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "dwnt_http_body_set") bodies.push_back(call.arguments[1]);
        }
        return bodies;
    }
};

// The calls of a whole exchange, and at which of them it ends when they fail.
inline const std::vector<std::string> kExchange = {
    "dwnt_context_init",          "dwnt_config_set",    "dwnt_config_end",
    "dwnt_http_request_create",   "dwnt_http_head_set", "dwnt_http_head_set",
    "dwnt_http_handler",          "dwnt_http_body_set", "dwnt_http_processEx",
    "dwnt_http_response_data_get"};
inline const std::vector<std::string> kChecked = {
    "dwnt_context_init", "dwnt_config_end", "dwnt_http_request_create", "dwnt_http_processEx"};
inline const std::vector<std::string> kUnchecked = {"dwnt_config_set", "dwnt_http_head_set",
                                                    "dwnt_http_handler", "dwnt_http_body_set",
                                                    "dwnt_http_response_data_get"};

// The calls up to one of them.
inline std::vector<std::string> ExchangeUpTo(const std::string& function) {
    std::vector<std::string> calls;
    for (const std::string& call : kExchange) {
        calls.push_back(call);
        if (call == function) break;
    }
    return calls;
}
