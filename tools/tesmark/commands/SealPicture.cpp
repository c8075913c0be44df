#include "commands/SealPicture.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

#include "Failure.h"
#include "FileAccess.h"
#include "components/drawing/Picture.h"
#include "drawing/SealDrawing.h"

namespace {

constexpr double kDpi = 300;
constexpr double kDrawnMm = 42;
constexpr double kSmallestMm = 1;
constexpr double kLargestMm = 500;
constexpr std::uint64_t kLargestPicture = 16 * 1024 * 1024;

const char* TypeOf(PictureFormat format) {
    switch (format) {
        case PictureFormat::kGif: return "GIF";
        case PictureFormat::kPng: return "PNG";
        case PictureFormat::kJpeg: return "JPG";
        case PictureFormat::kBmp: return "BMP";
        case PictureFormat::kUnknown: break;
    }
    return "";
}

int WholeMillimetres(double millimetres) {
    if (millimetres < kSmallestMm / 2 || millimetres > kLargestMm) {
        throw Failure{ExitCode::kUsage, "A seal is from 1 to 500 mm wide and high."};
    }
    return std::max(1, static_cast<int>(std::lround(millimetres)));
}

SealPicture FromFile(const PictureOptions& options) {
    SealPicture made;
    made.content = ReadWholeFile(options.file, kLargestPicture);
    PictureInfo info;
    Picture decoded;
    std::string problem = "it is no GIF, PNG, JPEG or BMP";
    if (!ReadPictureInfo(made.content, info) || !DecodePicture(made.content, decoded, problem)) {
        throw Failure{ExitCode::kFile,
                      "The picture can't be used: " + options.file + " (" + problem + ")"};
    }
    made.type = TypeOf(info.format);
    const double shape = static_cast<double>(info.height) / info.width;
    double width = options.widthMm;
    double height = options.heightMm;
    if (width <= 0 && height <= 0) width = MillimetresOf(info.width, kDpi);
    if (width <= 0) width = height / shape;
    if (height <= 0) height = width * shape;
    made.widthMm = WholeMillimetres(width);
    made.heightMm = WholeMillimetres(height);
    return made;
}

// What is no number lies within no range.
std::string FaultOf(double millimetres, double smallest, double largest) {
    if (millimetres >= smallest && millimetres <= largest) return "";
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "from %.0f to %.0f mm, and not %.6g", smallest, largest,
                  millimetres);
    return text.data();
}

std::string FaultOfSize(const std::string& text) {
    double millimetres = 0;
    // What is none at all is told when it is to be stored.
    if (!CLI::detail::lexical_cast(text, millimetres)) return "";
    const std::string fault = FaultOf(millimetres, kSmallestMm, kLargestMm);
    return fault.empty() ? "" : "a seal's is " + fault;
}

double DiameterOf(const PictureOptions& options) {
    const bool byWidth = options.widthMm > 0;
    if (!byWidth && options.heightMm <= 0) return kDrawnMm;
    const double diameter = byWidth ? options.widthMm : options.heightMm;
    const std::string fault = FaultOf(diameter, kSmallestSealMm, kLargestSealMm);
    if (fault.empty()) return diameter;
    throw Failure{ExitCode::kUsage, std::string(byWidth ? "--width" : "--height") +
                                        ": that of a seal that is drawn is " + fault + "."};
}

SealPicture Drawn(const PictureOptions& options, const std::string& name) {
    SealDesign design;
    design.name = name;
    design.purpose = options.purpose;
    design.number = options.number;
    design.diameterMm = DiameterOf(options);
    design.dpi = static_cast<int>(kDpi);
    Picture picture;
    std::string problem;
    if (!DrawRoundSeal(design, picture, problem)) {
        throw Failure{ExitCode::kFailed, "The seal can't be drawn: " + problem};
    }
    SealPicture made;
    made.content = EncodePng(picture);
    if (made.content.empty()) throw Failure{ExitCode::kFailed, "The seal can't be drawn."};
    made.type = "PNG";
    made.widthMm = made.heightMm = WholeMillimetres(design.diameterMm);
    return made;
}

}  // namespace

void BindPicture(CLI::App& command, PictureOptions& options) {
    auto* file = command.add_option("--picture", options.file,
                                    "GIF, PNG, JPEG or BMP; without it a round seal is drawn");
    command.add_option("--purpose", options.purpose, "Text below the star of a drawn seal")
        ->excludes(file);
    command.add_option("--number", options.number, "Number on the lower arc of a drawn seal")
        ->excludes(file);
    command
        .add_option("--width", options.widthMm,
                    "Width on the page in mm, 1 to 500; of a drawn seal its diameter, 10 to 170")
        ->check(FaultOfSize);
    command.add_option("--height", options.heightMm, "Height on the page in mm, as the width")
        ->check(FaultOfSize);
}

SealPicture MakeSealPicture(const PictureOptions& options, const std::string& name) {
    return options.file.empty() ? Drawn(options, name) : FromFile(options);
}

std::string MakeSealNumber() {
    std::random_device device;
    std::array<char, 32> number{};
    std::snprintf(number.data(), number.size(), "VELMORA%08X%08X", device(), device());
    return number.data();
}
