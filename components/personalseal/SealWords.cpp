#include "components/personalseal/SealWords.h"

#include <algorithm>

#include "components/personalseal/SealControlCodes.h"
#include "components/text/Utf8Text.h"

namespace {

constexpr char32_t kIdeographicSpace = 0x3000;
constexpr char32_t kNoBreakSpace = 0xA0;
// Of one UTF-8 character.
constexpr std::size_t kMostBytes = 4;

struct Block {
    char32_t first;
    char32_t last;
};

constexpr Block kIdeographs[] = {{0x2E80, 0xA4CF},   {0xAC00, 0xD7AF},  {0xF900, 0xFAFF},
                                 {0xFE30, 0xFE4F},   {0xFF01, 0xFF60},  {0xFFE0, 0xFFE6},
                                 {0x1F200, 0x1F2FF}, {0x20000, 0x3FFFF}};

bool IsBlank(char32_t character) {
    return character == U' ' || character == kIdeographicSpace || character == kNoBreakSpace;
}

bool IsIdeograph(char32_t character) {
    return std::any_of(std::begin(kIdeographs), std::end(kIdeographs), [=](const Block& block) {
        return character >= block.first && character <= block.last;
    });
}

// U+0080 to U+009F are two bytes, whose first one never follows another byte of a character.
std::string WithoutControls(std::string_view utf8) {
    constexpr unsigned char kLead = 0xC2;
    std::string text;
    for (std::size_t at = 0; at < utf8.size(); ++at) {
        const auto byte = static_cast<unsigned char>(utf8[at]);
        const unsigned char next =
            at + 1 < utf8.size() ? static_cast<unsigned char>(utf8[at + 1]) : '\0';
        const bool isLater = byte == kLead && next >= 0x80 && next < 0xA0;
        const bool isControl = byte < 0x20 || byte == 0x7F || isLater;
        text.push_back(isControl ? ' ' : utf8[at]);
        if (isLater) ++at;
    }
    return text;
}

void Append(char32_t character, bool afterBlank, std::vector<SealWord>& words) {
    const bool ideograph = IsIdeograph(character);
    if (words.empty() || afterBlank || ideograph || words.back().ideograph) {
        words.push_back({{character}, ideograph, afterBlank && !words.empty()});
    } else {
        words.back().characters.push_back(character);
    }
}

}  // namespace

int SplitSealText(std::string_view utf8, std::vector<SealWord>& words) {
    words.clear();
    if (utf8.size() > kSealLongestText * kMostBytes) return kSealLongText;
    std::u32string characters;
    if (!Utf8Characters(WithoutControls(utf8), characters)) return kSealBadText;
    if (characters.size() > kSealLongestText) return kSealLongText;
    bool afterBlank = false;
    for (const char32_t character : characters) {
        const bool blank = IsBlank(character);
        if (!blank) Append(character, afterBlank, words);
        afterBlank = blank;
    }
    return words.empty() ? kSealNoText : kSealDrawn;
}

bool HasIdeographs(std::span<const SealWord> words) {
    return std::any_of(words.begin(), words.end(),
                       [](const SealWord& word) { return word.ideograph; });
}
