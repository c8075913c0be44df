#include "tests/components/seallibrary/HandMadeToken.h"

#include "components/crypto/Signature.h"
#include "tests/components/seallibrary/HandMade.h"

namespace {

using namespace std::string_literals;

const std::string kTstInfo = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x01\x04");
const std::string kData = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x01");
const std::string kSignedData = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x02");
const std::string kNationalSignedData = Der(0x06, "\x2A\x81\x1C\xCF\x55\x06\x01\x04\x02\x02");
const std::string kContentType = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x03");
const std::string kMessageDigest = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x04");
const std::string kSigningCertificate = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x02\x0C");
const std::string kSigningCertificate2 = Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x02\x2F");
const std::string kSm3 = Der(0x06, "\x2A\x81\x1C\xCF\x55\x01\x83\x11");
const std::string kSha1 = Der(0x06, "\x2B\x0E\x03\x02\x1A");
const std::string kSha256 = Der(0x06, "\x60\x86\x48\x01\x65\x03\x04\x02\x01");

std::string Sequence(const std::string& content) { return Der(0x30, content); }

std::string IssuerAndSerial(const std::string& certificate) {
    const auto* at = reinterpret_cast<const unsigned char*>(certificate.data());
    const CertificateHandle read(d2i_X509(nullptr, &at, static_cast<long>(certificate.size())));
    return Sequence(DerOf<i2d_X509_NAME>(X509_get_issuer_name(read.get())) +
                    DerOf<i2d_ASN1_INTEGER>(X509_get_serialNumber(read.get())));
}

std::string Attribute(const std::string& type, const std::string& value) {
    return Sequence(type + Der(0x31, value));
}

std::string NamedCertificate(const HandMadeToken& token, const TestIdentity& authority) {
    if (!token.withNamedCertificate) return {};
    const std::string& named =
        token.namedCertificate.empty() ? authority.certificate : token.namedCertificate;
    const auto hash = token.named2 ? HashAlgorithm::kSha256 : HashAlgorithm::kSha1;
    const std::string id = Sequence(Der(0x04, Digest(hash, named)));
    return Attribute(token.named2 ? kSigningCertificate2 : kSigningCertificate,
                     Sequence(Sequence(id)));
}

std::string Imprint(const HandMadeToken& token, HashAlgorithm hash, const std::string& algorithm) {
    if (token.sha1Imprint) {
        return Sequence(Sequence(kSha1) + Der(0x04, Digest(HashAlgorithm::kSha1, token.stamped)));
    }
    return Sequence(algorithm + Der(0x04, Digest(hash, token.stamped)));
}

}  // namespace

std::string Build(const HandMadeToken& token, const TestIdentity& authority) {
    const bool sm2 = KindOfKey(authority.key.get()) == KeyKind::kSm2;
    const auto hash = sm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    const std::string algorithm = Sequence(sm2 ? kSm3 : kSha256);
    const std::string type = token.isTstInfo ? kTstInfo : kData;
    const std::string tstInfo =
        Sequence(Der(0x02, "\x01") + Der(0x06, "\x2A\x03\x04") + Imprint(token, hash, algorithm) +
                 Der(0x02, "\x4D\x2E") + Der(0x18, token.time));
    const std::string attributes = Attribute(kContentType, type) +
                                   Attribute(kMessageDigest, Der(0x04, Digest(hash, tstInfo))) +
                                   NamedCertificate(token, authority);
    const std::string toSign = Der(0x31, attributes) + (token.signsOtherData ? "!" : "");
    const std::string signer =
        Sequence(Der(0x02, "\x01") + IssuerAndSerial(authority.certificate) + algorithm +
                 Der(0xA0, attributes) + Sequence(sm2 ? kSm2Oid : kRsaOid + Der(0x05, "")) +
                 Der(0x04, SignAs(authority, toSign)));
    const std::string signedData = Sequence(
        Der(0x02, "\x03") + Der(0x31, algorithm) + Sequence(type + Der(0xA0, Der(0x04, tstInfo))) +
        (token.withCertificate ? Der(0xA0, authority.certificate) : ""s) + Der(0x31, signer));
    return Sequence((token.nationalOids ? kNationalSignedData : kSignedData) +
                    Der(0xA0, signedData));
}

TestIdentity MakeAuthority(KeyKind kind, TestCertificateOrder order) {
    if (!order.extendedKeyUsage) order.extendedKeyUsage = "critical,timeStamping";
    return MakeIdentity(kind, order);
}
