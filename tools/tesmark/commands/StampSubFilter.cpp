#include "commands/StampSubFilter.h"

#include <optional>

#include "Library.h"

namespace {

// ISO 32000-1, 12.8.3.3. Readers know it.
constexpr StampSubFilter kPkcs7 = {"Adobe.PPKLite", "adbe.pkcs7.detached"};
// No standard names them for PDF: names of this project's own, told in docs/tesmark.md.
constexpr StampSubFilter kGm = {"Velmora.Tesmark", "GMT0031.SESeal"};
constexpr StampSubFilter kGb = {"Velmora.Tesmark", "GBT38540.SESeal"};

// The signer's certificate and an issuer's, the signature value and attributes.
constexpr std::size_t kWithoutTimeStamp = 8 * 1024;
// A token with the certificates of its authority.
constexpr std::size_t kTimeStamp = 24 * 1024;

constexpr char kOctetString = '\x04';
// The first version of GM/T 0031 that has the outer form of GB/T 38540.
constexpr unsigned char kVersionOfGm2025 = 5;

struct DerElement {
    std::string_view content;
    std::string_view behind;
};

std::optional<DerElement> FirstElement(std::string_view bytes) {
    const std::size_t length = DerLength(bytes);
    if (length == 0) return {};
    const auto second = static_cast<unsigned char>(bytes[1]);
    const std::size_t header = second > 0x80 ? 2u + (second - 0x80u) : 2u;
    return DerElement{bytes.substr(header, length - header), bytes.substr(length)};
}

// SESeal { eSealInfo { header { ID, version, ... }, ... }, cert OCTET STRING, ... }; in GM/T 0031
// of 2014 a SEQUENCE follows eSealInfo.
bool IsGbSeal(std::string_view file) {
    const auto seal = FirstElement(file);
    const auto info = seal ? FirstElement(seal->content) : std::nullopt;
    if (!info || !info->behind.starts_with(kOctetString)) return false;
    const auto header = FirstElement(info->content);
    const auto id = header ? FirstElement(header->content) : std::nullopt;
    const auto version = id ? FirstElement(id->behind) : std::nullopt;
    return version && version->content.size() == 1 &&
           static_cast<unsigned char>(version->content.front()) < kVersionOfGm2025;
}

}  // namespace

const StampSubFilter& SubFilterOf(int mode, std::string_view seal) {
    if (mode == 1) return IsGbSeal(seal) ? kGb : kGm;
    return mode == 2 ? kGb : kPkcs7;
}

std::size_t ContentsSizeFor(int mode, std::string_view seal, bool timeStamped) {
    return kWithoutTimeStamp + (timeStamped ? kTimeStamp : 0) +
           (IsSealSignature(mode) ? seal.size() : 0);
}
