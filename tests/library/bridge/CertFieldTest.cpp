// Fields and extensions of a certificate that a host hands over.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOfficeOid[] = "1.2.156.990017.2.1.9.1";
constexpr char kLogotypeOid[] = "1.3.6.1.5.5.7.1.12";

class CertFieldTest : public LibraryTest {
protected:
    CertFieldTest() {
        fakes::AddCertificate("Zhang San", "A");
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }

    int Field(int field, unsigned char* out, int* outLen) {
        return ParseCertFieldData(AsBytes(m_der), AsLength(m_der), field, out, outLen);
    }
    int Extension(unsigned char* out, int* outLen) {
        return GetCertOidData(AsBytes(m_der), AsLength(m_der), out, outLen);
    }
    // The extension with `oid` has these bytes, any other fails with 7.
    static void HasExtension(const std::string& oid, const std::string& bytes) {
        fakes::On("SOF_GetCertInfoByOid").Does([=](const fakes::Call& call) {
            fakes::Answer answer;
            if (call.arguments[1] == oid) {
                answer.output = bytes;
            } else {
                answer.result = 7;
            }
            return answer;
        });
    }

    const std::string m_der = "DER of A";
};

TEST_F(CertFieldTest, AFieldIsAskedForTwiceOnTheQueryAndTwiceOnTheFetch) {
    int length = 0;
    EXPECT_EQ(Field(17, nullptr, &length), 0);
    EXPECT_EQ(length, 9);
    OutPair out(9);
    EXPECT_EQ(Field(17, out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 9);
    EXPECT_EQ(out.Bytes(10), "Zhang San\xA5");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, size?)",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, out[9])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, size?)",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 17, out[9])"));
    EXPECT_THAT(Log(),
                ElementsAre("8 [GetCertificateInfoEx]: begin", "8 [GetCertificateInfoEx]: begin"));
}

TEST_F(CertFieldTest, ABufferOneByteShortIsRefusedWithItsLengthLeftAlone) {
    OutPair out(8);
    EXPECT_EQ(Field(17, out.buffer, &out.length), TESMARK_NO_MEMORY);
    EXPECT_EQ(out.length, 8);
    EXPECT_TRUE(out.BufferUntouched());
}

TEST_F(CertFieldTest, TheLengthOfTheFetchCounts) {
    fakes::On("SOF_GetCertInfo").ReportsSizeAt(2, 5);
    OutPair out(512);
    EXPECT_EQ(Field(17, out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "Zhang");
}

TEST_F(CertFieldTest, ALengthBeyondTheMemoryIsCutToIt) {
    fakes::On("SOF_GetCertInfo").ReportsSizeAt(2, 4000);
    OutPair out(512);
    EXPECT_EQ(Field(17, out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "Zhang San" + std::string(16, '\0'));
}

TEST_F(CertFieldTest, AnEmptyFieldHasLengthZero) {
    fakes::On("SOF_GetCertInfo").Gives("");
    OutPair out(0);
    EXPECT_EQ(Field(17, out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 0);
}

TEST_F(CertFieldTest, AFieldOutside1To34IsRefusedAndDoesNotStartTheService) {
    UnInitKVLLib();
    fakes::ClearCalls();
    ForgetLog();
    OutPair out;
    EXPECT_EQ(Field(0, out.buffer, &out.length), TESMARK_BAD_ARGUMENT);
    EXPECT_EQ(Field(35, out.buffer, &out.length), TESMARK_BAD_ARGUMENT);
    EXPECT_EQ(Field(-1, out.buffer, &out.length), TESMARK_BAD_ARGUMENT);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(CertFieldTest, TheFirstAndTheLastFieldAreAskedFor) {
    int length = 0;
    EXPECT_EQ(Field(1, nullptr, &length), 0);
    EXPECT_EQ(Field(34, nullptr, &length), 0);
}

TEST_F(CertFieldTest, AFailureOfEitherStepIsTold) {
    fakes::On("SOF_GetCertInfo").ReturnsAt(1, 51).ReturnsAt(3, 52);
    OutPair out;
    EXPECT_EQ(Field(17, out.buffer, &out.length), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(Field(17, out.buffer, &out.length), TESMARK_CERT_FIELD_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[GetCertificateInfoEx]SOF_GetCertInfo: error:51",
                                      "[GetCertificateInfoEx]SOF_GetCertInfo: error:52"));
    EXPECT_TRUE(out.Untouched());
}

TEST_F(CertFieldTest, AFieldThatNoMemoryHoldsHasACodeOfItsOwn) {
    fakes::On("SOF_GetCertInfo").ReportsSize(-20);
    OutPair out;
    EXPECT_EQ(Field(17, out.buffer, &out.length), TESMARK_CERT_INFO_NO_MEMORY);
    EXPECT_TRUE(out.Untouched());
}

TEST_F(CertFieldTest, TheOfficesExtensionIsChosenWhereThereIsOne) {
    HasExtension(kOfficeOid, "picture");
    OutPair out(512);
    EXPECT_EQ(Extension(out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "picture");
    EXPECT_EQ(fakes::Calls().size(), 2u);
    EXPECT_THAT(Log(), ElementsAre("8 [GetCertOidData]: begin", "8 [GetCertOidData]: end"));
}

TEST_F(CertFieldTest, TheLogotypeIsTheSecondChoice) {
    HasExtension(kLogotypeOid, "logo");
    OutPair out(512);
    EXPECT_EQ(Extension(out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "logo");
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"1.2.156.990017.2.1.9.1\", size?)",
                    "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"1.3.6.1.5.5.7.1.12\", size?)",
                    "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"1.3.6.1.5.5.7.1.12\", out[4])"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetCertOidData]: begin",
                                   "8 [GetCertOidData OID：1.2.156.990017.2.1.9.1 failed]: 7",
                                   "8 [GetCertOidData]: end"));
}

TEST_F(CertFieldTest, AQueryLeavesTheSizeThatTheServiceTold) {
    HasExtension(kOfficeOid, "picture");
    int length = 0;
    EXPECT_EQ(Extension(nullptr, &length), 0);
    EXPECT_EQ(length, 7);
    EXPECT_EQ(fakes::Calls().size(), 1u);
}

TEST_F(CertFieldTest, WithNeitherExtensionTheSecondFailureIsTheResult) {
    fakes::On("SOF_GetCertInfoByOid").ReturnsAt(1, 61).ReturnsAt(2, 62);
    OutPair out(512);
    EXPECT_EQ(Extension(out.buffer, &out.length), 62);
    EXPECT_TRUE(out.BufferUntouched());
    EXPECT_THAT(Log(), ElementsAre("8 [GetCertOidData]: begin",
                                   "8 [GetCertOidData OID：1.2.156.990017.2.1.9.1 failed]: 61",
                                   "8 [GetCertOidData OID：1.3.6.1.5.5.7.1.12 failed]: 62"));
}

TEST_F(CertFieldTest, TwoExtensionsOfOneByteGiveZeroWithLengthOneAndNothingCopied) {
    fakes::On("SOF_GetCertInfoByOid").Gives("x");
    OutPair out(512);
    EXPECT_EQ(Extension(out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 1);
    EXPECT_TRUE(out.BufferUntouched());
    EXPECT_EQ(fakes::Calls().size(), 2u);
}

TEST_F(CertFieldTest, TheHostsCapacityIsOverwrittenBySizesBeforeTheServiceSeesIt) {
    HasExtension(kOfficeOid, "picture");
    OutPair out(2);
    EXPECT_EQ(Extension(out.buffer, &out.length), 0);
    EXPECT_EQ(fakes::Calls().back().capacity, 7);
    EXPECT_EQ(out.Bytes(), "picture");
}

TEST_F(CertFieldTest, AFailedFetchOfAnExtensionPassesTheServicesCode) {
    HasExtension(kOfficeOid, "picture");
    fakes::On("SOF_GetCertInfoByOid").ReturnsAt(2, 63);
    OutPair out(512);
    EXPECT_EQ(Extension(out.buffer, &out.length), 63);
    EXPECT_THAT(Errors(), ElementsAre("[GetCertOidData error]: 1.2.156.990017.2.1.9.1"));
}

}  // namespace
