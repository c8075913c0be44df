// ProtocolLine.h - one line between the library and the program that shows its dialogs: a word and
// its fields, separated by tabs. docs/dialog-protocol.md has the whole of it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/DialogWindow.h"

namespace platform {

// Bytes with the line feed.
constexpr std::size_t kLongestLineToProgram = 8U << 20;
constexpr std::size_t kLongestLineFromProgram = 64U << 10;

// The most pixels that a picture has in a line.
constexpr int kMostPixels = 1'048'576;

// Puts bytes together to lines, however they are cut when they arrive.
class LineReader {
public:
    explicit LineReader(std::size_t longest) : m_longest(longest) {}

    void Append(std::string_view bytes);
    // The next whole line, without its line feed. Nothing if none is there yet, and for good once
    // a line was too long.
    std::optional<std::string> Next();
    // A line is longer than allowed, whether its end has arrived or not.
    bool IsTooLong() const { return m_tooLong; }

private:
    std::size_t m_longest;
    std::string m_bytes;
    std::size_t m_begin = 0;     // of the next line
    std::size_t m_searched = 0;  // no line feed stands between m_begin and here
    bool m_tooLong = false;
};

// Writes one line, field by field.
class LineWriter {
public:
    explicit LineWriter(std::string_view word) : m_line(word) {}

    void Put(int number);
    // UTF-8. What no line may hold (bytes that are no UTF-8, control characters without an escape)
    // becomes U+FFFD.
    void Put(const std::string& text);
    // As `rrggbb`. Not an overload of Put: a colour is a number to the compiler.
    void PutColour(Colour colour);
    void Put(const Rectangle& rectangle);
    void Put(const std::optional<Rectangle>& rectangle);
    // Width, height and pixels.
    void Put(const Picture& picture);

    // With its line feed.
    std::string Finish() && { return std::move(m_line) + '\n'; }

private:
    std::string m_line;
};

// Reads one line, field by field. From the first field on that is missing or isn't what it should
// be, the line is invalid, and what was asked for is left as it was.
class LineParser {
public:
    // `line` has no line feed, and has to outlive this.
    explicit LineParser(std::string_view line);

    std::string_view Word() const { return m_word; }

    // Only in its one shortest form, and within 32 bits.
    void Take(int& number);
    void Take(std::string& text);
    void TakeColour(Colour& colour);
    void Take(Rectangle& rectangle);
    // Nothing if the line ends here.
    void Take(std::optional<Rectangle>& rectangle);
    // As many pixels as width and height tell, at most kMostPixels and at least one.
    void Take(Picture& picture);

    // No field was wrong, and none is left.
    bool IsWhole() const { return m_valid && !m_rest; }

private:
    std::optional<std::string_view> NextField();

    std::string_view m_word;
    std::optional<std::string_view> m_rest;  // behind the tab that separates it
    bool m_valid = true;
};

}  // namespace platform
