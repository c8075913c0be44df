// Certificates: every field and extension of whatever can be parsed has an answer, and the same
// one twice.

#include <openssl/err.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/certservice/CertificateText.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/TrustStore.h"
#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    ReadCertificates(input);
    const CertificateHandle certificate = ParseCertificate(input);
    if (certificate) {
        for (int field = kFirstCertificateField; field <= kLastCertificateField; ++field) {
            std::string text;
            std::string again;
            const int code = CertificateField(certificate.get(), field, text);
            REQUIRE(code == kServiceOk || code == kServiceCertificateDamaged);
            REQUIRE(CertificateField(certificate.get(), field, again) == code && again == text);
            if (code == kServiceOk && (field == 11 || field == 12)) REQUIRE(text.size() == 14);
        }
        std::string der;
        REQUIRE(CertificateExtension(certificate.get(), "2.5.29.31", der) == kServiceOk);
        REQUIRE(TrustStore({}).Validate(certificate.get(), nullptr, false, 1'800'000'000) ==
                kCertificateUntrusted);
    }
    ERR_clear_error();
    return 0;
}
