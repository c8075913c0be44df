// TtyText.h - texts as a terminal may get them, in its own character set.
#pragma once

#include <string>
#include <string_view>

// One line that can't steer a terminal, whatever UTF-8 `text` is: line feeds, returns and tabs
// become blanks; other control characters, and those that turn the direction of writing, become
// "?".
std::string OneLine(std::string_view text);

// Between UTF-8 and a character set of the C library's ("UTF-8", "GB18030", "ANSI_X3.4-1968").
// What the other one lacks becomes "?".
class CharacterSet {
public:
    explicit CharacterSet(const std::string& name);
    ~CharacterSet();
    CharacterSet(const CharacterSet&) = delete;
    CharacterSet& operator=(const CharacterSet&) = delete;

    const std::string& Name() const { return m_name; }
    bool IsUtf8() const;
    // The texts of the templates come out whole.
    bool HasChinese() const;

    std::string FromUtf8(std::string_view text) const;
    std::string ToUtf8(std::string_view bytes) const;

private:
    std::string m_name;
    void* m_encoder;
    void* m_decoder;
};
