#include "platform/CodePage.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace platform {

namespace {

// One direction's converter, opened once a thread: opening costs four times what a short text
// does. Without it only ASCII passes.
class Converter {
public:
    Converter(const char* to, const char* from) : m_handle(iconv_open(to, from)) {}
    ~Converter() {
        if (IsOpen()) iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Appends what can be converted of `text` to `result`. What is left begins with a byte that
    // can't.
    std::string_view Append(std::string_view text, std::string& result) {
        if (!IsOpen()) return text;
        while (!text.empty()) {
            char buffer[1024];
            char* in = const_cast<char*>(text.data());
            std::size_t inLeft = text.size();
            char* out = buffer;
            std::size_t outLeft = sizeof buffer;
            const bool stopped = iconv(m_handle, &in, &inLeft, &out, &outLeft) == kFailed;
            const bool full = stopped && errno == E2BIG;
            result.append(buffer, sizeof buffer - outLeft);
            text.remove_prefix(text.size() - inLeft);
            if (stopped && !full) break;
        }
        return text;
    }

private:
    static constexpr auto kFailed = static_cast<std::size_t>(-1);

    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    iconv_t m_handle;
};

constexpr std::string_view kEuroInUtf8 = "\xE2\x82\xAC";
constexpr char kEuroInAnsi = '\x80';

std::size_t AsciiLength(std::string_view text) {
    const auto end = std::find_if(text.begin(), text.end(),
                                  [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    return static_cast<std::size_t>(end - text.begin());
}

bool IsTrail(unsigned char byte, unsigned char low, unsigned char high) {
    return byte >= low && byte <= high;
}

// The bytes that stand for one character, well formed or not: of a malformed sequence as many as
// could have begun a character (Unicode 15, table 3-7), which become one replacement together.
std::size_t CharacterLength(std::string_view text) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = at(0);
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead > 0xF4 || length == 1) return 1;
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (text.size() < 2 || !IsTrail(at(1), low, high)) return 1;
    std::size_t count = 2;
    while (count < length && count < text.size() && IsTrail(at(count), 0x80, 0xBF)) ++count;
    return count;
}

}  // namespace

std::string Utf8FromAnsi(std::string_view text) {
    const std::size_t ascii = AsciiLength(text);
    std::string result(text.substr(0, ascii));
    text.remove_prefix(ascii);
    if (text.empty()) return result;
    thread_local Converter converter("UTF-8", "GBK");
    result.reserve(ascii + text.size() * 3 / 2);
    while (!(text = converter.Append(text, result)).empty()) {
        if (text.front() == kEuroInAnsi) {
            result += kEuroInUtf8;
        } else {
            result += '?';
        }
        text.remove_prefix(1);
    }
    return result;
}

std::string AnsiFromUtf8(std::string_view text) {
    const std::size_t ascii = AsciiLength(text);
    std::string result(text.substr(0, ascii));
    text.remove_prefix(ascii);
    if (text.empty()) return result;
    thread_local Converter converter("GBK", "UTF-8");
    result.reserve(ascii + text.size());
    while (!(text = converter.Append(text, result)).empty()) {
        result += text.starts_with(kEuroInUtf8) ? kEuroInAnsi : '?';
        text.remove_prefix(CharacterLength(text));
    }
    return result;
}

}  // namespace platform
