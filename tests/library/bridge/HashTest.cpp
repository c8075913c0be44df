// Hashes of data and files.
#include <gmock/gmock.h>

#include <cstdlib>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHash[] = "0123456789ABCDEF0123456789abcdef";

class HashTest : public LibraryTest {
protected:
    HashTest() {
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_HashData").Gives(kHash);
        fakes::On("SOF_HashFile").Gives(kHash);
    }

    static int Hash(const char* algorithm, unsigned char* out, int* outLen) {
        return GetHashData(algorithm, AsBytes("data"), 4, AsBytes("cert"), 4, out, outLen);
    }
    // A certificate as a host has to hand it over.
    static unsigned char* HeapCert() {
        auto* const cert = static_cast<unsigned char*>(std::malloc(4));
        std::memcpy(cert, "cert", 4);
        return cert;
    }
};

TEST_F(HashTest, TheNameSelectsNumberAndUserId) {
    int length = 0;
    EXPECT_EQ(Hash("SM3", nullptr, &length), 0);
    EXPECT_EQ(Hash("SHA256", nullptr, &length), 0);
    EXPECT_EQ(Hash("SHA1", nullptr, &length), 0);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("SOF_HashData(ctx, 1, 4 \"data\", 4 \"cert\", \"1234567812345678\", 16, "
                    "out[32])",
                    "SOF_HashData(ctx, 4, 4 \"data\", 4 \"cert\", null, 0, out[32])",
                    "SOF_HashData(ctx, 2, 4 \"data\", 4 \"cert\", null, 0, out[32])"));
}

TEST_F(HashTest, NamesAreComparedCaseByCase) {
    int length = 0;
    EXPECT_EQ(Hash("sm3", nullptr, &length), 0);
    EXPECT_EQ(Hash("Sha256", nullptr, &length), 0);
    EXPECT_EQ(Hash("", nullptr, &length), 0);
    for (const fakes::Call& call : fakes::Calls()) EXPECT_EQ(call.arguments[0], "2");
}

TEST_F(HashTest, AQueryTellsTheSize) {
    int length = 0;
    EXPECT_EQ(Hash("SM3", nullptr, &length), 0);
    EXPECT_EQ(length, 32);
    EXPECT_THAT(Log(), ElementsAre("8 [HashData]: begin", "8 [HashData]: ok"));
}

TEST_F(HashTest, ABufferIsFilledWithoutALookAtItsLength) {
    OutPair out(1);
    EXPECT_EQ(Hash("SM3", out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 32);
    EXPECT_EQ(out.Bytes(33), std::string(kHash) + "\xA5");
}

TEST_F(HashTest, AShorterHashComesWithItsLength) {
    fakes::On("SOF_HashData").Gives("twenty bytes of hash");
    OutPair out;
    EXPECT_EQ(Hash("SHA1", out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "twenty bytes of hash");
    EXPECT_EQ(out.buffer[20], OutPair::kMark);
}

TEST_F(HashTest, AFailureIsTheServicesAndLeavesTheOutputAlone) {
    fakes::On("SOF_HashData").Returns(101);
    OutPair out;
    EXPECT_EQ(Hash("SM3", out.buffer, &out.length), 101);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(Log(), ElementsAre("8 [HashData]: begin"));
}

TEST_F(HashTest, AFileIsHashedByItsPath) {
    unsigned char cert[] = {'c', 'e', 'r', 't'};
    OutPair out(1);
    EXPECT_EQ(GetFileHash("SM3", "/a/file", cert, 4, out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), kHash);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_HashFile(ctx, 1, \"/a/file\", 4 \"cert\", "
                                                "\"1234567812345678\", 16, out[32])"));
    EXPECT_THAT(Log(), ElementsAre("8 [HashFile]: begin", "8 [HashFile]: ok"));
}

TEST_F(HashTest, AFileWithoutACertificateCanBeHashedAndItsSizeAskedFor) {
    int length = 0;
    EXPECT_EQ(GetFileHash("SHA256", "/a/file", nullptr, 0, nullptr, &length), 0);
    EXPECT_EQ(length, 32);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_HashFile(ctx, 4, \"/a/file\", 0 null, null, 0, out[32])"));
}

// That the block is freed, and only once, is what the leak and heap checks of the sanitizers see.
TEST_F(HashTest, AFailedHashOfAFileFreesTheHostsCertificate) {
    fakes::On("SOF_HashFile").Returns(102);
    OutPair out;
    EXPECT_EQ(GetFileHash("SM3", "/a/file", HeapCert(), 4, out.buffer, &out.length), 102);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(HashTest, ASuccessfulHashLeavesTheHostsCertificate) {
    unsigned char* const cert = HeapCert();
    int length = 0;
    EXPECT_EQ(GetFileHash("SM3", "/a/file", cert, 4, nullptr, &length), 0);
    EXPECT_EQ(cert[0], 'c');
    std::free(cert);
}

TEST_F(HashTest, AServiceThatCannotBeStartedLeavesTheHostsCertificate) {
    UnInitKVLLib();
    fakes::On("SOF_Initialize").Returns(1);
    unsigned char* const cert = HeapCert();
    int length = 0;
    EXPECT_EQ(GetFileHash("SM3", "/a/file", cert, 4, nullptr, &length), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(cert[0], 'c');
    std::free(cert);
}

TEST_F(HashTest, HashingNeitherReadsNorChangesTheSelection) {
    SetCurrentCertID("nobody");
    fakes::On("SOF_HashData").Returns(101);
    OutPair out;
    Hash("SM3", out.buffer, &out.length);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

}  // namespace
