#include <malloc.h>

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfMemoryTest : public PdfFixture {};

// Peak of what this process had resident since the peak was last reset, in KiB.
long PeakMemory() {
    const std::string status = ReadFile("/proc/self/status");
    return std::stol(status.substr(status.find("VmHWM:") + 6));
}

void ResetPeak() {
    malloc_trim(0);
    WriteFile("/proc/self/clear_refs", "5");
}

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
    std::string output = ReadFile(request.outputPath);
    const auto hole = output.find("/Contents <") + 10;
    output.erase(hole, output.find('>', hole) + 1 - hole);
    EXPECT_TRUE(seen == output);
}

TEST_F(PdfMemoryTest, AHundredMegabytesTakeNoMoreMemoryThanOne) {
    const auto peakFor = [&](std::size_t size) {
        const auto request = RequestForLarge(size);
        ResetPeak();
        const auto result = StampPdf(request, [](const SignedRanges&, std::string& contents) {
            contents = "x";
            return 0;
        });
        EXPECT_EQ(result.error, StampError::kNone) << result.message;
        return PeakMemory();
    };
    peakFor(1'000);
    const long small = peakFor(9'000'000);
    const long large = peakFor(100'000'000);
    EXPECT_LT(large - small, 4 * 1'024);
}

}  // namespace
