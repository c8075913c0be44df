#include "GifFile.h"

#include <algorithm>

namespace {

using platform::Colour;

constexpr int kLiteralBits = 8;
constexpr unsigned kClear = 1U << kLiteralBits;
constexpr unsigned kEnd = kClear + 1;
// The codes grow by a bit where the table of the decoder is full; it is cleared before that.
constexpr int kCodesPerClear = 200;
constexpr std::size_t kBlock = 255;

std::string Word(int value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

char Byte(unsigned value) { return static_cast<char>(value & 0xFF); }

// 0 for 2 entries, 1 for 4 and so on.
unsigned SizeBits(const std::vector<Colour>& colours) {
    unsigned bits = 0;
    while ((std::size_t{2} << bits) < colours.size()) ++bits;
    return bits;
}

std::string Table(const std::vector<Colour>& colours) {
    std::string table;
    for (const Colour colour : colours) {
        table += {Byte(colour >> 16), Byte(colour >> 8), Byte(colour)};
    }
    return table;
}

// Codes of nine bits, the lowest first.
class Codes {
public:
    void Append(unsigned code) {
        m_pending |= code << m_bits;
        m_bits += kLiteralBits + 1;
        while (m_bits >= 8) TakeByte();
    }
    std::string Finish() {
        if (m_bits > 0) TakeByte();
        return m_bytes;
    }

private:
    void TakeByte() {
        m_bytes += Byte(m_pending);
        m_pending >>= 8;
        m_bits -= 8;
    }

    std::string m_bytes;
    unsigned m_pending = 0;
    int m_bits = 0;
};

// Uncompressed: each pixel is its own code.
std::string Encode(const std::string& pixels) {
    Codes codes;
    int untilClear = 0;
    for (const char pixel : pixels) {
        if (untilClear-- == 0) {
            codes.Append(kClear);
            untilClear = kCodesPerClear;
        }
        codes.Append(static_cast<unsigned>(pixel - '0'));
    }
    codes.Append(kEnd);
    return codes.Finish();
}

std::string InBlocks(const std::string& bytes) {
    std::string blocks;
    for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
        const std::string block = bytes.substr(at, kBlock);
        blocks += Byte(static_cast<unsigned>(block.size())) + block;
    }
    return blocks + '\0';
}

// The rows in the order in which an interlaced file has them.
std::string Interlaced(const GifFrame& frame) {
    const auto width = static_cast<std::size_t>(frame.width);
    std::string rows;
    for (const auto& [first, step] : {std::pair{0, 8}, {4, 8}, {2, 4}, {1, 2}}) {
        for (int row = first; row < frame.height; row += step) {
            rows += frame.pixels.substr(static_cast<std::size_t>(row) * width, width);
        }
    }
    return rows;
}

std::string FrameBytes(const GifFrame& frame) {
    std::string bytes;
    if (frame.transparent != 0) {
        bytes += "!\xFE" + InBlocks("comment");
        bytes += std::string("!\xF9\x04\x01\0\0", 6) + static_cast<char>(frame.transparent - '0');
        bytes += '\0';
    }
    const unsigned table = frame.colours.empty() ? 0 : 0x80 | SizeBits(frame.colours);
    bytes += ',' + Word(frame.left) + Word(frame.top) + Word(frame.width) + Word(frame.height);
    bytes += Byte(table | (frame.interlaced ? 0x40 : 0)) + Table(frame.colours);
    bytes += static_cast<char>(kLiteralBits);
    return bytes + InBlocks(Encode(frame.interlaced ? Interlaced(frame) : frame.pixels));
}

}  // namespace

std::string GifFile::Bytes() const {
    const unsigned table = colours.empty() ? 0 : 0x80 | SizeBits(colours);
    std::string bytes = "GIF89a" + Word(width) + Word(height) + Byte(table) + '\0' + '\0';
    bytes += Table(colours);
    for (const GifFrame& frame : frames) bytes += FrameBytes(frame);
    return bytes + ';';
}

std::string SolidGif(int width, int height, Colour colour) {
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return GifFile{width, height, {colour, 0}, {{0, 0, width, height, std::string(count, '0'), {}}}}
        .Bytes();
}
