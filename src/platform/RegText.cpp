#include "platform/RegText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "platform/NoCase.h"

namespace platform {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kHeader = "Windows Registry Editor Version 5.00";
constexpr std::string_view kAnyHeader = "Windows Registry Editor ";
constexpr std::string_view kOldHeader = "REGEDIT4";

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char lower = Lower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string_view TrimLeft(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

// A line as it stands in the contents: [begin, end) with its line end, `text` without that and
// without leading blanks.
struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view text;

    char Kind() const { return text.empty() ? ';' : text.front(); }
};

bool NextLine(std::string_view contents, std::size_t& position, Line& line) {
    if (position >= contents.size()) return false;
    line.begin = position;
    const auto feed = contents.find('\n', position);
    line.end = position = feed == std::string_view::npos ? contents.size() : feed + 1;
    std::string_view text = contents.substr(
        line.begin, (feed == std::string_view::npos ? line.end : feed) - line.begin);
    if (text.ends_with('\r')) text.remove_suffix(1);
    if (line.begin == 0 && text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    line.text = TrimLeft(text);
    return true;
}

// The key of a [key] line, empty if it is malformed. A "]" within the key is part of it, and a
// comment may follow.
std::string_view KeyOfLine(std::string_view text) {
    for (auto close = text.find(']'); close != std::string_view::npos;
         close = text.find(']', close + 1)) {
        const std::string_view rest = TrimLeft(text.substr(close + 1));
        if (rest.empty() || rest.front() == ';') return text.substr(1, close - 1);
    }
    return {};
}

// A key in two parts: the root's long name, and the path below it without closing backslashes.
struct KeyParts {
    std::string_view root;
    std::string_view path;
};

KeyParts SplitKey(std::string_view key) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kShortNames{{
        {"HKLM", "HKEY_LOCAL_MACHINE"},
        {"HKCU", "HKEY_CURRENT_USER"},
        {"HKCR", "HKEY_CLASSES_ROOT"},
    }};
    const auto separator = key.find('\\');
    KeyParts parts{key.substr(0, separator), {}};
    for (const auto& [shortName, longName] : kShortNames) {
        if (EqualNoCase(parts.root, shortName)) parts.root = longName;
    }
    if (separator == std::string_view::npos) return parts;
    parts.path = key.substr(separator + 1);
    while (parts.path.ends_with('\\')) parts.path.remove_suffix(1);
    return parts;
}

bool SameKey(const KeyParts& a, const KeyParts& b) {
    return EqualNoCase(a.path, b.path) && EqualNoCase(a.root, b.root);
}

bool IsBelow(const KeyParts& key, const KeyParts& ancestor) {
    return key.path.size() > ancestor.path.size() &&
           (ancestor.path.empty() || key.path[ancestor.path.size()] == '\\') &&
           EqualNoCase(key.path.substr(0, ancestor.path.size()), ancestor.path) &&
           EqualNoCase(key.root, ancestor.root);
}

// Reads the quoted text at `position` and moves behind it.
std::optional<std::string> ReadQuoted(std::string_view contents, std::size_t& position) {
    std::string text;
    for (auto i = position + 1; i < contents.size() && contents[i] != '\n'; ++i) {
        if (contents[i] == '"') {
            position = i + 1;
            return text;
        }
        const bool escape = contents[i] == '\\' && i + 1 < contents.size() &&
                            (contents[i + 1] == '\\' || contents[i + 1] == '"');
        if (escape) ++i;
        text += contents[i];
    }
    return std::nullopt;
}

void SkipBlanks(std::string_view contents, std::size_t& position) {
    while (position < contents.size() && kBlanks.find(contents[position]) != kBlanks.npos) {
        ++position;
    }
}

// Nothing but blanks and a comment up to the line's end?
bool AtLineEnd(std::string_view contents, std::size_t position) {
    SkipBlanks(contents, position);
    const std::string_view rest = contents.substr(position, 2);
    return rest.empty() || rest[0] == ';' || rest[0] == '\n' || rest == "\r\n" || rest == "\r";
}

// Moves over a backslash at a line's end to the first digit of the next line. A line that begins
// with anything else continues nothing.
void SkipContinuation(std::string_view contents, std::size_t& position) {
    if (position >= contents.size() || contents[position] != '\\') return;
    auto next = position + 1;
    SkipBlanks(contents, next);
    if (contents.substr(next, 1) == "\r") ++next;
    if (contents.substr(next, 1) != "\n") return;
    ++next;
    SkipBlanks(contents, next);
    if (next < contents.size() && HexDigit(contents[next]) >= 0) position = next;
}

// The digits at `position`, at most `limit` of them; nothing if there is none.
std::optional<unsigned int> ReadHex(std::string_view contents, std::size_t& position, int limit) {
    unsigned int number = 0;
    int digits = 0;
    for (; position < contents.size() && HexDigit(contents[position]) >= 0; ++position, ++digits) {
        if (digits == limit) return std::nullopt;
        number = number << 4 | static_cast<unsigned int>(HexDigit(contents[position]));
    }
    if (digits == 0) return std::nullopt;
    return number;
}

// Ends behind the last digit, so that what follows on the line stays when the bytes are replaced.
std::optional<std::string> ReadBytes(std::string_view contents, std::size_t& position) {
    if (AtLineEnd(contents, position)) return std::string();
    std::string bytes;
    for (auto next = position;; ++next) {
        SkipBlanks(contents, next);
        SkipContinuation(contents, next);
        const auto byte = ReadHex(contents, next, 2);
        if (!byte) return std::nullopt;
        bytes += static_cast<char>(*byte);
        position = next;
        SkipBlanks(contents, next);
        if (next >= contents.size() || contents[next] != ',') return bytes;
    }
}

std::string NumberBytes(unsigned int number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

// Moves over `word` if it stands at `position`, in any case.
bool Accept(std::string_view contents, std::size_t& position, std::string_view word) {
    if (!EqualNoCase(contents.substr(position, word.size()), word)) return false;
    position += word.size();
    return true;
}

bool AcceptRawPrefix(std::string_view contents, std::size_t& position) {
    if (!Accept(contents, position, "hex")) return false;
    if (Accept(contents, position, "(")) {
        if (!ReadHex(contents, position, 8) || !Accept(contents, position, ")")) return false;
    }
    return Accept(contents, position, ":");
}

// Reads what stands behind the equals sign and moves behind it.
std::optional<RegValue> ReadLiteral(std::string_view contents, std::size_t& position) {
    RegValue value;
    std::optional<std::string> bytes;
    if (contents.substr(position, 1) == "\"") {
        value.isText = true;
        bytes = ReadQuoted(contents, position);
    } else if (Accept(contents, position, "dword:")) {
        if (const auto number = ReadHex(contents, position, 8)) bytes = NumberBytes(*number);
    } else if (AcceptRawPrefix(contents, position)) {
        bytes = ReadBytes(contents, position);
    }
    if (!bytes || !AtLineEnd(contents, position)) return std::nullopt;
    value.bytes = std::move(*bytes);
    return value;
}

// A value found: its lines [begin, end), its literal [literalBegin, literalEnd).
struct FoundValue {
    std::size_t begin, end, literalBegin, literalEnd;
    RegValue value;
};

// Reads the name of a value at `position` and moves behind it; "" for the default value.
std::optional<std::string> ReadName(std::string_view contents, std::size_t& position) {
    if (contents[position] == '"') return ReadQuoted(contents, position);
    ++position;
    return std::string();
}

// The value of that name; without one, whatever value the line has.
std::optional<FoundValue> ReadValue(std::string_view contents, const Line& line,
                                    std::optional<std::string_view> wanted) {
    if (line.Kind() != '"' && line.Kind() != '@') return std::nullopt;
    auto position = static_cast<std::size_t>(line.text.data() - contents.data());
    const auto name = ReadName(contents, position);
    if (!name || (wanted && !EqualNoCase(*name, *wanted))) return std::nullopt;
    SkipBlanks(contents, position);
    if (!Accept(contents, position, "=")) return std::nullopt;
    SkipBlanks(contents, position);
    const auto literal = position;
    auto value = ReadLiteral(contents, position);
    if (!value) return std::nullopt;
    const auto feed = contents.find('\n', position);
    const auto end = feed == std::string_view::npos ? contents.size() : feed + 1;
    return FoundValue{line.begin, end, literal, position, std::move(*value)};
}

// A key, a comment, or the header.
bool SaysWhatItIs(const Line& line) {
    switch (line.Kind()) {
        case ';': return true;
        case '[': return !KeyOfLine(line.text).empty();
        default: return line.text.starts_with(kAnyHeader) || line.text.starts_with(kOldHeader);
    }
}

// Calls visit(line) for the [key] line of every section of `key` and for each line in it.
template <typename Visit>
void ForEachLine(std::string_view contents, std::string_view key, Visit visit) {
    const KeyParts wanted = SplitKey(key);
    bool inside = false;
    Line line;
    for (std::size_t position = 0; NextLine(contents, position, line);) {
        if (line.Kind() == '[') inside = SameKey(SplitKey(KeyOfLine(line.text)), wanted);
        if (inside) visit(line);
    }
}

// The last such value, which is the one that holds.
std::optional<FoundValue> FindLast(std::string_view contents, std::string_view key,
                                   std::string_view name) {
    std::optional<FoundValue> last;
    ForEachLine(contents, key, [&](const Line& line) {
        if (auto found = ReadValue(contents, line, name)) last = std::move(found);
    });
    return last;
}

// Behind the last line of the key's last section that is neither blank nor a comment.
std::optional<std::size_t> EndOfSection(std::string_view contents, std::string_view key) {
    std::optional<std::size_t> end;
    ForEachLine(contents, key, [&](const Line& line) {
        if (line.Kind() != ';') end = line.end;
    });
    return end;
}

std::string_view LineEnd(std::string_view contents) {
    const auto feed = contents.find('\n');
    const bool pair = feed != std::string_view::npos && feed > 0 && contents[feed - 1] == '\r';
    return pair ? "\r\n" : "\n";
}

// A carriage return at the very end is half of a line end already.
void EndLastLine(std::string& text, std::string_view lineEnd) {
    if (text.ends_with('\r')) lineEnd = "\n";
    if (!text.ends_with('\n')) text += lineEnd;
}

void AppendLine(std::string& text, std::string_view line, std::string_view lineEnd) {
    text.append(line).append(lineEnd);
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted += '"';
}

}  // namespace

bool RegText::HasKey(std::string_view key) const {
    const KeyParts wanted = SplitKey(key);
    Line line;
    for (std::size_t position = 0; NextLine(m_contents, position, line);) {
        if (line.Kind() != '[') continue;
        const KeyParts found = SplitKey(KeyOfLine(line.text));
        if (SameKey(found, wanted) || IsBelow(found, wanted)) return true;
    }
    return false;
}

std::optional<RegValue> RegText::Find(std::string_view key, std::string_view name) const {
    auto found = FindLast(m_contents, key, name);
    if (!found) return std::nullopt;
    return std::move(found->value);
}

std::size_t RegText::FirstStrayLine() const {
    std::size_t number = 1;
    Line line;
    for (std::size_t position = 0; NextLine(m_contents, position, line);) {
        if (const auto value = ReadValue(m_contents, line, std::nullopt)) {
            position = value->end;
        } else if (!SaysWhatItIs(line)) {
            return number;
        }
        const auto read = std::string_view(m_contents).substr(line.begin, position - line.begin);
        number += static_cast<std::size_t>(std::count(read.begin(), read.end(), '\n'));
    }
    return 0;
}

bool RegText::AddKey(std::string_view key) {
    while (key.ends_with('\\')) key.remove_suffix(1);
    if (!IsLine(key) || KeyOfLine("[" + std::string(key) + "]") != key || key.empty()) return false;
    if (EndOfSection(m_contents, key)) return true;
    const std::string lineEnd(LineEnd(m_contents));
    if (m_contents.empty()) AppendLine(m_contents, kHeader, lineEnd);
    EndLastLine(m_contents, lineEnd);
    AppendLine(m_contents, "", lineEnd);
    AppendLine(m_contents, "[" + std::string(key) + "]", lineEnd);
    return true;
}

bool RegText::Set(std::string_view key, std::string_view name, std::string_view literal) {
    if (!IsLine(name)) return false;
    if (const auto found = FindLast(m_contents, key, name)) {
        m_contents.replace(found->literalBegin, found->literalEnd - found->literalBegin, literal);
        return true;
    }
    if (!AddKey(key)) return false;
    const std::string lineEnd(LineEnd(m_contents));
    if (*EndOfSection(m_contents, key) == m_contents.size()) EndLastLine(m_contents, lineEnd);
    std::string line = name.empty() ? "@" : Quoted(name);
    line.append("=").append(literal).append(lineEnd);
    m_contents.insert(*EndOfSection(m_contents, key), line);
    return true;
}

bool RegText::Remove(std::string_view key, std::string_view name) {
    bool removed = false;
    while (const auto found = FindLast(m_contents, key, name)) {
        m_contents.erase(found->begin, found->end - found->begin);
        removed = true;
    }
    return removed;
}

std::string RegText::TextLiteral(std::string_view utf8) { return Quoted(utf8); }

std::string RegText::NumberLiteral(unsigned int number) {
    char text[16];
    std::snprintf(text, sizeof text, "dword:%08x", number);
    return text;
}

std::string RegText::RawLiteral(std::string_view bytes) {
    std::string literal = "hex:";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        char text[4];
        std::snprintf(text, sizeof text, ",%02x", static_cast<unsigned char>(bytes[i]));
        literal += text + (i == 0 ? 1 : 0);
    }
    return literal;
}

bool RegText::IsLine(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < ' ' && c != '\t') return false;
    }
    return true;
}

}  // namespace platform
