// SealWords.h - what stands as one in a seal: a 汉字, or a word of another script.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

// The characters that a text may have; a certificate's common name has 64 at most.
inline constexpr std::size_t kSealLongestText = 128;

struct SealWord {
    std::u32string characters;  // never empty, without blanks
    bool ideograph = false;     // one character of Chinese, Japanese, Korean, or of full width
    bool afterBlank = false;    // a blank stands before it
};

// Splits UTF-8. Control characters and the ideographic space are blanks. kSealDrawn, kSealNoText,
// kSealLongText or kSealBadText; `words` is empty after a failure.
int SplitSealText(std::string_view utf8, std::vector<SealWord>& words);

bool HasIdeographs(std::span<const SealWord> words);
