#include <filesystem>
#include <fstream>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"

namespace {

constexpr char kId[] = "1234567812345678";

class HashTest : public ServiceTest {
protected:
    Answer Hash(int algorithm, std::string_view data, std::string_view certificate = {},
                const char* id = nullptr) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_HashData(m_context, algorithm, Bytes(data), Size(data), Bytes(certificate),
                                Size(certificate), id, id ? 16 : 0, out, outLen);
        });
    }
    Answer HashFile(int algorithm, const std::string& path, std::string_view certificate = {},
                    const char* id = nullptr) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_HashFile(m_context, algorithm, path.c_str(), Bytes(certificate),
                                Size(certificate), id, id ? 16 : 0, out, outLen);
        });
    }

    void* m_context = Open();
};

TEST_F(HashTest, TheNumbersNameTheAlgorithms) {
    EXPECT_EQ(Hash(1, "data"), (Answer{0, Digest(HashAlgorithm::kSm3, "data")}));
    EXPECT_EQ(Hash(2, "data"), (Answer{0, Digest(HashAlgorithm::kSha1, "data")}));
    EXPECT_EQ(Hash(4, "data"), (Answer{0, Digest(HashAlgorithm::kSha256, "data")}));
    EXPECT_EQ(Hash(4, ""), (Answer{0, Digest(HashAlgorithm::kSha256, "")}));
    for (const int other : {0, 3, 5, -1, 0x104}) {
        EXPECT_EQ(Hash(other, "data").code, kServiceAlgorithmUnknown) << other;
    }
}

TEST_F(HashTest, ZaGoesInFrontWithACertificateAndAnIdOnly) {
    const std::string certificate = MakeCertificate(KeyKind::kSm2, {.commonName = "张三"});
    const CertificateHandle parsed = ParseCertificate(certificate);
    const std::string e = Sm2Digest(X509_get0_pubkey(parsed.get()), "data");
    const std::string plain = Digest(HashAlgorithm::kSm3, "data");
    WriteFile(Path("file"), "data");
    EXPECT_EQ(Hash(1, "data", certificate, kId), (Answer{0, e}));
    EXPECT_EQ(HashFile(1, Path("file"), certificate, kId), (Answer{0, e}));
    EXPECT_EQ(Hash(1, "data", certificate), (Answer{0, plain}));
    EXPECT_EQ(Hash(1, "data", {}, kId), (Answer{0, plain}));
    EXPECT_EQ(HashFile(1, Path("file"), {}, kId), (Answer{0, plain}));
    EXPECT_EQ(Hash(4, "data", certificate, kId),
              (Answer{0, Digest(HashAlgorithm::kSha256, "data")}));
}

TEST_F(HashTest, ACertificateWithoutAnSm2KeyHasNoZa) {
    const std::string certificate = MakeCertificate(KeyKind::kRsa, {.commonName = "张三"});
    EXPECT_EQ(Hash(1, "data", certificate, kId).code, kServiceAlgorithmUnknown);
    EXPECT_EQ(Hash(1, "data", "nonsense", kId).code, kServiceCertificateDamaged);
    EXPECT_EQ(Hash(4, "data", "nonsense", kId).code, 0) << "isn't needed";
}

TEST_F(HashTest, AFileIsHashedToItsEndWhateverItsSize) {
    for (const size_t size : {0u, 1u, 65'535u, 65'536u, 65'537u, 200'000u}) {
        const std::string content(size, 'x');
        WriteFile(Path("file"), content);
        for (const HashAlgorithm hash :
             {HashAlgorithm::kSm3, HashAlgorithm::kSha1, HashAlgorithm::kSha256}) {
            EXPECT_EQ(HashFile(static_cast<int>(hash), Path("file")),
                      (Answer{0, Digest(hash, content)}));
        }
    }
}

TEST_F(HashTest, ASparseFileOf64MiBHashesAsOpenSslSays) {
    MakeSparseFile(Path("sparse"), 64 << 20);
    const ProgramRun run = OpenSsl("dgst -sha256 -binary -out hash sparse");
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(HashFile(4, Path("sparse")), (Answer{0, ReadFile(Path("hash"))}));
}

TEST_F(HashTest, AFileThatCantBeReadIsToldAndLeavesNoHash) {
    EXPECT_EQ(HashFile(1, Path("absent")).code, kServiceFileUnreadable);
    EXPECT_EQ(HashFile(4, Path("keys")).code, kServiceFileUnreadable) << "a folder";
    EXPECT_EQ(HashFile(9, Path("absent")).code, kServiceAlgorithmUnknown);
}

TEST_F(HashTest, ABufferSmallerThanTheHashIsTooSmall) {
    unsigned char hash[20] = {};
    int length = sizeof hash;
    EXPECT_EQ(SOF_HashData(m_context, 4, Bytes("data"), 4, nullptr, 0, nullptr, 0, hash, &length),
              kServiceBufferTooSmall);
    EXPECT_EQ(length, 32);
}

}  // namespace
