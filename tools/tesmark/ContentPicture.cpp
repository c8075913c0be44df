#include "ContentPicture.h"

#include <CLI/CLI.hpp>
#include <array>
#include <utility>

#include "DrawingControl.h"
#include "Library.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "include/TesmarkOpt.h"

namespace {

// What the library lets through.
constexpr int kSmallestFont = 10;
constexpr int kLargestFont = 40;
constexpr int kMostPerColumn = 5;
// What the open control draws (SealStyle.h); the library lets any number through.
constexpr int kThickestFrame = 20;
constexpr int kMostSpacing = 100;

constexpr char kFont[] = "宋体";

// As the open control counts them.
constexpr auto kColours =
    std::to_array<std::pair<const char*, int>>({{"red", 0}, {"blue", 1}, {"black", 2}});

// -1 for a name that isn't known.
int ColourOf(const std::string& name) {
    for (const auto& [known, number] : kColours) {
        if (name == known) return number;
    }
    return -1;
}

struct GbkTexts {
    std::string content;
    std::string font;
};

GbkTexts TextsOf(const ContentPictureOptions& options) {
    return {GbkFromArgument(options.text, "--text"),
            options.font.empty() ? kFont : GbkFromArgument(options.font, "--font")};
}

}  // namespace

void BindContentPicture(CLI::App& command, ContentPictureOptions& options) {
    auto* const text = command.add_option(
        "--text", options.text, "Instead of a seal: a picture drawn of this text, with a PKCS#7");
    text->excludes(command.get_option("--seal"))->check([](const std::string& given) {
        return std::string(given.empty() ? "the text is empty" : "");
    });
    const auto number = [&](const char* name, int& value, const char* description, int least,
                            int most) {
        command.add_option(name, value, description)
            ->check(CLI::Range(least, most))
            ->capture_default_str()
            ->needs(text);
    };
    command.add_option("--font", options.font, "Font of the text; without it SimSun")->needs(text);
    number("--font-size", options.fontSize, "in points", kSmallestFont, kLargestFont);
    number("--per-column", options.perColumn, "Characters of the text in a column", 1,
           kMostPerColumn);
    number("--spacing", options.spacing, "Points between the text's characters", 0, kMostSpacing);
    number("--frame", options.frame, "A frame of so many points; without it none", 1,
           kThickestFrame);
    command.add_option("--colour", options.colour, "red, blue or black")
        ->check([](const std::string& given) {
            return std::string(ColourOf(given) < 0 ? "there are red, blue and black" : "");
        })
        ->capture_default_str()
        ->needs(text);
    command.add_flag("--bold", options.bold, "The text in a bold font")->needs(text);
}

void CheckContentPicture(const ContentPictureOptions& options) { TextsOf(options); }

std::string DrawnContent(const ContentPictureOptions& options) {
    const GbkTexts texts = TextsOf(options);
    const AutomationSession automation;
    const LogMark mark;
    std::string picture;
    const int code = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return GetContentPicture(
                out, outLen, texts.content.c_str(), ColourOf(options.colour), options.frame,
                Bytes(texts.font), static_cast<int>(texts.font.size()), options.frame > 0 ? 1 : 0,
                options.spacing, options.fontSize, options.bold ? 1 : 0, options.perColumn);
        },
        picture);
    CheckDrawn(code);
    CheckResult(code, "The text's picture can't be had.", mark);
    return picture;
}
