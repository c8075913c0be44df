// The parts of a verdict: times, kinds, and which step a code stands for.
#include "FailedStep.h"
#include "SignatureTime.h"
#include "SignatureVerdict.h"
#include "components/certservice/ServiceCodes.h"
#include "components/seallibrary/SealCodes.h"
#include "include/TesmarkOpt.h"

#include <gtest/gtest.h>

namespace {

TEST(PdfTimeTest, AnOffsetIsApplied) {
    EXPECT_EQ(ReadPdfTime("D:20261121092127+08'00'"), 1'795'224'087);
    EXPECT_EQ(ReadPdfTime("D:20261121092127+08'00"), 1'795'224'087);
    EXPECT_EQ(ReadPdfTime("D:20261121012127Z"), 1'795'224'087);
    EXPECT_EQ(ReadPdfTime("D:20261120215127-0330"), 1'795'224'087);
    EXPECT_EQ(ReadPdfTime("20261121012127+00"), 1'795'224'087);
    EXPECT_EQ(ReadPdfTime("D:19700101000000Z"), 0);
    EXPECT_EQ(ReadPdfTime("D:20240229000000Z"), 1'709'164'800);
}

TEST(PdfTimeTest, WithoutAnOffsetItIsLocal) {
    const auto local = ReadPdfTime("D:20261121092127");
    ASSERT_TRUE(local);
    EXPECT_EQ(LocalTimeText(*local), "2026-11-21 09:21:27");
    EXPECT_EQ(ReadPdfTime("D:2026"), ReadPdfTime("D:20260101000000"));
}

TEST(PdfTimeTest, WhatIsNoMomentIsNone) {
    for (const char* text :
         {"", "D:", "D:202", "D:20261321000000Z", "D:20261100000000Z", "D:20260229000000Z",
          "D:20261121240000Z", "D:20261121006000Z", "D:20261121092127?", "D:20261121092127+99'00'",
          "D:20261121092127+", "D:18991231000000Z", "yesterday", "D:2026112", "D:-026"}) {
        EXPECT_FALSE(ReadPdfTime(text)) << text;
    }
}

TEST(SpacedTimeTest, DigitsAreSetApartAndOtherTextsStay) {
    EXPECT_EQ(SpacedTime("20261121092127"), "2026-11-21 09:21:27");
    EXPECT_EQ(SpacedTime("20261121092127Z"), "2026-11-21 09:21:27");
    EXPECT_EQ(SpacedTime("2026"), "2026");
    EXPECT_EQ(SpacedTime("2026-11-21 09:21"), "2026-11-21 09:21");
}

TEST(SignatureKindTest, TheFirstElementInsideDecides) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(KindOf("\x30\x03\x06\x01\x2a"sv), SignatureKind::kPkcs7);
    EXPECT_EQ(KindOf("\x30\x80\x06\x01\x2a"sv), SignatureKind::kPkcs7);
    EXPECT_EQ(KindOf("\x30\x82\x00\x02\x30\x00"sv), SignatureKind::kSeal);
    EXPECT_EQ(KindOf("\x30\x03\x02\x01\x00"sv), SignatureKind::kOther);
    EXPECT_EQ(KindOf("\x30\x84"sv), SignatureKind::kOther);
    EXPECT_EQ(KindOf(""), SignatureKind::kOther);
    EXPECT_EQ(KindOf("-----BEGIN"), SignatureKind::kOther);
}

TEST(FailedStepTest, EachComponentsCodeStandsForAPartOfTheSignature) {
    EXPECT_EQ(FailedStepOf(kServiceDigestMismatch), "digest");
    EXPECT_EQ(FailedStepOf(kSealDigestMismatch), "digest");
    EXPECT_EQ(FailedStepOf(kServiceSignatureInvalid), "signature value");
    EXPECT_EQ(FailedStepOf(kSealSignatureInvalid), "signature value");
    EXPECT_EQ(FailedStepOf(kServiceSignerUnfit), "purpose");
    EXPECT_EQ(FailedStepOf(TESMARK_NOT_TRUSTED), "chain");
    EXPECT_EQ(FailedStepOf(kSealSignerNotTrusted), "chain");
    EXPECT_EQ(FailedStepOf(TESMARK_TIME_OUTSIDE_VALIDITY), "validity");
    EXPECT_EQ(FailedStepOf(TESMARK_CRL_FAILED), "revocation");
    EXPECT_EQ(FailedStepOf(kSealSignerNotListed), "signer not in the seal");
    EXPECT_EQ(FailedStepOf(kSealMakerNotTrusted), "seal");
    EXPECT_EQ(FailedStepOf(kSealPictureUnusable), "picture");
    EXPECT_EQ(FailedStepOf(kSealTimeStampForeign), "time stamp");
    EXPECT_EQ(FailedStepOf(kServiceTimeStampUntrusted), "time stamp");
    EXPECT_EQ(FailedStepOf(TESMARK_SERVICE_NOT_FOUND), "component");
}

TEST(SignatureVerdictTest, NothingLookedAtIsNotGood) {
    SignatureVerdict verdict;
    EXPECT_FALSE(verdict.Good());
    verdict.steps.push_back({"signature", true, "", 0, ""});
    EXPECT_TRUE(verdict.Good());
    verdict.steps.push_back({"certificate", false, "chain", TESMARK_NOT_TRUSTED, "x"});
    EXPECT_FALSE(verdict.Good());
}

}  // namespace
