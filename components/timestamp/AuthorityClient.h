// AuthorityClient.h - one exchange with a time-stamp authority over HTTP (RFC 3161, section 3.4).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "components/timestamp/TimeStampSettings.h"

// Responses have a few kilobytes.
constexpr std::size_t kLargestResponse = 1 << 20;
constexpr long kMostRedirects = 5;

// Posts `request` to `url` and takes the answer's body, which is what HTTP 200 and the type
// application/timestamp-reply make a response. Follows redirects to http and https addresses, from
// https to https alone; there the server's certificate is checked. User and password go to the
// host of `url` only, once it asks for them. Blocks for settings.timeoutMs at the most.
// False, with `fault` a clause that tells what happened: in UTF-8, without a password, but with
// what the server said.
bool AskAuthority(const TimeStampSettings& settings, const std::string& url,
                  std::string_view request, std::string& response, std::string& fault);
