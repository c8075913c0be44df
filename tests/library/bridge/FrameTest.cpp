// The frame that every export shares: the gate, the selection, and how data goes out.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class FrameTest : public LibraryTest {
protected:
    FrameTest() { fakes::AddCertificate("label", "cert-1"); }

    int SelectionLength() const {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length;
    }
    void TakeServiceAway() const { m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so"); }
};

TEST_F(FrameTest, AnExportStartsTheServiceByItself) {
    SetCurrentCertID("cert-1");
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
}

TEST_F(FrameTest, AMissingServiceIsToldByEveryExportThatNeedsIt) {
    TakeServiceAway();
    SetCurrentCertID("cert-1");
    OutPair out;
    const unsigned char byte = 1;
    char type[300] = "untouched";
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(P7SignFile("/a", "", out.buffer, &out.length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetHashData("SM3", &byte, 1, nullptr, 0, out.buffer, &out.length),
              TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetFileHash("SM3", "/a", nullptr, 0, out.buffer, &out.length),
              TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(ParseCertFieldData(&byte, 1, 2, out.buffer, &out.length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetCertOidData(&byte, 1, out.buffer, &out.length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetCertTypeForJs("cert-1", type), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_TRUE(out.Untouched());
    EXPECT_STREQ(type, "untouched");
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(FrameTest, AMissingServiceEndsTheSelectionOfASignerAndLeavesThatOfP1SignData) {
    TakeServiceAway();
    int length = 0;
    SetCurrentCertID("cert-1");
    P1Sign("data", nullptr, &length);
    EXPECT_EQ(SelectionLength(), 6);
    P7Sign("data", "", nullptr, &length);
    EXPECT_EQ(SelectionLength(), 0);
    SetCurrentCertID("cert-1");
    P7SignFile("/a", "", nullptr, &length);
    EXPECT_EQ(SelectionLength(), 0);
    SetCurrentCertID("cert-1");
    char type[300];
    GetCertTypeForJs("cert-2", type);
    EXPECT_EQ(SelectionLength(), 0);
}

TEST_F(FrameTest, SigningWithNothingSelectedReturnsZeroAndTouchesNothing) {
    OutPair out;
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), 0);
    EXPECT_EQ(P7SignFile("/a", "", out.buffer, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_Initialize", "TVK_Initialize", "TVK_SetConfig"));
}

TEST_F(FrameTest, AnIdentifierEndsAtItsFirstZeroByte) {
    const std::string certId("cert-1\0tail", 11);
    SetContentSignCertId(AsBytes(certId), AsLength(certId));
    int length = 0;
    EXPECT_EQ(P1Sign("data", nullptr, &length), 0);
    EXPECT_THAT(fakes::CallTexts(), Contains("SOF_SignData(ctx, \"cert-1\", 4 \"data\", size?)"));
}

TEST_F(FrameTest, ClearingAnEmptySelectionReturnsZeroAndResetsTheSeal) {
    // The seal of the online service comes without a certificate.
    m_prefix.SetNumber("bSealPosition", 1);
    SelectSeal("serial", "c2VhbCBmaWxl", 2);
    ASSERT_EQ(SelectionLength(), 0);
    ASSERT_EQ(GetEsealMode(), 2);
    OutPair seal;
    ASSERT_EQ(GetSelectedSeal(nullptr, &seal.length), 0);
    ASSERT_EQ(seal.length, 9);
    EXPECT_EQ(ClearSelectKeyID(), 0);
    EXPECT_EQ(GetEsealMode(), 0);
    OutPair out;
    EXPECT_EQ(GetSelectedSeal(out.buffer, &out.length), 0);
    EXPECT_EQ(GetSelectedSeal(nullptr, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
}

TEST_F(FrameTest, ANullIdentifierSelectsNothing) {
    SetCurrentCertID("cert-1");
    EXPECT_EQ(SelectionLength(), 6);
    SetCurrentCertID(nullptr);
    EXPECT_EQ(SelectionLength(), 0);
}

TEST_F(FrameTest, AFailedPkcs7SignatureEndsTheSelectionAndTheNextCallSignsNothing) {
    SetCurrentCertID("cert-1");
    fakes::On("SOF_SignMessageEx").Returns(5);
    OutPair out;
    EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), TESMARK_PKCS7_FAILED);
    fakes::ClearCalls();
    EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), 0);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_TRUE(out.Untouched());
}

TEST_F(FrameTest, AnExpiredCertificateEndsEverySigningExportBeforeTheMethodIsSet) {
    fakes::AddCertificate("label", "old").notAfter = "20200101000000";
    OutPair out;
    for (const int mode : {0, 1, 2}) {
        SelectSeal("no serial", "c2VhbCBmaWxl", mode);
        SetCurrentCertID("old");
        EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_CERT_EXPIRED) << mode;
        EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), TESMARK_CERT_EXPIRED) << mode;
        SelectSeal("no serial", "c2VhbCBmaWxl", mode);
        SetCurrentCertID("old");
        EXPECT_EQ(P7SignFile("/a", "", out.buffer, &out.length), TESMARK_CERT_EXPIRED) << mode;
    }
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
    EXPECT_EQ(fakes::CountCalls("TVK_Sign"), 0);
    EXPECT_TRUE(out.Untouched());
}

TEST_F(FrameTest, AnImpossibleStringIsAnExceptionThatPassesThroughTheExport) {
    try {
        SetContentSignCertId(nullptr, 3);
        FAIL() << "no failure came through";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StringFailure::kInvalidArgument);
    }
}

TEST_F(FrameTest, TheSizesOfAPictureComeWithResultZero) {
    int width = 77;
    int height = 77;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_NE(width, 77);
    EXPECT_NE(height, 77);
}

}  // namespace
