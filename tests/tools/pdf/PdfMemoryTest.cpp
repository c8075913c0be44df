#include <malloc.h>

#include <filesystem>

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfMemoryTest : public PdfFixture {
protected:
    // A PDF with a stream of that many bytes, most of them a hole of the file system's.
    StampRequest RequestForLarge(std::size_t size) const {
        std::string head =
            "%PDF-1.7\n6 0 obj\n<< /Length " + std::to_string(size) + " >>\nstream\n";
        const std::size_t body = head.size() + size;
        std::string tail = "\nendstream\nendobj\n";
        std::string table = "xref\n0 7\n0000000000 65535 f\r\n";
        const std::vector<std::string> bodies = {
            "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>", "null", "null"};
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            char line[32];
            std::snprintf(line, sizeof line, "%010zu 00000 n\r\n", body + tail.size());
            table += line;
            tail += std::to_string(i + 1) + " 0 obj\n" + bodies[i] + "\nendobj\n";
        }
        table += "0000000009 00000 n\r\n";
        const std::string xref = std::to_string(body + tail.size());
        tail += table + "trailer\n<< /Size 7 /Root 1 0 R >>\nstartxref\n" + xref + "\n%%EOF\n";
        WriteFile(Path("in.pdf"), head);
        std::filesystem::resize_file(Path("in.pdf"), body);
        WriteFile(Path("tail"), tail);
        RunCommand("cat " + Path("tail") + " >> " + Path("in.pdf"));
        return RequestForFile(Path("in.pdf"));
    }
};

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
