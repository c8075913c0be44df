#include "platform/linux/dialogprogram/Pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace platform {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int kForeign = -1;

constexpr std::array<std::int8_t, 256> MakeValues() {
    std::array<std::int8_t, 256> values{};
    values.fill(kForeign);
    for (int i = 0; i < 64; ++i) values[static_cast<unsigned char>(kAlphabet[i])] = i;
    return values;
}
constexpr std::array<std::int8_t, 256> kValues = MakeValues();

// Three bytes are four digits, so a pixel is always a group of its own, and none is ever padded.
bool ParsePixel(std::string_view digits, Colour& colour) {
    colour = 0;
    for (const char digit : digits) {
        const int value = kValues[static_cast<unsigned char>(digit)];
        if (value == kForeign) return false;
        colour = colour << 6 | static_cast<Colour>(value);
    }
    return true;
}

bool HasItsPixels(const Picture& picture) {
    return picture.width > 0 && picture.height > 0 &&
           static_cast<std::uint64_t>(picture.width) * static_cast<std::uint64_t>(picture.height) ==
               picture.pixels.size();
}

struct Sides {
    int width;
    int height;
};

Sides ReducedSides(const Picture& picture, int most) {
    const double pixels = static_cast<double>(picture.width) * picture.height;
    const double scale = std::sqrt(most / pixels);
    const int height = std::max(1, static_cast<int>(picture.height * scale));
    const int width = std::max(1, static_cast<int>(picture.width * scale));
    return {std::min(width, std::max(1, most / height)), std::min(height, most)};
}

// The pixels of a side from `from` to `to` that stand behind pixel `i` of `reduced`.
struct Span {
    Span(int i, int whole, int reduced)
        : from(static_cast<int>(std::int64_t{i} * whole / reduced)),
          to(static_cast<int>(std::int64_t{i + 1} * whole / reduced)) {}
    int from;
    int to;
};

Colour AverageOf(const Picture& picture, const Span& columns, const Span& rows) {
    std::uint64_t red = 0, green = 0, blue = 0;
    for (int y = rows.from; y < rows.to; ++y) {
        const Colour* const row =
            picture.pixels.data() + static_cast<std::size_t>(y) * picture.width;
        for (int x = columns.from; x < columns.to; ++x) {
            red += row[x] >> 16 & 0xFF;
            green += row[x] >> 8 & 0xFF;
            blue += row[x] & 0xFF;
        }
    }
    const std::uint64_t count =
        static_cast<std::uint64_t>(columns.to - columns.from) * (rows.to - rows.from);
    const auto mean = [count](std::uint64_t sum) {
        return static_cast<Colour>((sum + count / 2) / count);
    };
    return mean(red) << 16 | mean(green) << 8 | mean(blue);
}

}  // namespace

void AppendPixels(const Picture& picture, std::string& line) {
    line.reserve(line.size() + picture.pixels.size() * 4 + 1);
    for (const Colour colour : picture.pixels) {
        for (int shift = 18; shift >= 0; shift -= 6) line += kAlphabet[colour >> shift & 0x3F];
    }
}

bool ParsePixels(std::string_view text, Picture& picture) {
    const std::size_t count =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    if (text.size() != count * 4) return false;
    picture.pixels.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!ParsePixel(text.substr(i * 4, 4), picture.pixels[i])) return false;
    }
    return true;
}

Picture ReducedPicture(const Picture& picture, int most) {
    if (!HasItsPixels(picture)) return {};
    if (picture.pixels.size() <= static_cast<std::size_t>(most)) return picture;
    const Sides sides = ReducedSides(picture, most);
    Picture reduced{sides.width, sides.height, {}};
    reduced.pixels.reserve(static_cast<std::size_t>(sides.width) * sides.height);
    for (int y = 0; y < sides.height; ++y) {
        for (int x = 0; x < sides.width; ++x) {
            reduced.pixels.push_back(AverageOf(picture, {x, picture.width, sides.width},
                                               {y, picture.height, sides.height}));
        }
    }
    return reduced;
}

}  // namespace platform
