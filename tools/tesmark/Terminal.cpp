#include "Terminal.h"

#include <cstdio>

Progress::Progress(const std::string& text) : m_shown(!text.empty() && StandardErrorIsTerminal()) {
    if (m_shown) std::fprintf(stderr, "%s ...", text.c_str());
}

Progress::~Progress() {
    if (m_shown) std::fputs("\r\033[K", stderr);
}
