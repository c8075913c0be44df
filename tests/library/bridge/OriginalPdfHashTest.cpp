// The hash of the original PDF between its making and its fetch.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHash[] = "0123456789ABCDEF0123456789abcdef";
constexpr char kOther[] = "twenty bytes of hash";

// Ahead of all others, as the hash outlives every test.
TEST(FreshLibraryTest, BeforeAnyHashWasMadeTheLengthIsZero) {
    int length = 7;
    EXPECT_EQ(GetOriginalSignPdfHash(nullptr, &length), 0);
    EXPECT_EQ(length, 0);
    OutPair out;
    EXPECT_EQ(GetOriginalSignPdfHash(out.buffer, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
}

// Certificate and hash outlive a test, as no export clears them: each test begins without a
// certificate, and with the hash of its own that kOld is the Base64 of.
constexpr char kOld[] = "b2xk";

class OriginalPdfHashTest : public LibraryTest {
protected:
    OriginalPdfHashTest() : m_certificate(fakes::AddCertificate("label", "A")) {
        SetPackHashCert(nullptr, 0);
        InitKVLLib();
        fakes::On("SOF_HashData").Gives("old");
        OfData();
        fakes::On("SOF_HashData").Gives(kHash);
        fakes::On("SOF_HashFile").Gives(kHash);
        fakes::ClearCalls();
        ForgetLog();
    }

    static int OfData() { return GenerateOriginalSignPdfHash(AsBytes("data"), 4); }
    static int OfFile() { return GenerateOriginalSignPdfFileHash("/a/file"); }
    static void SetCert() { SetPackHashCert(AsBytes("DER of A"), 8); }
    // As a host fetches it.
    static std::string Kept() {
        int length = -1;
        EXPECT_EQ(GetOriginalSignPdfHash(nullptr, &length), 0);
        OutPair out;
        EXPECT_EQ(GetOriginalSignPdfHash(out.buffer, &out.length), 0);
        EXPECT_EQ(out.length, OutPair::kMarkLength);
        EXPECT_EQ(out.buffer[length], OutPair::kMark);
        return out.Bytes(static_cast<std::size_t>(length));
    }

    fakes::Certificate& m_certificate;
    const std::string m_zeros = Base64Encode(std::string(64, '\0'));
};

TEST_F(OriginalPdfHashTest, WithoutACertificateTheHashIsSha1WithNumber2) {
    fakes::On("SOF_HashData").Gives(kOther);
    fakes::On("SOF_HashFile").Gives(kOther);
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(Kept(), Base64Encode(kOther));
    EXPECT_EQ(OfFile(), 0);
    EXPECT_EQ(Kept(), Base64Encode(kOther));
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_HashData(ctx, 2, 4 \"data\", 0 null, null, 0, out[32])",
                            "SOF_HashFile(ctx, 2, \"/a/file\", 0 null, null, 0, out[32])"));
}

TEST_F(OriginalPdfHashTest, ACertificateOfKeyTypeSm2GivesSm3WithTheUserIdAnd32Bytes) {
    SetCert();
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(Base64Decode(Kept()), kHash);
    EXPECT_EQ(OfFile(), 0);
    EXPECT_EQ(Base64Decode(Kept()), kHash);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, size?)",
                    "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[3])",
                    "SOF_HashData(ctx, 1, 4 \"data\", 8 \"DER of A\", \"1234567812345678\", 16, "
                    "out[32])",
                    "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, size?)",
                    "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[3])",
                    "SOF_HashFile(ctx, 1, \"/a/file\", 8 \"DER of A\", \"1234567812345678\", 16, "
                    "out[32])"));
}

TEST_F(OriginalPdfHashTest, ExactlyRsaGivesSha1AndAnyOtherKeyTypeSm3) {
    const std::pair<std::string, const char*> cases[] = {
        {"RSA", "2"}, {std::string("RSA\0x", 5), "2"}, {"rsa", "1"}, {"RSA ", "1"},
        {"", "1"},    {std::string(32, 'R'), "1"}};
    SetCert();
    for (const auto& [keyType, number] : cases) {
        fakes::ClearCalls();
        m_certificate.keyType = keyType;
        EXPECT_EQ(OfData(), 0);
        EXPECT_EQ(fakes::Calls().back().arguments[0], number) << keyType;
    }
}

TEST_F(OriginalPdfHashTest, TheHashGoesToTheLogWhenItIsMadeAndWhenItIsFetched) {
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(OfFile(), 0);
    const std::string text = Base64Encode(kHash);
    EXPECT_THAT(Log(), ElementsAre("8 [HashData]: begin", "8 [HashData]: ok",
                                   "3 Original Sign Pdf Hash : " + text, "8 [HashFile]: begin",
                                   "8 [HashFile]: ok", "3 Original Sign Pdf file Hash : " + text));
    ForgetLog();
    int length = 0;
    EXPECT_EQ(GetOriginalSignPdfHash(nullptr, &length), 0);
    EXPECT_THAT(Log(), IsEmpty());
    OutPair out;
    EXPECT_EQ(GetOriginalSignPdfHash(out.buffer, &out.length), 0);
    EXPECT_THAT(Log(), ElementsAre("3 GetOriginalSignPdfHash : " + text));
}

TEST_F(OriginalPdfHashTest, AFetchLooksAtNoLengthAndLeavesItAsItWas) {
    EXPECT_EQ(OfData(), 0);
    OutPair out(1);
    EXPECT_EQ(GetOriginalSignPdfHash(out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 1);
    EXPECT_EQ(out.Bytes(45), Base64Encode(kHash) + "\xA5");
    EXPECT_EQ(GetOriginalSignPdfHash(out.buffer, nullptr), 0);
}

TEST_F(OriginalPdfHashTest, TheHashSurvivesTheEndOfASelectionAndOfTheService) {
    EXPECT_EQ(OfData(), 0);
    ClearSelectKeyID();
    ResetEsealData();
    UnInitKVLLib();
    fakes::ClearCalls();
    EXPECT_EQ(Base64Decode(Kept()), kHash);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(OriginalPdfHashTest, SettingACertificateAndFetchingStartNoService) {
    UnInitKVLLib();
    fakes::ClearCalls();
    ForgetLog();
    SetCert();
    int length = 0;
    EXPECT_EQ(GetOriginalSignPdfHash(nullptr, &length), 0);
    EXPECT_EQ(length, 4);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(OriginalPdfHashTest, ABadCertificateLeavesTheOldHash) {
    SetPackHashCert(AsBytes("bad"), 3);
    const std::string inner = "[GetCertificateInfoEx]SOF_GetCertInfo: error:" +
                              std::to_string(fakes::kUnknownCertificate);
    EXPECT_EQ(OfData(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(OfFile(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_THAT(Errors(), ElementsAre(inner, "ParseCertFieldData error:-3010", inner,
                                      "ParseCertFieldData error:-3010"));
    EXPECT_EQ(fakes::CountCalls("SOF_HashData") + fakes::CountCalls("SOF_HashFile"), 0);
    EXPECT_EQ(Kept(), kOld);
}

TEST_F(OriginalPdfHashTest, AKeyTypeLongerThanItsBufferIsToldByTheFormOfTheField) {
    SetCert();
    m_certificate.keyType = std::string(33, 'R');
    EXPECT_EQ(OfData(), TESMARK_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("ParseCertFieldData error:-3015"));
    EXPECT_EQ(Kept(), kOld);
}

TEST_F(OriginalPdfHashTest, AKeyTypeThatNoMemoryHoldsHasACodeOfItsOwn) {
    SetCert();
    fakes::On("SOF_GetCertInfo").ReportsSize(-20);
    EXPECT_EQ(OfFile(), TESMARK_CERT_INFO_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("ParseCertFieldData error:-3030"));
    EXPECT_EQ(Kept(), kOld);
}

TEST_F(OriginalPdfHashTest, AFailedHashOfDataKeepsZerosAndTheCertificate) {
    SetCert();
    fakes::On("SOF_HashData").ReturnsAt(1, 101);
    EXPECT_EQ(OfData(), 101);
    EXPECT_EQ(Kept(), m_zeros);
    EXPECT_EQ(Errors().front(), "Original Sign Pdf Hash : " + m_zeros);
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[2], "DER of A");
}

// That the service's copy is freed, and only once, is what the sanitizers see.
TEST_F(OriginalPdfHashTest, AFailedHashOfAFileKeepsZerosAndCostsTheCertificate) {
    SetCert();
    fakes::On("SOF_HashFile").ReturnsAt(1, 102);
    EXPECT_EQ(OfFile(), 102);
    EXPECT_EQ(Kept(), m_zeros);
    EXPECT_EQ(Errors().front(), "Original Sign Pdf file Hash : " + m_zeros);
    fakes::ClearCalls();
    EXPECT_EQ(OfFile(), 102);
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(OfFile(), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_HashFile(ctx, 2, \"/a/file\", 0 null, null, 0, out[32])",
                            "SOF_HashData(ctx, 2, 4 \"data\", 0 null, null, 0, out[32])",
                            "SOF_HashFile(ctx, 2, \"/a/file\", 0 null, null, 0, out[32])"));
}

TEST_F(OriginalPdfHashTest, ACertificateThatWasLostCanBeSetAnew) {
    SetCert();
    fakes::On("SOF_HashFile").ReturnsAt(1, 102);
    EXPECT_EQ(OfFile(), 102);
    SetCert();
    EXPECT_EQ(OfFile(), 0);
    EXPECT_EQ(Base64Decode(Kept()), kHash);
    EXPECT_EQ(fakes::Calls().back().arguments[2], "DER of A");
}

TEST_F(OriginalPdfHashTest, ALengthBeyondTheBufferIsCutToIt) {
    fakes::On("SOF_HashData").ReportsSize(4000);
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(Base64Decode(Kept()), kHash + std::string(32, '\0'));
    fakes::On("SOF_HashData").ReportsSize(-1);
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(Kept(), "");
}

TEST_F(OriginalPdfHashTest, AServiceThatCannotBeStartedLeavesCertificateAndHash) {
    SetCert();
    UnInitKVLLib();
    fakes::On("SOF_Initialize").Returns(1);
    EXPECT_EQ(OfData(), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(OfFile(), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(Kept(), kOld);
    fakes::On("SOF_Initialize").Returns(0);
    EXPECT_EQ(OfFile(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[2], "DER of A");
}

TEST_F(OriginalPdfHashTest, TheCertificateIsCopiedWithItsZeroBytes) {
    std::string cert("a\0b", 3);
    EXPECT_EQ(SetPackHashCert(AsBytes(cert), AsLength(cert)), 0);
    cert = "xxx";
    fakes::On("SOF_GetCertInfo").Gives("SM2");
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(OfFile(), 0);
    EXPECT_EQ(fakes::CallTexts("SOF_HashData")[0],
              "SOF_HashData(ctx, 1, 4 \"data\", 3 \"a\\x00b\", \"1234567812345678\", 16, out[32])");
    EXPECT_EQ(fakes::CallTexts("SOF_HashFile")[0],
              "SOF_HashFile(ctx, 1, \"/a/file\", 3 \"a\\x00b\", \"1234567812345678\", 16, "
              "out[32])");
}

TEST_F(OriginalPdfHashTest, ANullCertificateWithALengthIsTheStringFailureAndChangesNothing) {
    SetCert();
    for (const int length : {1, -1}) {
        try {
            SetPackHashCert(nullptr, length);
            ADD_FAILURE() << "taken for a certificate";
        } catch (const StringFailure& failure) {
            EXPECT_EQ(failure.Value(), StringFailure::kInvalidArgument);
        }
    }
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[2], "DER of A");
}

TEST_F(OriginalPdfHashTest, TheSelectedCertificatePlaysNoPart) {
    SetCurrentCertID("A");
    EXPECT_EQ(OfData(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[0], "2");
    fakes::On("SOF_HashFile").Returns(102);
    EXPECT_EQ(OfFile(), 102);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 1);
}

TEST_F(OriginalPdfHashTest, EachMakingStartsTheServiceByItself) {
    for (const auto& make : {&OriginalPdfHashTest::OfData, &OriginalPdfHashTest::OfFile}) {
        UnInitKVLLib();
        fakes::ClearCalls();
        EXPECT_EQ(make(), 0);
        EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
    }
}

}  // namespace
