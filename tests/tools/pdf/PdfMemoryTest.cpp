#include "tools/pdf/PdfFixture.h"

namespace {

class PdfMemoryTest : public PdfFixture {};

TEST_F(PdfMemoryTest, ALargeFileIsSignedByItsPathAndValid) {
    const auto request = RequestForLarge(kSignedDataInMemory);
    bool byPath = false;
    const auto result = StampPdf(request, [&](const SignedRanges& ranges, std::string& contents) {
        byPath = !ranges.path.empty() && ranges.data.empty();
        return SignByCms(ranges, contents);
    });
    ASSERT_EQ(result.error, StampError::kNone) << result.message;
    EXPECT_TRUE(byPath);
    ExpectSound(request);
}

TEST_F(PdfMemoryTest, TheFileForTheSignerHoldsTheSignedRangesAlone) {
    const auto request = RequestForLarge(kSignedDataInMemory);
    std::string seen;
    const auto result = StampPdf(request, [&](const SignedRanges& ranges, std::string& contents) {
        seen = ReadFile(ranges.path);
        contents = "x";
        return 0;
    });
    ASSERT_EQ(result.error, StampError::kNone) << result.message;
    EXPECT_TRUE(seen == WithoutContents(ReadFile(request.outputPath)));
}

}  // namespace
