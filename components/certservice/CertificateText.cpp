#include "components/certservice/CertificateText.h"

#include <openssl/x509v3.h>

#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Hex.h"
#include "components/crypto/Signature.h"
#include "platform/Clock.h"
#include "platform/CodePage.h"

namespace {

using Text = std::optional<std::string>;  // UTF-8; none: that part can't be read

std::string TakeMemory(BIO* out) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(out, &data);
    return std::string(data, static_cast<size_t>(size));
}

std::string Utf8Of(const ASN1_STRING* value) {
    unsigned char* utf8 = nullptr;
    const int size = ASN1_STRING_to_UTF8(&utf8, value);
    return TakeBytes(utf8, size);
}

// "C=CN, O=..., CN=..." in the order of the certificate, with the escapes of RFC 2253.
Text DistinguishedName(const X509_NAME* name) {
    const BioHandle out(BIO_new(BIO_s_mem()));
    const unsigned long form = XN_FLAG_SEP_CPLUS_SPC | ASN1_STRFLGS_ESC_2253 |
                               ASN1_STRFLGS_ESC_CTRL | ASN1_STRFLGS_UTF8_CONVERT;
    if (!out || X509_NAME_print_ex(out.get(), name, 0, form) < 0) return std::nullopt;
    return TakeMemory(out.get());
}

// All values of one kind; more than one are separated by ", ".
Text NamePart(const X509_NAME* name, int kind) {
    std::string text;
    for (int i = -1; (i = X509_NAME_get_index_by_NID(name, kind, i)) >= 0;) {
        if (!text.empty()) text += ", ";
        text += Utf8Of(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, i)));
    }
    return text;
}

// The callers read it as local time; a year of more than four digits doesn't fit the form.
Text LocalTimeText(const ASN1_TIME* time) {
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> epoch(ASN1_TIME_set(nullptr, 0));
    int days = 0;
    int seconds = 0;
    if (!epoch || ASN1_TIME_diff(&days, &seconds, epoch.get(), time) != 1) return std::nullopt;
    const std::tm local = platform::LocalTime(static_cast<std::time_t>(days) * 86'400 + seconds);
    const int year = local.tm_year + 1900;
    if (year > 9999) return "99991231235959";
    if (year < 0) return "00000101000000";
    char text[80];
    std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d", year, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

Text KeyType(X509* certificate) {
    const EVP_PKEY* key = X509_get0_pubkey(certificate);
    switch (KindOfKey(key)) {
        case KeyKind::kSm2: return "SM2";
        case KeyKind::kRsa: return "RSA";
        case KeyKind::kOther: break;
    }
    const char* name = key ? EVP_PKEY_get0_type_name(key) : nullptr;
    return name ? Text(name) : std::nullopt;
}

Text SignatureName(X509* certificate) {
    const X509_ALGOR* algorithm = X509_get0_tbs_sigalg(certificate);
    const ASN1_OBJECT* object = nullptr;
    X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
    char text[128];
    if (OBJ_obj2txt(text, sizeof text, object, 0) <= 0) return std::nullopt;
    return text;
}

Text ExtensionText(X509* certificate, int kind) {
    const int place = X509_get_ext_by_NID(certificate, kind, -1);
    if (place < 0) return "";
    const BioHandle out(BIO_new(BIO_s_mem()));
    X509_EXTENSION* extension = X509_get_ext(certificate, place);
    if (!out || X509V3_EXT_print(out.get(), extension, X509V3_EXT_ERROR_UNKNOWN, 0) != 1) {
        return std::nullopt;
    }
    std::string text = TakeMemory(out.get());
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

Text PublicKeyHex(X509* certificate) {
    const std::string der = DerOf<i2d_X509_PUBKEY>(X509_get_X509_PUBKEY(certificate));
    return der.empty() ? std::nullopt : Text(CapitalHexOf(der));
}

Text KeyIdentifier(const ASN1_OCTET_STRING* identifier) {
    if (!identifier) return "";
    return CapitalHexOf({reinterpret_cast<const char*>(ASN1_STRING_get0_data(identifier)),
                         static_cast<size_t>(ASN1_STRING_length(identifier))});
}

Text Thumbprint(X509* certificate) {
    return CapitalHexOf(Digest(HashAlgorithm::kSha256, DerOf<i2d_X509>(certificate)));
}

Text KeyBits(X509* certificate) {
    const EVP_PKEY* key = X509_get0_pubkey(certificate);
    return key ? Text(std::to_string(EVP_PKEY_get_bits(key))) : std::nullopt;
}

// The table of the fields; a number that isn't in it gives null.
using Reader = Text (*)(X509*);

template <int Kind>
Text Issuer(X509* certificate) {
    return NamePart(X509_get_issuer_name(certificate), Kind);
}

template <int Kind>
Text Subject(X509* certificate) {
    return NamePart(X509_get_subject_name(certificate), Kind);
}

template <int Kind>
Text Extension(X509* certificate) {
    return ExtensionText(certificate, Kind);
}

constexpr Reader kFields[] = {
    nullptr,
    /* 1 */ [](X509* c) { return Text(std::to_string(X509_get_version(c) + 1)); },
    /* 2 */ [](X509* c) { return Text(SerialOf(c)); },
    /* 3 */ KeyType,
    /* 4 */ SignatureName,
    /* 5 */ [](X509* c) { return DistinguishedName(X509_get_issuer_name(c)); },
    /* 6 */ Issuer<NID_countryName>,
    /* 7 */ Issuer<NID_organizationName>,
    /* 8 */ Issuer<NID_organizationalUnitName>,
    /* 9 */ Issuer<NID_stateOrProvinceName>,
    /* 10 */ Issuer<NID_commonName>,
    /* 11 */ [](X509* c) { return LocalTimeText(X509_get0_notBefore(c)); },
    /* 12 */ [](X509* c) { return LocalTimeText(X509_get0_notAfter(c)); },
    /* 13 */ Subject<NID_countryName>,
    /* 14 */ Subject<NID_organizationName>,
    /* 15 */ Subject<NID_organizationalUnitName>,
    /* 16 */ Subject<NID_stateOrProvinceName>,
    /* 17 */ Subject<NID_commonName>,
    /* 18 */ Subject<NID_localityName>,
    /* 19 */ Subject<NID_pkcs9_emailAddress>,
    /* 20 */ Subject<NID_serialNumber>,
    /* 21 */ Subject<NID_title>,
    /* 22 */ Subject<NID_givenName>,
    /* 23 */ PublicKeyHex,
    /* 24 */ KeyBits,
    /* 25 */ [](X509* c) { return KeyIdentifier(X509_get0_authority_key_id(c)); },
    /* 26 */ [](X509* c) { return KeyIdentifier(X509_get0_subject_key_id(c)); },
    /* 27 */ Extension<NID_key_usage>,
    /* 28 */ Extension<NID_ext_key_usage>,
    /* 29 */ Extension<NID_basic_constraints>,
    /* 30 */ Extension<NID_subject_alt_name>,
    /* 31 */ Extension<NID_crl_distribution_points>,
    /* 32 */ Extension<NID_info_access>,
    /* 33 */ [](X509* c) { return DistinguishedName(X509_get_subject_name(c)); },
    /* 34 */ Thumbprint,
};
static_assert(sizeof kFields / sizeof kFields[0] == kLastCertificateField + 1);

bool IsObjectIdentifier(const char* oid) {
    const std::string_view text = oid;
    return text.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

int CertificateField(X509* certificate, int field, std::string& text) {
    if (field < kFirstCertificateField || field > kLastCertificateField) return kServiceNoSuchField;
    const Text utf8 = kFields[field](certificate);
    if (!utf8) return kServiceCertificateDamaged;
    text = platform::AnsiFromUtf8(*utf8);
    return kServiceOk;
}

int CertificateExtension(X509* certificate, const char* oid, std::string& der) {
    der.clear();
    if (!IsObjectIdentifier(oid)) return kServiceBadArgument;
    const ObjectIdHandle object(OBJ_txt2obj(oid, 1));
    if (!object) return kServiceBadArgument;
    const int place = X509_get_ext_by_OBJ(certificate, object.get(), -1);
    if (place < 0) return kServiceOk;
    const ASN1_OCTET_STRING* value = X509_EXTENSION_get_data(X509_get_ext(certificate, place));
    der.assign(reinterpret_cast<const char*>(ASN1_STRING_get0_data(value)),
               static_cast<size_t>(ASN1_STRING_length(value)));
    return kServiceOk;
}
