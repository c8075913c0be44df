// ServiceExchange.h - one exchange with the online seal service, its end told as one code.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/http/SealServiceSettings.h"

// kTransportOk if the service can be asked at `address` by its form; nothing is looked up.
int CheckAddress(const std::string& address);

// Posts `body` with `headers` to `address` (UTF-8) and gives the answer's body, which counts with
// the HTTP statuses 200 to 299. Returns a TransportCode; but for kTransportOk `answer` is empty.
// Redirects aren't followed: the request is meant for this address. Blocks for settings.timeoutMs
// at the most.
int AskService(const SealServiceSettings& settings, const std::string& address,
               const std::vector<std::string>& headers, std::string_view body, std::string& answer);
