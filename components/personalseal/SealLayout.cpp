#include "components/personalseal/SealLayout.h"

#include <algorithm>

namespace {

// The square of an ideograph hangs below the baseline by this; of other words the capitals count.
constexpr double kSquareBottom = -0.12;
constexpr double kSquareTop = 0.88;
constexpr double kCapitalTop = 0.72;
constexpr double kBlank = 0.28;

constexpr std::size_t kMostLines = 3;
constexpr double kLineGap = 0.2;
// A line's size may shrink by this for the sake of wider spaces.
constexpr double kSizeForSpace = 0.97;
constexpr double kSpaces[] = {0.55, 0.4, 0.25, 0.1, 0.03};
// Words that have blanks between them stay together.
constexpr double kMostWordSpace = 0.1;
constexpr double kTrialSize = 100;

double WidthOf(CSealFaces& faces, const SealWord& word, double size) {
    double width = 0;
    for (const char32_t character : word.characters) width += faces.Advance(character) * size;
    return width;
}

void SetWord(CSealFaces& faces, const SealWord& word, double size, double x, double y,
             SealBlock& block) {
    const double width = WidthOf(faces, word, size);
    const SealBox square = word.ideograph
                               ? SealBox{0, kSquareBottom * size, width, kSquareTop * size}
                               : SealBox{0, 0, width, kCapitalTop * size};
    block.box.Include(square.Moved(x, y));
    for (const char32_t character : word.characters) {
        block.glyphs.push_back({character, x, y, size});
        const SealBox ink = faces.Ink(character);
        if (ink.right >= ink.left) block.box.Include(ink.Scaled(size).Moved(x, y));
        x += faces.Advance(character) * size;
    }
}

double WidestOf(CSealFaces& faces, std::span<const SealWord> column, double size) {
    double widest = 0;
    for (const SealWord& word : column) widest = std::max(widest, WidthOf(faces, word, size));
    return widest;
}

void SetColumn(CSealFaces& faces, std::span<const SealWord> column, const SealGrid& grid,
               double middle, bool alone, SealBlock& block) {
    const double pitch = grid.size + grid.space;
    const double rows = alone ? static_cast<double>(column.size()) : grid.perColumn;
    const double share = rows / static_cast<double>(column.size());
    for (std::size_t i = 0; i < column.size(); ++i) {
        const double row = (static_cast<double>(i) + 0.5) * share - 0.5;
        const double x = middle - WidthOf(faces, column[i], grid.size) / 2;
        SetWord(faces, column[i], grid.size, x, -row * pitch, block);
    }
}

void Append(const SealBlock& part, double x, double y, SealBlock& block) {
    for (const SealGlyph& glyph : part.glyphs) {
        block.glyphs.push_back({glyph.character, glyph.x + x, glyph.y + y, glyph.size});
    }
    block.box.Include(part.box.Moved(x, y));
}

SealBlock SetLines(CSealFaces& faces, std::span<const SealWord> words, std::size_t lines,
                   double size, double space) {
    SealBlock block;
    const std::size_t perLine = (words.size() + lines - 1) / lines;
    for (; !words.empty(); words = words.subspan(std::min(perLine, words.size()))) {
        const auto line = words.first(std::min(perLine, words.size()));
        block =
            StackBlocks(block, SetColumns(faces, line, {size, space * size, 1}), kLineGap * size);
    }
    return block;
}

// The size at which these lines fill the box; all measures grow with it alike.
double FittingSize(CSealFaces& faces, std::span<const SealWord> words, std::size_t lines,
                   double space, double width, double height) {
    const SealBox box = SetLines(faces, words, lines, kTrialSize, space).box;
    return kTrialSize * std::min(width / box.Width(), height / box.Height());
}

}  // namespace

SealBlock SetColumns(CSealFaces& faces, std::span<const SealWord> words, const SealGrid& grid) {
    SealBlock block;
    const double direction = HasIdeographs(words) && grid.perColumn > 1 ? -1 : 1;
    const std::size_t perColumn = static_cast<std::size_t>(grid.perColumn);
    double x = 0;
    for (std::size_t at = 0; at < words.size(); at += perColumn) {
        const auto column = words.subspan(at, std::min(perColumn, words.size() - at));
        const double width = WidestOf(faces, column, grid.size);
        if (at > 0) {
            const double blank = column.front().afterBlank ? kBlank * grid.size : 0;
            x += direction * (grid.space + blank);
        }
        SetColumn(faces, column, grid, x + direction * width / 2, words.size() <= perColumn, block);
        x += direction * width;
    }
    return block;
}

SealBlock StackBlocks(const SealBlock& upper, const SealBlock& lower, double gap) {
    if (upper.glyphs.empty()) return lower;
    if (lower.glyphs.empty()) return upper;
    SealBlock block = upper;
    const double x = (upper.box.left + upper.box.right - lower.box.left - lower.box.right) / 2;
    Append(lower, x, upper.box.bottom - gap - lower.box.top, block);
    return block;
}

SealBlock FitLines(CSealFaces& faces, std::span<const SealWord> words, double width, double height,
                   double leastSize) {
    constexpr double kLeastSpace = *(std::end(kSpaces) - 1);
    double best = 0;
    std::size_t lines = 1;
    for (std::size_t count = 1; count <= std::min(kMostLines, words.size()); ++count) {
        const double size = FittingSize(faces, words, count, kLeastSpace, width, height);
        if (size <= best) continue;
        best = size;
        lines = count;
    }
    if (best < leastSize) return {};
    const bool ideographs = HasIdeographs(words);
    for (const double space : kSpaces) {
        if (!ideographs && space > kMostWordSpace) continue;
        const double size = FittingSize(faces, words, lines, space, width, height);
        if (size >= best * kSizeForSpace) return SetLines(faces, words, lines, size, space);
    }
    return {};
}
