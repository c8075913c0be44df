// PdfCursor.h - reads the bytes of a PDF word by word, strictly.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

bool IsPdfBlank(char c);
// Ends a word without belonging to it: a blank or a delimiter.
bool EndsPdfWord(char c);

// What stands below the keys of a dictionary, as it is written.
using PdfEntries = std::map<std::string, std::string_view>;

// Mends nothing and guesses nothing: what a reader might understand in another way isn't taken.
// Where something isn't taken, the place is anywhere behind the one before. `text` must outlive it.
class CPdfCursor {
public:
    CPdfCursor(std::string_view text, std::size_t at) : m_text(text), m_at(at) {}

    std::size_t At() const { return m_at; }
    bool Take(std::string_view bytes);
    // At least one.
    bool TakeBlanks();
    void SkipBlanks();
    void SkipBlanksAndComments();
    // Digits alone, up to the end of the word.
    bool TakeInteger(std::uint64_t& value);
    bool TakeInteger(int& value);
    // Exactly so many digits.
    bool TakeDigits(std::size_t count, std::uint64_t& value);
    // "12 0 obj"
    bool TakeObjectHeader(int& number, int& generation);
    // A dictionary in which no key stands twice, nor in those that it holds. Escapes in its keys
    // are gone.
    bool TakeDictionary(PdfEntries& entries);
    // One value of any kind.
    bool TakeValue();
    // Without its slash and its escapes.
    bool TakeName(std::string& name);

private:
    bool TakeEntry(PdfEntries& entries);
    bool TakeText();
    bool TakeHexadecimal();
    bool TakeArray();
    bool TakeNumberOrReference();
    bool IsAtEnd() const { return m_at >= m_text.size(); }
    bool Follows(std::string_view bytes) const { return m_text.substr(m_at).starts_with(bytes); }

    std::string_view m_text;
    std::size_t m_at;
    int m_depth = 0;
};

// A whole number and nothing else.
bool ReadPdfInteger(std::string_view text, std::uint64_t& value);
// A name and nothing else: what it says, without slash and escapes. Empty for any other value.
std::string ReadPdfName(std::string_view text);
