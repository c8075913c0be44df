// ShownLabel.h - labels of certificates and seals as the dialog program gets them.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

// Nobody reads more in a list or a tree, and a program that lays out far longer ones takes the
// opening's time for it.
constexpr std::size_t kLongestLabel = 1'000;  // characters

// `text`, GBK up to its first zero byte, in UTF-8 and as one line: line feeds, returns and tabs are
// blanks, other control characters U+FFFD. Of a longer one than kLongestLabel come that many
// characters, and U+2026 behind them.
std::string ShownLabel(const std::string& text);

}  // namespace platform
