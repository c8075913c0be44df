// Settings of the drawing control: whatever the bytes, reading ends with values of their ranges,
// and what can be read can be drawn or is refused.

#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>

#include "components/personalseal/PersonalSeal.h"
#include "components/personalseal/SealControlCodes.h"
#include "components/personalseal/SealStyle.h"
#include "components/personalseal/SealWords.h"
#include "fuzz/driver/Require.h"

namespace {

// Drawing takes a thousand times as long as reading.
constexpr unsigned kDrawnOneOf = 32;

void RequireRanges(const SealStyle& style) {
    REQUIRE(!style.frame || (style.frameThick >= 1 && style.frameThick <= kSealMostFrameThick));
    REQUIRE(style.space >= 0 && style.space <= kSealMostSpace);
    REQUIRE(style.size >= kSealLeastSize && style.size <= kSealMostSize);
    REQUIRE(style.perColumn >= 1 && style.perColumn <= kSealMostPerColumn);
}

void RequireWords(std::string_view text) {
    std::vector<SealWord> words;
    const int code = SplitSealText(text, words);
    REQUIRE((code == kSealDrawn) == !words.empty());
    std::size_t count = 0;
    for (const SealWord& word : words) {
        REQUIRE(!word.characters.empty());
        REQUIRE(!word.ideograph || word.characters.size() == 1);
        count += word.characters.size();
    }
    REQUIRE(count <= kSealLongestText);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    SealStyle style;
    const int code = ReadSealSettings(input, style);
    REQUIRE(code == kSealDrawn || code == kSealBadSettings);
    if (code == kSealDrawn) RequireRanges(style);
    RequireWords(input);
    std::string png;
    const unsigned sum = std::accumulate(data, data + size, 0u);
    if (sum % kDrawnOneOf == 0) {
        const int drawn = DrawStyledSeal(input, "Seal", png);
        REQUIRE(drawn == kSealDrawn || drawn == code || code == kSealDrawn);
        REQUIRE((drawn == kSealDrawn) == !png.empty());
    } else if (sum % kDrawnOneOf == 1) {
        REQUIRE((DrawNameSeal(input, 120, 40, png) == kSealDrawn) == !png.empty());
    }
    return 0;
}
