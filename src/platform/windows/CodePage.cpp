#include "platform/CodePage.h"

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"

namespace platform {

namespace {

constexpr std::uint32_t kLastOfOneUnit = 0xFFFF;
constexpr std::uint32_t kLastCharacter = 0x10FFFF;

// As UTF-16.
std::wstring Units(std::uint32_t number) {
    if (number <= kLastOfOneUnit) return std::wstring(1, static_cast<wchar_t>(number));
    const std::uint32_t rest = number - kLastOfOneUnit - 1;
    return {static_cast<wchar_t>(0xD800 + (rest >> 10)),
            static_cast<wchar_t>(0xDC00 + (rest & 0x3FF))};
}

}  // namespace

std::string Utf8FromAnsi(std::string_view text) {
    return NarrowFrom(CP_UTF8, WideFrom(CP_ACP, text));
}

std::string AnsiFromUtf8(std::string_view text) {
    return NarrowFrom(CP_ACP, WideFrom(CP_UTF8, text));
}

std::string AnsiFromCharacter(std::uint32_t number) {
    if (number > kLastCharacter) return {};
    const std::wstring units = Units(number);
    // UTF-8 has every character, and the system takes no question for what it lacks.
    const bool isUtf8 = GetACP() == CP_UTF8;
    char bytes[8];
    BOOL isLacking = FALSE;
    const int length =
        WideCharToMultiByte(CP_ACP, isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS,
                            units.data(), static_cast<int>(units.size()), bytes, sizeof bytes,
                            nullptr, isUtf8 ? nullptr : &isLacking);
    return length > 0 && !isLacking ? std::string(bytes, static_cast<std::size_t>(length))
                                    : std::string();
}

bool IsAnsiLeadByte(char byte) { return IsDBCSLeadByte(static_cast<BYTE>(byte)) != FALSE; }

}  // namespace platform
