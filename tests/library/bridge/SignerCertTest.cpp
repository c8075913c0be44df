// The signer's certificate out of a signature of either kind.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Base64 of "DER of A".
constexpr char kCertText[] = "REVSIG9mIEE=";
constexpr char kNoPkcs7[] = "[GetInfoFromSignedDataEx]SOF_GetInfoFromSignedMessage: error:97";

class SignerCertTest : public LibraryTest {
protected:
    SignerCertTest() {
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_GetInfoFromSignedMessage").Gives("DER of A");
        fakes::On("TVK_Get_Sign_Cert_From_SIG").Gives(kCertText);
    }

    static int Signer(unsigned char* out, int* outLen, int field = 2) {
        return ParseP7FieldData(AsBytes("signature"), 9, field, out, outLen);
    }
    static void HoldASealSignature() { fakes::On("SOF_GetInfoFromSignedMessage").Returns(97); }
};

TEST_F(SignerCertTest, AnotherFieldThan2IsRefusedAndDoesNotStartTheService) {
    UnInitKVLLib();
    fakes::ClearCalls();
    ForgetLog();
    OutPair out;
    for (const int field : {1, 3, 0, -2}) {
        EXPECT_EQ(Signer(out.buffer, &out.length, field), TESMARK_BAD_ARGUMENT);
    }
    EXPECT_EQ(TESMARK_BAD_ARGUMENT, -3040);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(SignerCertTest, ANullSignatureIsRefusedOnceTheServiceIsUp) {
    UnInitKVLLib();
    fakes::ClearCalls();
    OutPair out;
    EXPECT_EQ(ParseP7FieldData(nullptr, 0, 2, out.buffer, &out.length), TESMARK_BAD_ARGUMENT);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_Initialize", "TVK_Initialize", "TVK_SetConfig"));
    UnInitKVLLib();
    fakes::On("SOF_Initialize").Returns(1);
    EXPECT_EQ(ParseP7FieldData(nullptr, 0, 2, out.buffer, &out.length), TESMARK_SERVICE_FAILED);
}

TEST_F(SignerCertTest, APkcs7sSignerIsAskedForTwiceOnTheQueryAndTwiceOnTheFetch) {
    int length = 0;
    EXPECT_EQ(Signer(nullptr, &length), 0);
    EXPECT_EQ(length, 8);
    OutPair out(8);
    EXPECT_EQ(Signer(out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 8);
    EXPECT_EQ(out.Bytes(9), "DER of A\xA5");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, size?)",
                            "SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, out[8])",
                            "SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, size?)",
                            "SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, out[8])"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetInfoFromSignedDataEx]: begin",
                                   "8 [GetInfoFromSignedDataEx]: begin"));
}

TEST_F(SignerCertTest, APkcs7sSignerDoesNotGoIntoABufferOneByteShort) {
    OutPair out(7);
    EXPECT_EQ(Signer(out.buffer, &out.length), TESMARK_NO_MEMORY);
    EXPECT_EQ(out.length, 7);
    EXPECT_TRUE(out.BufferUntouched());
    EXPECT_EQ(fakes::CountCalls("TVK_Get_Sign_Cert_From_SIG"), 0);
}

TEST_F(SignerCertTest, APkcs7sSignerTellsItsSizeInALargerBuffer) {
    OutPair out(512);
    EXPECT_EQ(Signer(out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "DER of A");
}

TEST_F(SignerCertTest, ASealSignaturesSignerComesFromTheSealLibrary) {
    HoldASealSignature();
    int length = 0;
    EXPECT_EQ(Signer(nullptr, &length), 0);
    EXPECT_EQ(length, 8);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, size?)",
                            "TVK_Get_Sign_Cert_From_SIG(12 \"c2lnbmF0dXJl\", size?)",
                            "TVK_Get_Sign_Cert_From_SIG(12 \"c2lnbmF0dXJl\", out[12])"));
    EXPECT_THAT(Log(),
                ElementsAre("8 [GetInfoFromSignedDataEx]: begin", std::string("3 ") + kNoPkcs7));
}

TEST_F(SignerCertTest, ASealSignaturesSignerIsWrittenIntoASmallBufferAllTheSame) {
    HoldASealSignature();
    OutPair out(1);
    EXPECT_EQ(Signer(out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 8);
    EXPECT_EQ(out.Bytes(9), "DER of A\xA5");
}

TEST_F(SignerCertTest, AFetchThatTheServiceFailsAndASizeThatNoMemoryHoldsAreSealSignaturesToo) {
    fakes::On("SOF_GetInfoFromSignedMessage").ReturnsAt(2, 97).ReportsSizeAt(3, -2);
    for (int turn = 0; turn < 2; ++turn) {
        OutPair out(512);
        EXPECT_EQ(Signer(out.buffer, &out.length), 0);
        EXPECT_EQ(out.Bytes(), "DER of A");
    }
    EXPECT_EQ(fakes::CountCalls("TVK_Get_Sign_Cert_From_SIG"), 4);
    EXPECT_THAT(Errors(), ElementsAre(kNoPkcs7));
}

TEST_F(SignerCertTest, AFailureOfTheSealLibraryAtEitherStepIsTheResult) {
    HoldASealSignature();
    fakes::On("TVK_Get_Sign_Cert_From_SIG").ReturnsAt(1, 98).ReturnsAt(3, -3037);
    OutPair out;
    EXPECT_EQ(Signer(out.buffer, &out.length), 98);
    EXPECT_EQ(Signer(out.buffer, &out.length), -3037);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(Errors(), ElementsAre(kNoPkcs7, kNoPkcs7));
}

TEST_F(SignerCertTest, ASealSignaturesSignerThatNoMemoryHoldsIsToldAsSuch) {
    HoldASealSignature();
    fakes::On("TVK_Get_Sign_Cert_From_SIG").ReportsSize(-2);
    OutPair out;
    EXPECT_EQ(Signer(out.buffer, &out.length), TESMARK_NO_MEMORY);
    EXPECT_TRUE(out.Untouched());
}

TEST_F(SignerCertTest, ASealSignatureWithoutASignerHasLengthZero) {
    HoldASealSignature();
    fakes::On("TVK_Get_Sign_Cert_From_SIG").Gives("");
    OutPair out;
    EXPECT_EQ(Signer(out.buffer, &out.length), 0);
    EXPECT_EQ(out.length, 0);
    EXPECT_TRUE(out.BufferUntouched());
}

TEST_F(SignerCertTest, TheSelectionOutlivesAFailure) {
    SetCurrentCertID("nobody");
    HoldASealSignature();
    fakes::On("TVK_Get_Sign_Cert_From_SIG").Returns(98);
    OutPair out;
    EXPECT_EQ(Signer(out.buffer, &out.length), 98);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

TEST_F(SignerCertTest, ATextWhoseZeroByteIsCountedIsReadToItsEnd) {
    HoldASealSignature();
    fakes::On("TVK_Get_Sign_Cert_From_SIG").Gives(std::string("REVSIG9m\r\nIEE=\r\n\0", 17));
    OutPair out;
    EXPECT_EQ(Signer(out.buffer, &out.length), 0);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out.buffer), 8), "DER of A");
    EXPECT_EQ(out.length, 8);
}

}  // namespace
