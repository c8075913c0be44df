// ForeignMessageTest.h - signed messages that the openssl program made.
#pragma once

#include <openssl/pem.h>

#include <string>

#include "components/certservice/Certificate.h"
#include "components/certservice/StampTest.h"

class ForeignMessageTest : public StampTest {
protected:
    // A new RSA key below the trusted authority, as key.pem and signer.pem.
    void MakeSigner(int bits = 2048) {
        const KeyHandle key(GenerateKey(KeyKind::kRsa, bits));
        const CertificateHandle certificate =
            ParseCertificate(Authority(KeyKind::kRsa).Issue(key.get(), {.commonName = "Other"}));
        const BioHandle out(BIO_new_file(Path("key.pem").c_str(), "w"));
        PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        WriteFile(Path("signer.pem"), PemOf(certificate.get()));
    }
    // That signer's message over `data`; `options` as openssl cms takes them.
    std::string Foreign(const std::string& options, const std::string& data = "data") {
        WriteFile(Path("data"), data);
        const ProgramRun run = OpenSsl(
            "cms -sign -binary -outform DER -in data -signer signer.pem -inkey key.pem -out "
            "message " +
            options);
        EXPECT_EQ(run.status, 0) << run.output;
        return ReadFile(Path("message"));
    }
};
