// RegText.h - the text of an exported .reg file: looking values up, and changing one of them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// One value as the file tells it.
struct RegValue {
    // Between quotes: `bytes` is the text in UTF-8, without a terminator. Otherwise `bytes` are
    // the bytes of the number (four, lowest first) or those listed behind "hex:".
    bool isText = false;
    std::string bytes;
};

// Contents of a .reg file in UTF-8, with or without byte order mark, lines ended by LF or CR LF.
// Read are [key] lines, "name"="text" (escapes \\ and \"; any other backslash stands for itself),
// @= for the default value, dword:, hex: and hex(n): with lines continued by a backslash. A ";"
// begins a comment, on a line of its own or behind a value. Lines that are nothing of the kind are
// skipped; values below a [key] line that can't be read belong to no key.
//
// Keys are whole paths from the root's name on ("HKEY_LOCAL_MACHINE\software\Velmora", in the file
// also "HKLM\..."), with or without closing backslashes. Keys and names compare without regard to
// the case of ASCII letters. Where one value stands twice, the later one holds.
//
// Changing a value leaves every other byte of the contents as it was, comments and unknown lines
// included.
class RegText {
public:
    RegText() = default;
    explicit RegText(std::string contents) : m_contents(std::move(contents)) {}

    const std::string& Contents() const { return m_contents; }

    // True if the key, or one below it, has a line of its own.
    bool HasKey(std::string_view key) const;
    // Nothing if the value is absent or can't be read. An empty `name` is the default value.
    std::optional<RegValue> Find(std::string_view key, std::string_view name) const;
    // The number, from 1 on, of the first line that is skipped without being blank, a comment or
    // the header ("Windows Registry Editor ...", "REGEDIT4"); 0 without one.
    std::size_t FirstStrayLine() const;

    // Adds the key's line at the end unless it is there. False, with the contents as they were, if
    // the key can't be written as a line.
    bool AddKey(std::string_view key);
    // Gives the value `literal`, one of the three forms below, in the place of the one that holds,
    // or behind the last value of its key, which is added as needed. False, with the contents as
    // they were, if key or name can't be written in a line.
    bool Set(std::string_view key, std::string_view name, std::string_view literal);
    // Removes the lines of every such value. False if there was none.
    bool Remove(std::string_view key, std::string_view name);

    // What stands behind the equals sign. A text must have no control characters: IsLine().
    static std::string TextLiteral(std::string_view utf8);
    static std::string NumberLiteral(unsigned int number);
    static std::string RawLiteral(std::string_view bytes);
    // Can `text` stand within one line, and come back from it?
    static bool IsLine(std::string_view text);

private:
    std::string m_contents;
};

}  // namespace platform
