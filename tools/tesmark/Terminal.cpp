#include "Terminal.h"

#include <cstdio>
#include <string_view>

namespace {

constexpr std::string_view kEnd = " ...";

}  // namespace

Progress::Progress(const std::string& text)
    : m_width(!text.empty() && StandardErrorIsTerminal() ? text.size() + kEnd.size() : 0) {
    if (m_width > 0) std::fprintf(stderr, "%s%s", text.c_str(), kEnd.data());
}

Progress::~Progress() {
    // With blanks: not every console knows how to clear a line.
    if (m_width > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_width), "");
}
