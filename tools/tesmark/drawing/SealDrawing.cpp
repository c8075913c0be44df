#include "drawing/SealDrawing.h"

#include <numbers>

#include "components/drawing/FontSearch.h"
#include "components/text/Utf8Text.h"
#include "drawing/SealText.h"

namespace {

constexpr std::size_t kLongestText = 200;

// Measures as parts of the outer radius, taken from seals of 42 mm with a ring of 1.2 mm and a
// star of 14 mm.
constexpr double kRingWidth = 0.055;
constexpr double kTextRadius = 0.875;
constexpr double kStarRadius = 0.335;
constexpr double kNameHeight = 0.27;
constexpr double kNumberHeight = 0.085;
constexpr double kPurposeMiddle = -0.51;
constexpr double kPurposeHeight = 0.17;
constexpr double kPurposeWidth = 1.0;

constexpr double Degrees(double degrees) { return degrees * std::numbers::pi / 180; }

struct SealTexts {
    std::u32string name;
    std::u32string purpose;
    std::u32string number;
};

bool ReadTexts(const SealDesign& design, SealTexts& texts, std::string& problem) {
    if (!Utf8Characters(design.name, texts.name) ||
        !Utf8Characters(design.purpose, texts.purpose) ||
        !Utf8Characters(design.number, texts.number)) {
        problem = "A text of the seal is not UTF-8, or has control characters.";
        return false;
    }
    if (texts.name.find_first_not_of(U' ') == std::u32string::npos) {
        problem = "The seal needs a name.";
        return false;
    }
    if (texts.name.size() + texts.purpose.size() + texts.number.size() > kLongestText) {
        problem = "The texts of the seal are too long.";
        return false;
    }
    return true;
}

bool CheckMeasures(const SealDesign& design, std::string& problem) {
    if (!(design.diameterMm >= kSmallestSealMm && design.diameterMm <= kLargestSealMm)) {
        problem = "The seal's diameter is not between 10 and 170 millimetres.";
    } else if (design.dpi < 72 || design.dpi > 1'200) {
        problem = "The seal's resolution is not between 72 and 1200 dpi.";
    } else if (const std::int64_t side = PixelsOf(design.diameterMm, design.dpi);
               side * side > kPictureMaxPixels) {
        problem = "The seal's picture would be too large.";
    } else {
        return true;
    }
    return false;
}

SealTextPlace NamePlace(double radius, const SealTexts& texts) {
    const double angle = texts.number.empty() ? 262 : 236;
    // Latin letters belong together; 汉字 may stand far apart.
    const bool latin =
        texts.name.find_first_of(U"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ") !=
        std::u32string::npos;
    return {kTextRadius * radius, kNameHeight * radius, kNameHeight * radius / 3, Degrees(angle),
            latin ? 0.3 : 0.9};
}

SealTextPlace PurposePlace(double radius) {
    return {kPurposeMiddle * radius, kPurposeHeight * radius, kPurposeHeight * radius / 3,
            kPurposeWidth * radius, 0.3};
}

SealTextPlace NumberPlace(double radius) {
    return {0.905 * radius, kNumberHeight * radius, kNumberHeight * radius / 2, Degrees(80), 0.9};
}

bool DrawShapes(CSealCanvas& canvas, double radius) {
    return canvas.Fill({CircleContour(radius), CircleContour(-radius * (1 - kRingWidth))}) &&
           canvas.Fill({StarContour(kStarRadius * radius)});
}

bool DrawTexts(CSealCanvas& canvas, CSealText& text, const SealTexts& texts, double radius) {
    if (!text.Draw(canvas, texts.name, SealTextPath::kUpperArc, NamePlace(radius, texts))) {
        return false;
    }
    if (!texts.purpose.empty() &&
        !text.Draw(canvas, texts.purpose, SealTextPath::kLine, PurposePlace(radius))) {
        return false;
    }
    return texts.number.empty() ||
           text.Draw(canvas, texts.number, SealTextPath::kLowerArc, NumberPlace(radius));
}

}  // namespace

bool DrawRoundSeal(const SealDesign& design, Picture& picture, std::string& problem) {
    picture = {};
    SealTexts texts;
    if (!ReadTexts(design, texts, problem) || !CheckMeasures(design, problem)) return false;
    FoundFont font;
    const CFontSearch fonts({design.fontFamily, true});
    if (!fonts.Find(texts.name + texts.purpose + texts.number, font)) {
        problem = "No font of this machine has all characters of \"" + design.name +
                  design.purpose + design.number + "\"; on Debian install fonts-noto-cjk.";
        return false;
    }
    const FreeTypeLibrary library = StartFreeType();
    if (!library) {
        problem = "FreeType can't be started.";
        return false;
    }
    CSealText text(library.get());
    if (!text.Open(font)) {
        problem = "The font \"" + font.path + "\" can't be read.";
        return false;
    }
    const int side = PixelsOf(design.diameterMm, design.dpi);
    CSealCanvas canvas(library.get(), side, side);
    if (!DrawShapes(canvas, side / 2.0) || !DrawTexts(canvas, text, texts, side / 2.0)) {
        problem = "The texts of the seal don't fit into it.";
        return false;
    }
    picture = canvas.Painted(design.colour);
    return true;
}
