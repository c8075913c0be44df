#include "components/personalseal/PersonalSeal.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "components/personalseal/SealControlCodes.h"
#include "components/personalseal/SealSheet.h"
#include "components/personalseal/SealStyle.h"

namespace {

constexpr int kTextAbove = 1;
constexpr int kTextAlone = 0;

constexpr int kLeastSide = 24;
constexpr int kMostSide = 4'096;
constexpr double kLeastNameSize = 2;  // points

// Between ink and edge or frame, in a character's size.
constexpr double kMargin = 0.06;
constexpr double kFramePadding = 0.2;
// Of a name's picture: in parts of its lesser side.
constexpr double kNameFrame = 0.03;
constexpr double kNamePadding = 0.09;
// Of the lower text to the upper.
constexpr double kLowerSize = 0.5;
constexpr double kLowerGap = 0.3;

double Pixels(double points) { return points * kSealDpi / 72; }

std::u32string CharactersOf(const std::vector<SealWord>& words) {
    std::u32string characters;
    for (const SealWord& word : words) characters += word.characters;
    return characters;
}

// The sheet that has the block, a margin and the frame.
SealSheet SheetAround(const SealBlock& block, const SealStyle& style) {
    const double size = Pixels(style.size);
    const double thick = style.frame ? Pixels(style.frameThick) : 0;
    const double padding =
        style.frame ? std::max(kFramePadding * size, Pixels(style.space)) : kMargin * size;
    const double around = 2 * (thick + padding);
    return {static_cast<int>(std::ceil(block.box.Width() + around)),
            static_cast<int>(std::ceil(block.box.Height() + around)), thick, style.colour};
}

SealGrid GridOf(const SealStyle& style) {
    return {Pixels(style.size), Pixels(style.space), style.perColumn};
}

int Styled(std::string_view settingsXml, std::string_view text, std::string& png) {
    SealStyle style;
    std::vector<SealWord> words;
    if (const int code = ReadSealSettings(settingsXml, style)) return code;
    if (const int code = SplitSealText(text, words)) return code;
    const FreeTypeLibrary library = StartFreeType();
    if (!library) return kSealNoDrawing;
    CSealFaces faces(library.get());
    if (const int code = faces.Open(CharactersOf(words), {style.font, style.bold})) return code;
    const SealBlock block = SetColumns(faces, words, GridOf(style));
    return PaintSeal(library.get(), faces, block, SheetAround(block, style), png);
}

bool IsSide(int pixels) { return pixels >= kLeastSide && pixels <= kMostSide; }

int Name(std::string_view text, int width, int height, std::string& png) {
    if (!IsSide(width) || !IsSide(height)) return kSealBadSize;
    const SealStyle style;
    std::vector<SealWord> words;
    if (const int code = SplitSealText(text, words)) return code;
    const FreeTypeLibrary library = StartFreeType();
    if (!library) return kSealNoDrawing;
    CSealFaces faces(library.get());
    if (const int code = faces.Open(CharactersOf(words), {style.font, style.bold})) return code;
    const double side = std::min(width, height);
    const double around = 2 * (kNameFrame + kNamePadding) * side;
    const SealBlock block =
        FitLines(faces, words, width - around, height - around, Pixels(kLeastNameSize));
    if (block.glyphs.empty()) return kSealBadSize;
    const SealSheet sheet = {width, height, kNameFrame * side, style.colour};
    return PaintSeal(library.get(), faces, block, sheet, png);
}

// A text of a content picture that may be blank.
int SplitOptional(std::string_view text, std::vector<SealWord>& words) {
    const int code = SplitSealText(text, words);
    return code == kSealNoText ? kSealDrawn : code;
}

int Content(int kind, std::string_view text2, std::string_view text1, std::string& png) {
    if (kind != kTextAlone && kind != kTextAbove) return kSealBadKind;
    std::vector<SealWord> upper;
    std::vector<SealWord> lower;
    if (const int code = SplitOptional(text1, upper)) return code;
    if (kind == kTextAbove) {
        if (const int code = SplitOptional(text2, lower)) return code;
    }
    if (upper.empty() && lower.empty()) return kSealNoText;
    const FreeTypeLibrary library = StartFreeType();
    if (!library) return kSealNoDrawing;
    const SealStyle style;
    CSealFaces faces(library.get());
    const std::u32string characters = CharactersOf(upper) + CharactersOf(lower);
    if (const int code = faces.Open(characters, {style.font, style.bold})) return code;
    const SealGrid grid = GridOf(style);
    const SealGrid small = {grid.size * kLowerSize, grid.space * kLowerSize, 1};
    const SealBlock block = StackBlocks(SetColumns(faces, upper, grid),
                                        SetColumns(faces, lower, small), kLowerGap * grid.size);
    return PaintSeal(library.get(), faces, block, SheetAround(block, style), png);
}

template <typename Drawing>
int Guarded(std::string& png, Drawing draw) noexcept {
    png.clear();
    try {
        return draw();
    } catch (const std::bad_alloc&) {
        return kSealNoDrawing;
    }
}

}  // namespace

int DrawStyledSeal(std::string_view settingsXml, std::string_view text, std::string& png) noexcept {
    return Guarded(png, [&] { return Styled(settingsXml, text, png); });
}

int DrawNameSeal(std::string_view text, int width, int height, std::string& png) noexcept {
    return Guarded(png, [&] { return Name(text, width, height, png); });
}

int DrawContentPicture(int kind, std::string_view text2, std::string_view text1,
                       std::string& png) noexcept {
    return Guarded(png, [&] { return Content(kind, text2, text1, png); });
}
