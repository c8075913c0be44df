// Revocation lists: read or refused, and a list that nobody signed decides about no certificate.

#include <openssl/err.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "components/certservice/Base64Text.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/RevocationList.h"
#include "fuzz/driver/Require.h"

namespace {

// Of the same name as the authority of the seeds, with another key.
X509* Issuer() {
    static const CertificateHandle issuer = [] {
        CertificateRequest name;
        name.commonName = "Seed";
        return ParseCertificate(DevelopmentCa::Make(KeyKind::kSm2, name)->Certificate());
    }();
    return issuer.get();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::string decoded;
    if (DecodeBase64Text(input, decoded)) REQUIRE(decoded.size() <= size);
    if (const auto list = RevocationList::Parse(input)) {
        const Revocation verdict = list->Check(Issuer(), Issuer(), 1'800'000'000);
        REQUIRE(verdict == Revocation::kUndecided || verdict == Revocation::kOtherIssuer);
    }
    ERR_clear_error();
    return 0;
}
