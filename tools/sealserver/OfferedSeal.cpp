#include "tools/sealserver/OfferedSeal.h"

#include "components/certservice/Certificate.h"
#include "components/certservice/CertificateText.h"
#include "components/crypto/Hex.h"
#include "components/crypto/Signature.h"
#include "components/picture/PictureHeader.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealInfo.h"
#include "platform/CodePage.h"

namespace {

constexpr int kSerialField = 2;
constexpr int kNameField = 33;

// The layout of an "ES" file, as far as it is looked at.
constexpr std::size_t kEsPictureLength = 12;
constexpr std::size_t kEsName = 86;
constexpr std::size_t kEsPicture = 328;

std::size_t LittleEndian32(std::string_view bytes) {
    std::size_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

std::optional<OfferedSeal> ReadEs(std::string_view file) {
    if (!file.starts_with("ES") || file.size() < kEsPicture) return std::nullopt;
    const std::size_t length = LittleEndian32(file.substr(kEsPictureLength, 4));
    if (length == 0 || length > file.size() - kEsPicture) return std::nullopt;
    const std::string_view name = file.substr(kEsName, kEsPicture - kEsName);
    OfferedSeal seal;
    seal.form = "ES";
    seal.name = platform::Utf8FromAnsi(name.substr(0, name.find('\0')));
    seal.picture = file.substr(kEsPicture, length);
    return seal;
}

std::optional<OfferedSeal> ReadNational(std::string_view file) {
    Seal read;
    if (ReadSeal(file, read) != kSealOk) return std::nullopt;
    OfferedSeal seal;
    seal.form = FormText(read.form);
    seal.name = read.name;
    seal.sealId = read.esId;
    seal.picture = read.picture;
    seal.national = std::move(read);
    return seal;
}

}  // namespace

std::optional<OfferedSeal> ReadOfferedSeal(std::string_view file) {
    if (file.size() > kMaxSealFileBytes) return std::nullopt;
    auto seal = ReadEs(file);
    if (!seal) seal = ReadNational(file);
    if (seal) seal->hash = CapitalHexOf(Digest(HashAlgorithm::kSm3, file));
    return seal;
}

std::string PictureType(std::string_view picture) {
    switch (ReadPictureHeader(picture).format) {
        case PictureFormat::kGif: return "image/gif";
        case PictureFormat::kPng: return "image/png";
        case PictureFormat::kJpeg: return "image/jpeg";
        case PictureFormat::kBmp: return "image/bmp";
        case PictureFormat::kUnknown: break;
    }
    return {};
}

std::optional<StoredCertificate> ReadOfferedCertificate(std::string_view file) {
    if (file.size() > kMaxCertificateFileBytes) return std::nullopt;
    const auto certificates = ReadCertificates(file);
    if (certificates.empty()) return std::nullopt;
    X509* const certificate = certificates.front().get();
    std::string serial;
    std::string name;
    if (CertificateField(certificate, kSerialField, serial) != 0 ||
        CertificateField(certificate, kNameField, name) != 0) {
        return std::nullopt;
    }
    // By way of the ANSI code page, since that is how a client has them before it sends them.
    return StoredCertificate{0, platform::Utf8FromAnsi(serial), platform::Utf8FromAnsi(name),
                             DerOf<i2d_X509>(certificate)};
}

std::string WarningAbout(const OfferedSeal& seal, const StoredCertificate& certificate) {
    if (!seal.national || certificate.der.empty() || NamesSigner(*seal.national, certificate.der))
        return {};
    return "The seal names other certificates than this one, so no signature can be made with it.";
}
