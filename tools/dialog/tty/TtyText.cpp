#include "tools/dialog/tty/TtyText.h"

#include <iconv.h>

#include <cerrno>

#include "platform/linux/dialogprogram/Utf8.h"

namespace {

const iconv_t kNoConversion = reinterpret_cast<iconv_t>(-1);
constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

// Marks and overrides of the bidirectional algorithm (UAX 9), and the two separators.
bool TurnsLines(char32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool SeparatesWords(char32_t code) { return code == '\n' || code == '\r' || code == '\t'; }

// What can't be converted gives "?"; of UTF-8 one for each character.
std::string Convert(iconv_t conversion, std::string_view from) {
    std::string to, copy(from);
    iconv(conversion, nullptr, nullptr, nullptr, nullptr);
    char* in = copy.data();
    std::size_t left = copy.size();
    const auto skip = [&] {
        ++in;
        --left;
    };
    while (left > 0) {
        char piece[256];
        char* out = piece;
        std::size_t room = sizeof piece;
        const std::size_t result = iconv(conversion, &in, &left, &out, &room);
        const bool isFull = result == kFailed && errno == E2BIG;
        to.append(piece, sizeof piece - room);
        if (result != kFailed || isFull) continue;
        to += '?';
        skip();
        while (left > 0 && (static_cast<unsigned char>(*in) & 0xC0) == 0x80) skip();
    }
    return to;
}

}  // namespace

std::string OneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const auto code = platform::TakeCharacter(text);
        if (!code || TurnsLines(*code)) {
            line += '?';
        } else if (platform::IsControlCharacter(*code)) {
            line += SeparatesWords(*code) ? ' ' : '?';
        } else {
            platform::AppendCharacter(*code, line);
        }
    }
    return line;
}

CharacterSet::CharacterSet(const std::string& name)
    : m_name(name),
      m_encoder(iconv_open(name.c_str(), "UTF-8")),
      m_decoder(iconv_open("UTF-8", name.c_str())) {}

CharacterSet::~CharacterSet() {
    if (m_encoder != kNoConversion) iconv_close(m_encoder);
    if (m_decoder != kNoConversion) iconv_close(m_decoder);
}

bool CharacterSet::IsUtf8() const { return m_name == "UTF-8"; }

bool CharacterSet::HasChinese() const {
    const std::string_view sample = platform::BytesOf(u8"确定取消印章预览");
    return ToUtf8(FromUtf8(sample)) == sample;
}

std::string CharacterSet::FromUtf8(std::string_view text) const {
    if (m_encoder == kNoConversion) return std::string(text.size(), '?');
    return Convert(m_encoder, text);
}

std::string CharacterSet::ToUtf8(std::string_view bytes) const {
    if (m_decoder == kNoConversion) return std::string(bytes.size(), '?');
    return Convert(m_decoder, bytes);
}
