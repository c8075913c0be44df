// What a PDF signature is called, by the mode and the seal.

#include "commands/StampSubFilter.h"

#include <gtest/gtest.h>

#include "Failure.h"
#include "Library.h"
#include "tests/components/seallibrary/TestPki.h"

namespace {

constexpr int kPkcs7Mode = 0;
constexpr int kGmMode = 1;
constexpr int kGbMode = 2;

std::string SubFilter(int mode, std::string_view seal) { return SubFilterOf(mode, seal).subFilter; }

std::string SealOf(SealForm form) {
    const TestIdentity signer = MakeIdentity(KeyKind::kSm2);
    return MakeTestSeal(UsualOrder(form, signer), MakeIdentity(KeyKind::kSm2));
}

TEST(StampSubFilterTest, TheModeOfGmNamesTheFormOfTheSealItself) {
    EXPECT_EQ(SubFilter(kGmMode, SealOf(SealForm::kGm2014)), "GMT0031.SESeal");
    EXPECT_EQ(SubFilter(kGmMode, SealOf(SealForm::kGb2020)), "GBT38540.SESeal");
    EXPECT_EQ(SubFilter(kGmMode, SealOf(SealForm::kGm2025)), "GMT0031.SESeal");
}

TEST(StampSubFilterTest, TheOtherModesTellItThemselves) {
    EXPECT_EQ(SubFilter(kGbMode, ""), "GBT38540.SESeal");
    EXPECT_EQ(SubFilter(kPkcs7Mode, ""), "adbe.pkcs7.detached");
}

TEST(StampSubFilterTest, ASealThatIsCutOffAnywhereIsNotTakenForOneOfGb) {
    const std::string seal = SealOf(SealForm::kGb2020);
    for (std::size_t length = 0; length < seal.size(); ++length) {
        EXPECT_EQ(SubFilter(kGmMode, std::string_view(seal).substr(0, length)), "GMT0031.SESeal")
            << length;
    }
}

TEST(StampSubFilterTest, ThereIsRoomForTheSealInASealSignatureAlone) {
    const std::string seal(1000, 'x');
    const auto room = [](int mode, std::string_view file) {
        return ContentsSizeFor(mode, file, false);
    };
    EXPECT_EQ(room(kGmMode, seal), room(kGmMode, "") + 1000);
    EXPECT_EQ(room(kGbMode, seal), room(kGmMode, seal));
    EXPECT_EQ(room(kPkcs7Mode, seal), room(kPkcs7Mode, ""));
}

TEST(StampSubFilterTest, ATimeStampGetsRoomOfItsOwn) {
    EXPECT_GT(ContentsSizeFor(kPkcs7Mode, "", true), 3 * ContentsSizeFor(kPkcs7Mode, "", false));
}

TEST(SelectedSealFileTest, ASealThatTheLibraryDoesNotGiveOutIsAFailure) {
    try {
        SelectedSealFile();
        FAIL() << "nothing is selected";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.exitCode, ExitCode::kFailed);
        EXPECT_NE(failure.sentence, "");
    }
}

}  // namespace
