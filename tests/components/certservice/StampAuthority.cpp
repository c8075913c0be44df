#include "components/certservice/StampAuthority.h"

#include <algorithm>

#include "components/certservice/BerElements.h"
#include "components/certservice/Certificate.h"
#include "components/crypto/Signature.h"
#include "platform/Clock.h"

namespace {

constexpr unsigned char kOctets = 0x04;
constexpr unsigned char kUtf8Text = 0x0C;
constexpr unsigned char kGeneralizedTime = 0x18;
constexpr unsigned char kDirectoryName = 0xA4;
constexpr char kTstInfo[] = "1.2.840.113549.1.9.16.1.4";

std::string Oid(const std::string& text) {
    const ObjectIdHandle object(OBJ_txt2obj(text.c_str(), 1));
    return DerOf<i2d_ASN1_OBJECT>(object.get());
}

std::string Integer(int value) {
    return DerElement(kBerInteger, std::string(1, static_cast<char>(value)));
}

std::string Sequence(const std::string& content) { return DerElement(kBerSequence, content); }

std::string Algorithm(const std::string& oid) {
    return Sequence(Oid(oid) + std::string("\x05\0", 2));
}

std::string HashAlgorithmOf(HashAlgorithm hash) {
    switch (hash) {
        case HashAlgorithm::kSm3: return Algorithm("1.2.156.10197.1.401");
        case HashAlgorithm::kSha1: return Algorithm("1.3.14.3.2.26");
        case HashAlgorithm::kSha256: return Algorithm("2.16.840.1.101.3.4.2.1");
        case HashAlgorithm::kSha384: return Algorithm("2.16.840.1.101.3.4.2.2");
        case HashAlgorithm::kSha512: return Algorithm("2.16.840.1.101.3.4.2.3");
    }
    return {};
}

std::string Attribute(const std::string& oid, const std::string& value) {
    return Sequence(Oid(oid) + DerElement(kBerSet, value));
}

std::string Name(const std::string& commonName) {
    const std::string part = Sequence(Oid("2.5.4.3") + DerElement(kUtf8Text, commonName));
    return Sequence(DerElement(kBerSet, part));
}

std::string TimeText(const TokenPlan& plan) {
    const std::tm time = platform::UtcTime(plan.time ? plan.time : std::time(nullptr));
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &time);
    return text + plan.fraction + "Z";
}

std::string TstInfo(const TokenPlan& plan) {
    std::string info =
        Integer(1) + Oid("1.2.3.4.5") +
        Sequence(HashAlgorithmOf(plan.imprintHash) + DerElement(kOctets, plan.imprint)) +
        Integer(0x4D) + DerElement(kGeneralizedTime, TimeText(plan)) +
        Sequence(plan.accuracy.empty()
                     ? Integer(2) + DerElement(0x80, "\x05") + DerElement(0x81, "\x07")
                     : plan.accuracy) +
        DerElement(kBerInteger, "\x12\x34\x56\x78\x12\x34\x56\x78");
    if (!plan.authorityName.empty()) {
        info += DerElement(kBerContext0, DerElement(kDirectoryName, Name(plan.authorityName)));
    }
    return Sequence(info + plan.extensions);
}

std::string IssuerAndSerial(X509* certificate) {
    return DerOf<i2d_X509_NAME>(X509_get_issuer_name(certificate)) +
           DerOf<i2d_ASN1_INTEGER>(X509_get0_serialNumber(certificate));
}

std::string Ess1(const std::string& hash) {
    return Attribute("1.2.840.113549.1.9.16.2.12",
                     Sequence(Sequence(Sequence(DerElement(kOctets, hash)))));
}

// `issuer`: the contents of the IssuerSerial.
std::string Ess2(HashAlgorithm hash, const std::string& digest, const std::string& issuer) {
    return Attribute("1.2.840.113549.1.9.16.2.47",
                     Sequence(Sequence(Sequence(HashAlgorithmOf(hash) +
                                                DerElement(kOctets, digest) + Sequence(issuer)))));
}

std::string EssIssuer(X509* certificate, const std::string& name) {
    return Sequence(DerElement(kDirectoryName, name)) +
           DerOf<i2d_ASN1_INTEGER>(X509_get0_serialNumber(certificate));
}

std::string Join(std::vector<std::string> set) {
    std::sort(set.begin(), set.end());
    std::string content;
    for (const std::string& element : set) content += element;
    return content;
}

void AddEss(const TokenPlan& plan, X509* certificate, HashAlgorithm hash,
            std::vector<std::string>& attributes) {
    const std::string der = DerOf<i2d_X509>(certificate);
    const std::string digest = Digest(hash, der);
    const std::string name = DerOf<i2d_X509_NAME>(X509_get_issuer_name(certificate));
    const std::string issuer = EssIssuer(certificate, name);
    switch (plan.ess) {
        case Ess::kVersion1: attributes.push_back(Ess1(Digest(HashAlgorithm::kSha1, der))); break;
        case Ess::kBoth:
            attributes.push_back(Ess1(Digest(HashAlgorithm::kSha1, der)));
            attributes.push_back(Ess2(hash, digest, issuer));
            break;
        case Ess::kVersion2: attributes.push_back(Ess2(hash, digest, issuer)); break;
        case Ess::kOtherCertificate:
            attributes.push_back(Ess2(hash, Digest(hash, "another"), issuer));
            break;
        case Ess::kOtherIssuer:
            attributes.push_back(Ess2(hash, digest, EssIssuer(certificate, Name("another"))));
            break;
        case Ess::kNone: break;
    }
}

}  // namespace

StampAuthority::StampAuthority(const DevelopmentCa& issuer, KeyKind kind,
                               CertificateRequest request)
    : m_kind(kind), m_key(GenerateKey(kind, 2048)) {
    if (request.commonName.empty()) request.commonName = "Time Stamps";
    if (request.extendedKeyUsage.empty()) request.extendedKeyUsage = "critical,timeStamping";
    m_certificate = ParseCertificate(issuer.Issue(m_key.get(), request));
}

std::string StampAuthority::Certificate() const { return DerOf<i2d_X509>(m_certificate.get()); }

std::string StampAuthority::CertificatePem() const { return PemOf(m_certificate.get()); }

std::vector<std::string> StampAuthority::Attributes(const TokenPlan& plan,
                                                    const std::string& content) const {
    const HashAlgorithm hash =
        m_kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    std::string digest =
        plan.plainSm3 ? Digest(hash, content) : DigestForKey(m_key.get(), hash, content);
    if (!plan.digest.empty()) digest = plan.digest;
    std::vector<std::string> attributes = {
        Attribute("1.2.840.113549.1.9.3", Oid(plan.contentType)),
        Attribute("1.2.840.113549.1.9.4", DerElement(kOctets, digest))};
    AddEss(plan, m_certificate.get(), hash, attributes);
    return attributes;
}

std::string StampAuthority::SignerInfo(const TokenPlan& plan, const std::string& content) const {
    const bool sm2 = m_kind == KeyKind::kSm2;
    const HashAlgorithm hash = sm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    const std::string attributes = Join(Attributes(plan, content));
    const std::string signedBytes = plan.withAttributes ? DerElement(kBerSet, attributes) : content;
    const char* algorithm = "1.2.840.113549.1.1.1";
    if (sm2) algorithm = plan.national ? "1.2.156.10197.1.301.1" : "1.2.156.10197.1.501";
    return Sequence(
        Integer(1) + Sequence(IssuerAndSerial(m_certificate.get())) + HashAlgorithmOf(hash) +
        (plan.withAttributes ? DerElement(kBerContext0, attributes) : "") + Algorithm(algorithm) +
        DerElement(kOctets, SignData(m_key.get(), hash, signedBytes)));
}

std::string StampAuthority::Token(const TokenPlan& plan) const {
    const std::string content = TstInfo(plan);
    const HashAlgorithm hash =
        m_kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    std::vector<std::string> certificates = plan.otherCertificates;
    if (plan.withCertificate) certificates.push_back(Certificate());
    const std::string data =
        Sequence(Integer(3) + DerElement(kBerSet, HashAlgorithmOf(hash)) +
                 Sequence(Oid(kTstInfo) + DerElement(kBerContext0, DerElement(kOctets, content))) +
                 (certificates.empty() ? "" : DerElement(kBerContext0, Join(certificates))) +
                 DerElement(kBerSet, SignerInfo(plan, content)));
    const char* type = plan.national ? "1.2.156.10197.6.1.4.2.2" : "1.2.840.113549.1.7.2";
    return Sequence(Oid(type) + DerElement(kBerContext0, data));
}

std::string StampAuthority::Response(const std::string& token, int status) {
    return Sequence(Sequence(Integer(status)) + token);
}
