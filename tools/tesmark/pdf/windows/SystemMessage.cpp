#include "pdf/windows/SystemMessage.h"

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"

namespace {

constexpr DWORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr DWORD kAnyLanguage = 0;

std::string TextIn(DWORD language, DWORD error) {
    wchar_t text[512];
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       language, text, sizeof text / sizeof *text, nullptr);
    return platform::NarrowFrom(CP_UTF8, {text, length});
}

}  // namespace

std::string LastErrorText() {
    const DWORD error = GetLastError();
    std::string text = TextIn(kEnglish, error);
    if (text.empty()) text = TextIn(kAnyLanguage, error);
    text.erase(text.find_last_not_of("\r\n .") + 1);
    return text.empty() ? "error " + std::to_string(error) : text;
}
