#include "pdf/PdfCursor.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr int kDeepestValue = 64;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsHexadecimal(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

}  // namespace

bool IsPdfBlank(char c) {
    return std::string_view("\0\t\n\f\r ", 6).find(c) != std::string_view::npos;
}

bool EndsPdfWord(char c) {
    return IsPdfBlank(c) || std::string_view("()<>[]{}/%").find(c) != std::string_view::npos;
}

bool CPdfCursor::Take(std::string_view bytes) {
    if (IsAtEnd() || !Follows(bytes)) return false;
    m_at += bytes.size();
    return true;
}

bool CPdfCursor::TakeBlanks() {
    const std::size_t before = m_at;
    SkipBlanks();
    return m_at > before;
}

void CPdfCursor::SkipBlanks() {
    while (!IsAtEnd() && IsPdfBlank(m_text[m_at])) ++m_at;
}

void CPdfCursor::SkipBlanksAndComments() {
    bool comment = false;
    for (; !IsAtEnd(); ++m_at) {
        const char c = m_text[m_at];
        comment = comment ? c != '\r' && c != '\n' : c == '%';
        if (!comment && !IsPdfBlank(c)) return;
    }
}

bool CPdfCursor::TakeInteger(std::uint64_t& value) {
    if (IsAtEnd()) return false;
    const char* const end = m_text.data() + m_text.size();
    const auto result = std::from_chars(m_text.data() + m_at, end, value);
    if (result.ec != std::errc()) return false;
    m_at = static_cast<std::size_t>(result.ptr - m_text.data());
    return IsAtEnd() || EndsPdfWord(m_text[m_at]);
}

bool CPdfCursor::TakeInteger(int& value) {
    std::uint64_t wide = 0;
    if (!TakeInteger(wide) || wide > 0x7FFF'FFFF) return false;
    value = static_cast<int>(wide);
    return true;
}

bool CPdfCursor::TakeDigits(std::size_t count, std::uint64_t& value) {
    if (IsAtEnd()) return false;
    const std::string_view digits = m_text.substr(m_at, count);
    if (digits.size() != count || !std::all_of(digits.begin(), digits.end(), IsDigit)) return false;
    m_at += count;
    return std::from_chars(digits.data(), digits.data() + count, value).ec == std::errc();
}

bool CPdfCursor::TakeObjectHeader(int& number, int& generation) {
    return TakeInteger(number) && TakeBlanks() && TakeInteger(generation) && TakeBlanks() &&
           Take("obj") && !IsAtEnd() && EndsPdfWord(m_text[m_at]);
}

bool CPdfCursor::TakeDictionary(PdfEntries& entries) {
    entries.clear();
    if (m_depth >= kDeepestValue || !Take("<<")) return false;
    ++m_depth;
    for (SkipBlanksAndComments(); !Follows(">>"); SkipBlanksAndComments()) {
        if (IsAtEnd() || !TakeEntry(entries)) return false;
    }
    --m_depth;
    return Take(">>");
}

bool CPdfCursor::TakeEntry(PdfEntries& entries) {
    std::string key;
    if (!TakeName(key)) return false;
    SkipBlanksAndComments();
    const std::size_t begin = m_at;
    return TakeValue() && entries.try_emplace(key, m_text.substr(begin, m_at - begin)).second;
}

bool CPdfCursor::TakeName(std::string& name) {
    if (!Take("/")) return false;
    for (; !IsAtEnd() && !EndsPdfWord(m_text[m_at]); ++m_at) {
        char letter = m_text[m_at];
        const std::string_view digits = m_text.substr(m_at).substr(1, 2);
        if (letter == '#') {
            if (digits.size() != 2 || !std::all_of(digits.begin(), digits.end(), IsHexadecimal)) {
                return false;
            }
            unsigned char code = 0;
            std::from_chars(digits.data(), digits.data() + 2, code, 16);
            letter = static_cast<char>(code);
            m_at += 2;
        }
        name.push_back(letter);
    }
    return true;
}

bool CPdfCursor::TakeValue() {
    if (IsAtEnd()) return false;
    if (Follows("<<")) {
        PdfEntries entries;
        return TakeDictionary(entries);
    }
    switch (m_text[m_at]) {
        case '/': {
            std::string name;
            return TakeName(name);
        }
        case '(': return TakeText();
        case '<': return TakeHexadecimal();
        case '[': return TakeArray();
        default: return TakeNumberOrReference();
    }
}

bool CPdfCursor::TakeText() {
    std::size_t open = 0;
    for (; !IsAtEnd(); ++m_at) {
        const char c = m_text[m_at];
        if (c == '\\') {
            ++m_at;
        } else if (c == '(') {
            ++open;
        } else if (c == ')' && --open == 0) {
            ++m_at;
            return true;
        }
    }
    return false;
}

bool CPdfCursor::TakeHexadecimal() {
    for (++m_at; !IsAtEnd() && (IsHexadecimal(m_text[m_at]) || IsPdfBlank(m_text[m_at])); ++m_at) {
    }
    return Take(">");
}

bool CPdfCursor::TakeArray() {
    if (m_depth >= kDeepestValue || !Take("[")) return false;
    ++m_depth;
    for (SkipBlanksAndComments(); !Follows("]"); SkipBlanksAndComments()) {
        if (IsAtEnd() || !TakeValue()) return false;
    }
    --m_depth;
    return Take("]");
}

bool CPdfCursor::TakeNumberOrReference() {
    const std::size_t begin = m_at;
    while (!IsAtEnd() && !EndsPdfWord(m_text[m_at])) ++m_at;
    std::uint64_t number = 0;
    if (!ReadPdfInteger(m_text.substr(begin, m_at - begin), number)) return m_at > begin;
    CPdfCursor reference = *this;
    int generation = 0;
    if (reference.TakeBlanks() && reference.TakeInteger(generation) && reference.TakeBlanks() &&
        reference.Take("R") && (reference.IsAtEnd() || EndsPdfWord(m_text[reference.m_at]))) {
        m_at = reference.m_at;
    }
    return true;
}

bool ReadPdfInteger(std::string_view text, std::uint64_t& value) {
    CPdfCursor cursor(text, 0);
    return cursor.TakeInteger(value) && cursor.At() == text.size();
}

std::string ReadPdfName(std::string_view text) {
    CPdfCursor cursor(text, 0);
    std::string name;
    return cursor.TakeName(name) && cursor.At() == text.size() ? name : "";
}
