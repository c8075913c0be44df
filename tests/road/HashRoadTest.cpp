#include <cstdlib>
#include <cstring>

#include "components/crypto/Signature.h"
#include "library/bridge/ExportCalls.h"
#include "road/RoadTest.h"
#include "support/Program.h"

namespace {

class HashRoadTest : public RoadTest {
protected:
    HashRoadTest() : m_path(WriteFile("data", m_data)) {}

    // The digest that the openssl program prints, as bytes.
    std::string OpenSslDigest(const std::string& algorithm, const std::string& path) {
        const std::string out = InPrefix("digest");
        EXPECT_TRUE(OpenSsl({"dgst", "-" + algorithm, "-binary", "-out", out, path}));
        const ProgramOutcome read = RunProgram({"/bin/cat", out});
        return read.out;
    }

    std::string HashOfData(const char* algorithm, const std::string& cert = {}) const {
        const Handed hash = InTwoSteps([&](unsigned char* out, int* outLen) {
            return GetHashData(algorithm, AsBytes(m_data), AsLength(m_data),
                               cert.empty() ? nullptr : AsBytes(cert), AsLength(cert), out, outLen);
        });
        return hash.code == 0 ? hash.bytes : "failed";
    }

    // The certificate is freed by the library where the hash fails, and by its host otherwise.
    std::string HashOfFile(const char* algorithm, const std::string& cert = {}) const {
        unsigned char* block = nullptr;
        if (!cert.empty()) {
            block = static_cast<unsigned char*>(std::malloc(cert.size()));
            std::memcpy(block, cert.data(), cert.size());
        }
        unsigned char out[32];
        int length = sizeof out;
        const int code =
            GetFileHash(algorithm, m_path.c_str(), block, AsLength(cert), out, &length);
        if (code != 0) return "failed";
        std::free(block);
        return {reinterpret_cast<char*>(out), static_cast<std::size_t>(length)};
    }

    std::string m_data = std::string(100'000, 'd') + "end";
    std::string m_path;
};

TEST_F(HashRoadTest, HashesOfDataAndFileAreOpenSsls) {
    const std::pair<const char*, const char*> names[] = {
        {"SM3", "sm3"}, {"SHA256", "sha256"}, {"SHA1", "sha1"}};
    for (const auto& [name, openSsl] : names) {
        const std::string expected = OpenSslDigest(openSsl, m_path);
        ASSERT_GE(expected.size(), 20u);
        EXPECT_EQ(HashOfData(name), expected) << name;
        EXPECT_EQ(HashOfFile(name), expected) << name;
    }
}

// OpenSSL's program verifies over ZA and the data, so a signature over this hash that it accepts
// proves the hash.
TEST_F(HashRoadTest, WithAnSm2CertificateTheHashIsTakenOverZaToo) {
    const KeyHandle key(GenerateKey(KeyKind::kSm2, 0));
    const std::string certificate = Authority(KeyKind::kSm2).Issue(key.get(), {});
    const std::string hash = HashOfData("SM3", certificate);
    EXPECT_NE(hash, HashOfData("SM3"));
    EXPECT_EQ(HashOfFile("SM3", certificate), hash);

    const std::string signature =
        WriteFile("signature", SignDigest(key.get(), HashAlgorithm::kSm3, hash));
    const std::string publicKey = InPrefix("public.pem");
    ASSERT_TRUE(OpenSsl({"x509", "-inform", "DER", "-in", WriteFile("cert.der", certificate),
                         "-pubkey", "-noout", "-out", publicKey}));
    const std::vector<std::string> verify = {"pkeyutl",  "-verify",
                                             "-rawin",   "-digest",
                                             "sm3",      "-pubin",
                                             "-inkey",   publicKey,
                                             "-in",      m_path,
                                             "-sigfile", signature,
                                             "-pkeyopt", "distid:1234567812345678"};
    EXPECT_TRUE(OpenSsl(verify));
    WriteFile("data", m_data + "!");
    EXPECT_FALSE(OpenSsl(verify));
}

TEST_F(HashRoadTest, AnRsaCertificateHasNoZa) {
    const KeyHandle key(GenerateKey(KeyKind::kRsa, 2048));
    const std::string certificate = Authority(KeyKind::kRsa).Issue(key.get(), {});
    EXPECT_EQ(HashOfData("SM3", certificate), "failed");
    EXPECT_EQ(HashOfFile("SM3", certificate), "failed");
    EXPECT_EQ(HashOfData("SHA256", certificate), OpenSslDigest("sha256", m_path));
}

}  // namespace
