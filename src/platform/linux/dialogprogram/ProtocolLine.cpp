#include "platform/linux/dialogprogram/ProtocolLine.h"

#include <charconv>
#include <cstdint>

#include "platform/linux/dialogprogram/Pixels.h"
#include "platform/linux/dialogprogram/Utf8.h"

namespace platform {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

std::string_view EscapeOf(char32_t code) {
    switch (code) {
        case '\\': return "\\\\";
        case '\n': return "\\n";
        case '\r': return "\\r";
        case '\t': return "\\t";
        default: return {};
    }
}

std::optional<char> Unescaped(char32_t letter) {
    switch (letter) {
        case '\\': return '\\';
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: return {};
    }
}

void AppendEscaped(std::string_view text, std::string& line) {
    while (!text.empty()) {
        const std::optional<char32_t> code = TakeCharacter(text);
        const std::string_view escape = code ? EscapeOf(*code) : std::string_view();
        if (!escape.empty()) {
            line += escape;
        } else {
            AppendCharacter(code && !IsControlCharacter(*code) ? *code : kReplacementCharacter,
                            line);
        }
    }
}

std::optional<std::string> TextOf(std::string_view field) {
    std::string text;
    while (!field.empty()) {
        const std::optional<char32_t> code = TakeCharacter(field);
        if (!code || IsControlCharacter(*code)) return {};
        if (*code != '\\') {
            AppendCharacter(*code, text);
            continue;
        }
        if (field.empty()) return {};
        const std::optional<char> character = Unescaped(static_cast<unsigned char>(field[0]));
        if (!character) return {};
        text += *character;
        field.remove_prefix(1);
    }
    return text;
}

std::optional<int> NumberOf(std::string_view field) {
    int number = 0;
    const auto [end, failure] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (failure != std::errc() || std::to_string(number) != field) return {};
    return number;
}

std::optional<Colour> ColourOf(std::string_view field) {
    if (field.size() != 6) return {};
    Colour colour = 0;
    for (const char c : field) {
        const auto digit = std::string_view(kHexDigits).find(c);
        if (digit == std::string_view::npos) return {};
        colour = colour << 4 | static_cast<Colour>(digit);
    }
    return colour;
}

}  // namespace

void LineReader::Append(std::string_view bytes) {
    if (m_tooLong) return;
    m_bytes.erase(0, m_begin);
    m_searched -= m_begin;
    m_begin = 0;
    m_bytes += bytes;
}

std::optional<std::string> LineReader::Next() {
    if (m_tooLong) return {};
    const std::size_t end = m_bytes.find('\n', m_searched);
    const bool whole = end != std::string::npos;
    // Of a line without an end the line feed, too, has to find room yet.
    const std::size_t length = whole ? end + 1 - m_begin : m_bytes.size() + 1 - m_begin;
    if (length > m_longest) {
        m_tooLong = true;
        m_bytes = {};
        return {};
    }
    if (!whole) {
        m_searched = m_bytes.size();
        return {};
    }
    std::string line = m_bytes.substr(m_begin, end - m_begin);
    m_begin = m_searched = end + 1;
    return line;
}

void LineWriter::Put(int number) { m_line += '\t' + std::to_string(number); }

void LineWriter::Put(const std::string& text) {
    m_line += '\t';
    AppendEscaped(text, m_line);
}

void LineWriter::PutColour(Colour colour) {
    m_line += '\t';
    for (int shift = 20; shift >= 0; shift -= 4) m_line += kHexDigits[colour >> shift & 0xF];
}

void LineWriter::Put(const Rectangle& rectangle) {
    Put(rectangle.left);
    Put(rectangle.top);
    Put(rectangle.right);
    Put(rectangle.bottom);
}

void LineWriter::Put(const std::optional<Rectangle>& rectangle) {
    if (rectangle) Put(*rectangle);
}

void LineWriter::Put(const Picture& picture) {
    Put(picture.width);
    Put(picture.height);
    m_line += '\t';
    AppendPixels(picture, m_line);
}

LineParser::LineParser(std::string_view line) : m_word(line.substr(0, line.find('\t'))) {
    if (m_word.size() < line.size()) m_rest = line.substr(m_word.size() + 1);
}

std::optional<std::string_view> LineParser::NextField() {
    if (!m_valid || !m_rest) {
        m_valid = false;
        return {};
    }
    const std::string_view field = m_rest->substr(0, m_rest->find('\t'));
    if (field.size() < m_rest->size())
        m_rest = m_rest->substr(field.size() + 1);
    else
        m_rest.reset();
    return field;
}

void LineParser::Take(int& number) {
    const auto field = NextField();
    const auto value = field ? NumberOf(*field) : std::nullopt;
    m_valid = value.has_value();
    number = value.value_or(number);
}

void LineParser::Take(std::string& text) {
    const auto field = NextField();
    auto value = field ? TextOf(*field) : std::nullopt;
    m_valid = value.has_value();
    if (value) text = std::move(*value);
}

void LineParser::TakeColour(Colour& colour) {
    const auto field = NextField();
    const auto value = field ? ColourOf(*field) : std::nullopt;
    m_valid = value.has_value();
    colour = value.value_or(colour);
}

void LineParser::Take(Rectangle& rectangle) {
    Rectangle value;
    for (int* edge : {&value.left, &value.top, &value.right, &value.bottom}) Take(*edge);
    if (m_valid) rectangle = value;
}

void LineParser::Take(std::optional<Rectangle>& rectangle) {
    if (!m_rest) return;
    Rectangle value;
    Take(value);
    if (m_valid) rectangle = value;
}

void LineParser::Take(Picture& picture) {
    Picture value;
    Take(value.width);
    Take(value.height);
    const auto field = NextField();
    const bool sized = field && value.width > 0 && value.height > 0 &&
                       std::int64_t{value.width} * value.height <= kMostPixels;
    m_valid = sized && ParsePixels(*field, value);
    if (m_valid) picture = std::move(value);
}

}  // namespace platform
