// PKCS#1 signatures.
#include <gmock/gmock.h>

#include "SigningTest.h"

namespace {

using testing::ElementsAre;
using testing::Not;

class P1SignTest : public SigningTest {
protected:
    P1SignTest() { Select(0); }
};

TEST_F(P1SignTest, TheMethodIsSetForTheSignatureAndResetBehindIt) {
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "SOF_SignData by A");
    EXPECT_THAT(
        CallsBehindTheCheck(),
        ElementsAre("SOF_SetSignMethod(ctx, 131329)", "SOF_SignData(ctx, \"A\", 4 \"data\", size?)",
                    "SOF_SignData(ctx, \"A\", 4 \"data\", out[17])", "SOF_SetSignMethod(ctx, 0)"));
    EXPECT_THAT(Log(), ElementsAre("8 [SignData]: begin", "8 [GetKeyType]: begin",
                                   "8 [GetKeyType]: ok", "8 [SignData]: ok"));
}

TEST_F(P1SignTest, TheModeOfTheSealPlaysNoPart) {
    for (const int mode : {1, 2, 3}) {
        SelectSeal("no serial", "c2VhbCBmaWxl", mode);
        SetCurrentCertID("A");
        ASSERT_EQ(GetEsealMode(), mode);
        OutPair out(512);
        EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
        EXPECT_EQ(out.Bytes(), "SOF_SignData by A");
    }
    EXPECT_EQ(fakes::CountCalls("TVK_Sign"), 0);
}

TEST_F(P1SignTest, AFailureLeavesTheSelectionAndTheSeal) {
    SelectSeal("no serial", "c2VhbCBmaWxl", 2);
    SetCurrentCertID("A");
    int length = 0;
    for (const char* function : {"SOF_ExportUserCert", "SOF_SetSignMethod", "SOF_SignData"}) {
        fakes::On(function).Returns(5);
        EXPECT_NE(P1Sign("data", nullptr, &length), 0) << function;
        EXPECT_TRUE(Selected()) << function;
        EXPECT_EQ(GetEsealMode(), 2) << function;
        fakes::On(function).Returns(0);
    }
}

TEST_F(P1SignTest, AnyKeyTypeButSm2IsSignedAsRsa) {
    m_certificate.keyType = "sm2";
    int length = 0;
    EXPECT_EQ(P1Sign("data", nullptr, &length), 0);
    EXPECT_EQ(CallsBehindTheCheck()[0], "SOF_SetSignMethod(ctx, 65540)");
}

TEST_F(P1SignTest, AQueryMakesAWholeSignature) {
    int length = 0;
    EXPECT_EQ(P1Sign("data", nullptr, &length), 0);
    EXPECT_EQ(length, 17);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(P1SignTest, ABufferOneByteShortIsRefusedAfterTheSignature) {
    OutPair out(16);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_NO_MEMORY);
    EXPECT_EQ(out.length, 16);
    EXPECT_TRUE(out.BufferUntouched());
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
    EXPECT_TRUE(Selected());
}

TEST_F(P1SignTest, ABufferThatJustFitsIsFilledAndNothingBehindIt) {
    OutPair out(17);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(18), "SOF_SignData by A\xA5");
}

TEST_F(P1SignTest, AShorterSignatureAtTheFetchIsToldByItsOwnLength) {
    fakes::On("SOF_SignData").GivesAt(2, "short");
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "short");
}

TEST_F(P1SignTest, AFailedCheckIsLoggedAndReturnedAndTheMethodNotSet) {
    m_certificate.validity = -1;
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_NOT_TRUSTED);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]call SOF_ValidateCert error:-1",
                                      "[SignData]GetKeyType: error:-3007"));
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
    EXPECT_TRUE(Selected());
}

TEST_F(P1SignTest, AnExpiredCertificateIsRefusedBeforeTheMethodIsSet) {
    m_certificate.notAfter = "20010101000000";
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_CERT_EXPIRED);
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
}

TEST_F(P1SignTest, AMethodThatCannotBeSetIsTheResult) {
    fakes::On("SOF_SetSignMethod").Returns(71);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 71);
    EXPECT_THAT(Errors(), ElementsAre("[SignData]SOF_SetSignMethod: error:71"));
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 1);
}

TEST_F(P1SignTest, AFailedSizeQueryResetsTheMethod) {
    fakes::On("SOF_SignData").Returns(72);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 72);
    EXPECT_EQ(out.length, 512);
    EXPECT_THAT(Errors(), ElementsAre("[SignData]SOF_SignData: error:72"));
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_SetSignMethod(ctx, 0)");
    EXPECT_TRUE(Selected());
}

TEST_F(P1SignTest, AFailedSignatureResetsTheMethod) {
    fakes::On("SOF_SignData").ReturnsAt(2, 73);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 73);
    EXPECT_TRUE(out.BufferUntouched());
    EXPECT_THAT(Errors(), ElementsAre("[SignData]SOF_SignData: error:73"));
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_SetSignMethod(ctx, 0)");
}

TEST_F(P1SignTest, WithoutMemoryTheMethodIsResetAndTheCodeIsOurs) {
    fakes::On("SOF_SignData").ReportsSize(-2);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), TESMARK_NO_MEMORY);
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_SetSignMethod(ctx, 0)");
    EXPECT_TRUE(Errors().empty());
}

TEST_F(P1SignTest, WithoutMemoryAFailedResetIsLoggedAndReturned) {
    fakes::On("SOF_SignData").ReportsSize(-2);
    fakes::On("SOF_SetSignMethod").ReturnsAt(2, 74);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 74);
    EXPECT_THAT(Errors(), ElementsAre("[SignData]SOF_SetSignMethod: error:74"));
}

TEST_F(P1SignTest, AFailedResetBehindASignatureIsNotLookedAt) {
    fakes::On("SOF_SetSignMethod").ReturnsAt(2, 74);
    OutPair out(512);
    EXPECT_EQ(P1Sign("data", out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "SOF_SignData by A");
}

}  // namespace
