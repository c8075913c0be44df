#include <malloc.h>

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfMemoryOnLinux : public PdfFixture {};

// Peak of what this process had resident since the peak was last reset, in KiB.
long PeakMemory() {
    const std::string status = ReadFile("/proc/self/status");
    return std::stol(status.substr(status.find("VmHWM:") + 6));
}

void ResetPeak() {
    malloc_trim(0);
    WriteFile("/proc/self/clear_refs", "5");
}

TEST_F(PdfMemoryOnLinux, AHundredMegabytesTakeNoMoreMemoryThanOne) {
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
