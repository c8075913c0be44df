#include "seal/EsHeader.h"

#include <cstdint>

namespace {

constexpr std::string_view kMagic = "ES";
constexpr std::size_t kLengthOffset = 12;
constexpr std::size_t kNameOffset = 86;
constexpr std::size_t kPictureOffset = 328;
constexpr std::string_view kNoName = "印章";

std::int32_t LittleEndian32(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return static_cast<std::int32_t>(value);
}

}  // namespace

std::optional<EsHeader> ReadEsHeader(std::string_view file) {
    if (!file.starts_with(kMagic) || file.size() < kPictureOffset) return std::nullopt;
    const std::int32_t length = LittleEndian32(file.substr(kLengthOffset, 4));
    const std::string_view behindHeader = file.substr(kPictureOffset);
    if (length < 0 || behindHeader.size() < static_cast<std::size_t>(length)) return std::nullopt;
    // A name without an end before the picture runs on into it, as a terminated text does.
    const std::string_view name = file.substr(kNameOffset);
    const std::string_view text = name.substr(0, name.find('\0'));
    return EsHeader{behindHeader.substr(0, static_cast<std::size_t>(length)),
                    std::string(text.empty() ? kNoName : text)};
}
