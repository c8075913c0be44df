#include "components/seallibrary/RevocationTime.h"

#include <openssl/bn.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <cctype>

#include "components/crypto/Handles.h"
#include "components/crypto/PassPhrase.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"
#include "foundation/Text.h"

namespace {

RevocationListHandle ParseDer(std::string_view der) {
    const auto* at = reinterpret_cast<const unsigned char*>(der.data());
    const auto* end = at + der.size();
    RevocationListHandle read(d2i_X509_CRL(nullptr, &at, static_cast<long>(der.size())));
    return at == end ? std::move(read) : nullptr;
}

// The bytes of Base64 in lines of any length; empty if anything else is in it.
std::string BytesOfBase64(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    std::string compact;
    for (const char character : text)
        if (kBlanks.find(character) == kBlanks.npos) compact += character;
    const std::size_t letters = std::min(compact.find('='), compact.size());
    const auto isLetter = [](unsigned char byte) {
        return byte < 0x80 && (std::isalnum(byte) || byte == '+' || byte == '/');
    };
    if (compact.size() % 4 != 0 || compact.size() - letters > 2) return {};
    return std::all_of(compact.begin(), compact.begin() + letters, isLetter) ? Base64Decode(compact)
                                                                             : std::string();
}

// As servers of lists send them: most in DER, some in PEM, a few in Base64 without its frame.
RevocationListHandle ParseList(std::string_view list) {
    if (list.empty() || list.size() > kMaxRevocationListBytes) return nullptr;
    if (RevocationListHandle read = ParseDer(list)) return read;
    if (const std::string der = BytesOfBase64(list); !der.empty()) return ParseDer(der);
    const BioHandle text(BIO_new_mem_buf(list.data(), static_cast<int>(list.size())));
    return RevocationListHandle(PEM_read_bio_X509_CRL(text.get(), nullptr, NoPassPhrase, nullptr));
}

// The serial number's digits in the form that SealCertificate.h tells; empty if it is none.
std::string PlainSerial(std::string_view serial) {
    constexpr std::size_t kMostDigits = 128;
    if (serial.substr(0, 2) == "0x" || serial.substr(0, 2) == "0X") serial.remove_prefix(2);
    std::string digits;
    for (const char character : serial) {
        if (character == ':' || character == ' ' || character == '\0') continue;
        const auto byte = static_cast<unsigned char>(character);
        if (!std::isxdigit(byte) || digits.size() == kMostDigits) return {};
        digits += static_cast<char>(std::toupper(byte));
    }
    while (digits.size() > 1 && digits[0] == '0') digits.erase(0, 1);
    return digits;
}

}  // namespace

std::string ReadRevocationList(std::string_view list) {
    const RevocationListHandle read = ParseList(list);
    return read ? DerOf<i2d_X509_CRL>(read.get()) : std::string();
}

bool IsListFor(std::string_view list, const X509* certificate) {
    const RevocationListHandle read = ParseList(list);
    return read &&
           X509_NAME_cmp(X509_CRL_get_issuer(read.get()), X509_get_issuer_name(certificate)) == 0;
}

int CheckRevocationTime(std::string_view list, std::string_view serial, std::time_t time) {
    const std::string digits = PlainSerial(serial);
    if (digits.empty()) return kSealBadArgument;
    const RevocationListHandle read = ParseList(list);
    if (!read) return kSealRevocationListDamaged;
    BIGNUM* number = nullptr;
    BN_hex2bn(&number, digits.c_str());
    const BignumHandle numberOwner(number);
    const OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free> wanted(
        BN_to_ASN1_INTEGER(number, nullptr));
    X509_REVOKED* entry = nullptr;
    if (!wanted || X509_CRL_get0_by_serial(read.get(), &entry, wanted.get()) != 1)
        return kSealSerialNotListed;
    std::time_t revoked = 0;
    if (!TimeOf(X509_REVOKED_get0_revocationDate(entry), revoked))
        return kSealRevocationListDamaged;
    return revoked > time ? kSealOk : kSealRevokedBefore;
}
