#include "platform/CodePage.h"

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"

namespace platform {

std::string Utf8FromAnsi(std::string_view text) {
    return NarrowFrom(CP_UTF8, WideFrom(CP_ACP, text));
}

std::string AnsiFromUtf8(std::string_view text) {
    return NarrowFrom(CP_ACP, WideFrom(CP_UTF8, text));
}

}  // namespace platform
