#include "pdf/SealAppearance.h"

#include <cstdint>
#include <optional>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>
#include <qpdf/QUtil.hh>
#include <unordered_map>

namespace {

constexpr std::size_t kPaletteColours = 256;

std::string Deflate(const std::string& data) {
    std::string compressed;
    Pl_String sink("compressed", nullptr, compressed);
    Pl_Flate flate("flate", &sink, Pl_Flate::a_deflate);
    flate.writeString(data);
    flate.finish();
    return compressed;
}

constexpr std::uint32_t kWhite = 0xFFFFFF;

std::size_t PixelCount(const Picture& picture) { return picture.rgba.size() / 4; }

// 0xRRGGBB. What is wholly transparent becomes white, so that it compresses.
std::uint32_t ColourAt(const Picture& picture, std::size_t pixel) {
    const auto* bytes = &picture.rgba[pixel * 4];
    if (bytes[3] == 0) return kWhite;
    return std::uint32_t{bytes[0]} << 16 | std::uint32_t{bytes[1]} << 8 | bytes[2];
}

void AppendColour(std::string& bytes, std::uint32_t colour) {
    for (const int shift : {16, 8, 0}) bytes.push_back(static_cast<char>(colour >> shift));
}

struct IndexedPicture {
    std::string palette;
    std::string indices;
};

// Most seals have few colours, and then a byte a pixel is enough.
std::optional<IndexedPicture> Indexed(const Picture& picture) {
    IndexedPicture indexed;
    std::unordered_map<std::uint32_t, std::size_t> known;
    for (std::size_t i = 0; i < PixelCount(picture); ++i) {
        const std::uint32_t colour = ColourAt(picture, i);
        if (i > 0 && colour == ColourAt(picture, i - 1)) {
            indexed.indices.push_back(indexed.indices.back());
            continue;
        }
        const auto [entry, isNew] = known.try_emplace(colour, known.size());
        if (isNew) AppendColour(indexed.palette, colour);
        if (known.size() > kPaletteColours) return {};
        indexed.indices.push_back(static_cast<char>(entry->second));
    }
    return indexed;
}

std::string PlainColours(const Picture& picture) {
    std::string colours;
    for (std::size_t i = 0; i < PixelCount(picture); ++i) {
        AppendColour(colours, ColourAt(picture, i));
    }
    return colours;
}

// Empty if the picture is opaque.
std::string Mask(const Picture& picture) {
    std::string mask;
    bool opaque = true;
    for (std::size_t i = 0; i < PixelCount(picture); ++i) {
        mask.push_back(static_cast<char>(picture.rgba[i * 4 + 3]));
        opaque = opaque && picture.rgba[i * 4 + 3] == 255;
    }
    return opaque ? std::string() : mask;
}

std::string ImageDictionary(const Picture& picture, const std::string& colourSpace) {
    return "/Type /XObject /Subtype /Image /Width " + std::to_string(picture.width) + " /Height " +
           std::to_string(picture.height) + " /BitsPerComponent 8 /ColorSpace " + colourSpace +
           " /Filter /FlateDecode";
}

QPDFObjGen AddImage(CPdfUpdate& update, const Picture& picture) {
    const QPDFObjGen image = update.Reserve();
    std::string maskEntry;
    if (const std::string mask = Mask(picture); !mask.empty()) {
        const QPDFObjGen object = update.Reserve();
        update.SetStream(object, ImageDictionary(picture, "/DeviceGray"), Deflate(mask));
        maskEntry = " /SMask " + Reference(object);
    }
    if (const auto indexed = Indexed(picture)) {
        const std::string space =
            "[/Indexed /DeviceRGB " + std::to_string(indexed->palette.size() / 3 - 1) + " " +
            QPDFObjectHandle::newString(indexed->palette).unparseBinary() + "]";
        update.SetStream(image, ImageDictionary(picture, space) + maskEntry,
                         Deflate(indexed->indices));
    } else {
        update.SetStream(image, ImageDictionary(picture, "/DeviceRGB") + maskEntry,
                         Deflate(PlainColours(picture)));
    }
    return image;
}

}  // namespace

std::string PdfNumber(double value) { return QUtil::double_to_string(value, 4); }

QPDFObjGen AddSealAppearance(CPdfUpdate& update, const Picture& picture, const SealPlacement& place,
                             bool likeInk) {
    const QPDFObjGen image = AddImage(update, picture);
    const QPDFObjGen form = update.Reserve();
    const std::string width = PdfNumber(place.width);
    const std::string height = PdfNumber(place.height);
    const std::string blend = likeInk ? "/Multiply" : "/Normal";
    update.SetStream(form,
                     "/Type /XObject /Subtype /Form /BBox [0 0 " + width + " " + height +
                         "] /Matrix " + place.matrix +
                         " /Resources << /ExtGState << /GS0 << /Type /ExtGState /BM " + blend +
                         " >> >> /XObject << /Im0 " + Reference(image) + " >> >>",
                     "q /GS0 gs " + width + " 0 0 " + height + " 0 0 cm /Im0 Do Q");
    return form;
}
