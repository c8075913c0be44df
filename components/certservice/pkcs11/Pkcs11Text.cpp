#include "components/certservice/pkcs11/Pkcs11Text.h"

#include "components/crypto/Hex.h"
#include "components/crypto/Signature.h"
#include "platform/CodePage.h"

namespace {

constexpr std::string_view kPrefix = "P11/";
constexpr std::size_t kLongestPlainId = 20;

}  // namespace

std::string TextOfToken(std::string_view text) {
    std::string ansi = platform::AnsiFromUtf8(text);
    if (platform::Utf8FromAnsi(ansi) == text) return ansi;
    if (platform::AnsiFromUtf8(platform::Utf8FromAnsi(text)) == text) return std::string(text);
    return ansi;
}

std::string ShortDigest(std::string_view bytes, std::size_t digits) {
    return LowerHexOf(Digest(HashAlgorithm::kSha256, bytes)).substr(0, digits);
}

std::string TokenCertId(const std::string& serial, std::string_view id) {
    std::string certId(kPrefix);
    certId.append(serial).append("/");
    return certId + (id.size() <= kLongestPlainId ? LowerHexOf(id) : "~" + ShortDigest(id, 38));
}

std::string SerialInCertId(const std::string& certId) {
    if (!certId.starts_with(kPrefix)) return {};
    const auto end = certId.find('/', kPrefix.size());
    if (end == std::string::npos) return {};
    return certId.substr(kPrefix.size(), end - kPrefix.size());
}
