#include "components/seallibrary/SealCertificate.h"

#include <openssl/bn.h>

#include "components/certservice/SignerPurpose.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"
#include "components/seallibrary/SealForm.h"
#include "components/seallibrary/SealTime.h"

bool CSealCertificate::Read(std::string_view der) {
    const auto* at = reinterpret_cast<const unsigned char*>(der.data());
    const auto* end = at + der.size();
    m_certificate = CertificateHandle(d2i_X509(nullptr, &at, static_cast<long>(der.size())));
    if (!m_certificate || at != end || !Key()) return false;
    m_za = Sm2Za(Key());
    return TimeOf(X509_get0_notBefore(m_certificate.get()), m_notBefore) &&
           TimeOf(X509_get0_notAfter(m_certificate.get()), m_notAfter);
}

HashAlgorithm CSealCertificate::Hash() const {
    return KindOfKey(Key()) == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
}

std::string CSealCertificate::SignatureAlgorithm() const {
    switch (KindOfKey(Key())) {
        case KeyKind::kSm2: return kSm2WithSm3;
        case KeyKind::kRsa: return kSha256WithRsa;
        case KeyKind::kOther: break;
    }
    return {};
}

bool CSealCertificate::MaySign() const { return MaySignDocuments(m_certificate.get()); }

std::string CSealCertificate::SerialNumber() const {
    return SerialText(X509_get0_serialNumber(m_certificate.get()));
}

bool CSealCertificate::Verify(const std::string& algorithm, std::string_view data,
                              std::string_view signature) const {
    if (algorithm.empty() || algorithm != SignatureAlgorithm()) return false;
    if (m_za.empty()) return VerifyData(Key(), Hash(), data, signature);
    Sm3 digest;
    digest.Update(m_za);
    digest.Update(data);
    return VerifyDigest(Key(), HashAlgorithm::kSm3, digest.Finish(), signature);
}

std::string SerialText(const ASN1_INTEGER* serial) {
    const BignumHandle number(ASN1_INTEGER_to_BN(serial, nullptr));
    std::string text = number ? TakeText(BN_bn2hex(number.get())) : std::string();
    while (text.size() > 1 && text[0] == '0') text.erase(0, 1);
    return text;
}

bool TimeOf(const ASN1_TIME* text, std::time_t& time) {
    if (!text) return false;
    const auto read = ReadAsn1Time(
        {reinterpret_cast<const char*>(text->data), static_cast<std::size_t>(text->length)});
    if (read) time = *read;
    return read.has_value();
}
