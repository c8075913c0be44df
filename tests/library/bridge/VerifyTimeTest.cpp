// A time held against a certificate's validity.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VerifyTimeTest : public LibraryTest {
protected:
    VerifyTimeTest() : m_certificate(fakes::AddCertificate("label", "A")) {
        m_certificate.notBefore = "20250301120000";
        m_certificate.notAfter = "20260301120000";
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }

    static int Verify(const std::string& time) {
        return VerifySignTime(AsBytes("DER of A"), 8, time.c_str());
    }
    // Whether the text ends in the string type's general failure.
    static bool Fails(const std::string& time) {
        try {
            Verify(time);
        } catch (const StringFailure& failure) {
            return failure.Value() == StringFailure::kGeneral;
        }
        return false;
    }

    fakes::Certificate& m_certificate;
};

TEST_F(VerifyTimeTest, AsksForBothEndsOfTheValidity) {
    EXPECT_EQ(Verify("2025-11-21 09:30:00"), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_GetCertInfo(ctx, 8 \"DER of A\", 11, out[4096])",
                            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 12, out[4096])"));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin", "8 [VerifySignCert]: ok"));
}

TEST_F(VerifyTimeTest, OneMomentInEachOfTheThreeFormatsGivesTheSameResult) {
    const struct {
        const char* pdf;
        const char* chinese;
        const char* iso;
        int result;
    } moments[] = {
        {"D:20250301115959+08'00'", "2025年03月01日11时59分59秒", "2025-03-01 11:59:59",
         TESMARK_TIME_OUTSIDE_VALIDITY},
        {"D:20250301120000+08'00'", "2025年03月01日12时00分00秒", "2025-03-01 12:00:00", 0},
        {"D:20251121093000+08'00'", "2025年11月21日09时30分00秒", "2025-11-21 09:30:00", 0},
        {"D:20260301120000+08'00'", "2026年03月01日12时00分00秒", "2026-03-01 12:00:00", 0},
        {"D:20260301120001+08'00'", "2026年03月01日12时00分01秒", "2026-03-01 12:00:01",
         TESMARK_TIME_OUTSIDE_VALIDITY}};
    EXPECT_EQ(TESMARK_TIME_OUTSIDE_VALIDITY, -2050);
    for (const auto& moment : moments) {
        EXPECT_EQ(Verify(moment.pdf), moment.result) << moment.pdf;
        EXPECT_EQ(Verify(moment.chinese), moment.result) << moment.pdf;
        EXPECT_EQ(Verify(moment.iso), moment.result) << moment.pdf;
    }
}

TEST_F(VerifyTimeTest, ATimeOutsideTheValidityIsLoggedByItsOpeningAlone) {
    EXPECT_EQ(Verify("2024-11-21 09:30:00"), TESMARK_TIME_OUTSIDE_VALIDITY);
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin"));
}

TEST_F(VerifyTimeTest, AnEmptyTextRaisesTheFailureAsTheYearIsZero) {
    EXPECT_TRUE(Fails(""));
    EXPECT_EQ(fakes::CountCalls("SOF_GetCertInfo"), 2);
}

TEST_F(VerifyTimeTest, AYearUnder1900OrAPartOutOfRangeRaisesTheFailure) {
    for (const char* time :
         {"1899-12-31 23:59:59", "D:18991231235959+08'00'", "1899年12月31日23时59分59秒",
          "2025-00-21 09:30:00", "2025-13-21 09:30:00", "2025-11-00 09:30:00",
          "2025-11-32 09:30:00", "2025-11-21 24:30:00", "2025-11-21 09:60:00",
          "2025-11-21 09:30:60", "2025-11-21 -1:30:00", "20251121093000", "no time", "D", "年"}) {
        EXPECT_TRUE(Fails(time)) << time;
    }
}

TEST_F(VerifyTimeTest, TheLibraryWorksOnBehindTheFailure) {
    EXPECT_TRUE(Fails(""));
    EXPECT_EQ(Verify("2025-11-21 09:30:00"), 0);
}

TEST_F(VerifyTimeTest, TheFirstYearThatCountsIs1900) {
    EXPECT_EQ(Verify("1900-01-01 00:00:00"), TESMARK_TIME_OUTSIDE_VALIDITY);
}

TEST_F(VerifyTimeTest, AValidityThatIsNoDateRaisesTheFailureToo) {
    for (const char* text : {"", "18991231235959", "20251301000000"}) {
        m_certificate.notBefore = text;
        EXPECT_TRUE(Fails("2025-11-21 09:30:00")) << text;
    }
}

TEST_F(VerifyTimeTest, AFieldThatCannotBeReadIsToldBeforeTheTextCounts) {
    fakes::On("SOF_GetCertInfo").ReturnsAt(1, 41).ReturnsAt(3, 42);
    EXPECT_EQ(Verify(""), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(Verify(""), TESMARK_CERT_FIELD_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]SOF_GetCertInfo-11: failed,error:41",
                                      "[GetKeyType]SOF_GetCertInfo-12: failed,error:42"));
}

TEST_F(VerifyTimeTest, NeitherTheVerdictNorTheRevocationListPlaysAPart) {
    m_prefix.SetNumber("bVerifyCRL", 1);
    m_certificate.validity = -3;
    UnInitKVLLib();
    EXPECT_EQ(Verify("2025-11-21 09:30:00"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_ValidateCert"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_GetCertInfoByOid"), 0);
}

TEST_F(VerifyTimeTest, TheSelectionOutlivesARefusal) {
    SetCurrentCertID("A");
    EXPECT_EQ(Verify("2024-11-21 09:30:00"), TESMARK_TIME_OUTSIDE_VALIDITY);
    EXPECT_TRUE(Fails(""));
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 1);
}

TEST_F(VerifyTimeTest, ANullTextIsAnEmptyOne) {
    try {
        VerifySignTime(AsBytes("DER of A"), 8, nullptr);
        ADD_FAILURE() << "no failure";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StringFailure::kGeneral);
    }
}

TEST_F(VerifyTimeTest, AValidityUntilTheEndOfTheCalendarHolds) {
    m_certificate.notAfter = "99991231235959";
    EXPECT_EQ(Verify("2026-11-21 09:30:00"), 0);
    EXPECT_EQ(Verify("9999-12-31 23:59:59"), 0);
    EXPECT_EQ(Verify("1969-12-31 23:59:59"), TESMARK_TIME_OUTSIDE_VALIDITY);
    m_certificate.notBefore = "19600101000000";
    EXPECT_EQ(Verify("1960-01-01 00:00:00"), 0);
    EXPECT_EQ(Verify("1959-12-31 23:59:59"), TESMARK_TIME_OUTSIDE_VALIDITY);
}

TEST_F(VerifyTimeTest, StartsTheServiceByItself) {
    UnInitKVLLib();
    fakes::ClearCalls();
    EXPECT_EQ(Verify("2025-11-21 09:30:00"), 0);
    EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
}

}  // namespace
