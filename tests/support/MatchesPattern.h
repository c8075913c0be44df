// MatchesPattern.h - regular expressions for matchers: GoogleTest's own differ by platform.
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

// The whole text, by the syntax of ECMAScript; "." is any character but a line's end.
MATCHER_P(MatchesPattern, pattern, "matches " + std::string(pattern)) {
    return std::regex_match(std::string(arg), std::regex(pattern));
}
