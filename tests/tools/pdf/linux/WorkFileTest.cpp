#include "pdf/WorkFile.h"

#include "tools/pdf/PdfFixture.h"
#include "tools/pdf/linux/FileSizeLimit.h"

namespace {

class WorkFileOnLinux : public PdfFixture {};

TEST_F(WorkFileOnLinux, AnInputThatIsShorterThanItSaysIsNoticed) {
    // Files of /sys tell a size of a page, and the kernel doesn't copy them by itself.
    const std::string input = "/sys/kernel/mm/transparent_hugepage/enabled";
    const std::string text = ReadFile(input);
    if (text.empty()) GTEST_SKIP() << "no such file in this system";
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    EXPECT_FALSE(file.CopyFrom(input, 4'096));
}

TEST_F(WorkFileOnLinux, ADiskThatIsFullIsToldAndNothingStaysBehind) {
    WriteFile(Path("in"), std::string(200'000, 'x'));
    {
        CWorkFile file(Path("out"));
        ASSERT_TRUE(file.Create());
        const FileSizeLimit limit(100'000);
        EXPECT_TRUE(file.WriteAt(0, "fits"));
        EXPECT_FALSE(file.WriteAt(4, std::string(200'000, 'y')));
        EXPECT_NE(file.Problem().find("can't be written"), std::string::npos);
        EXPECT_FALSE(file.CopyFrom(Path("in"), 200'000));
    }
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in"}));
}

TEST_F(WorkFileOnLinux, AStampThatRunsOutOfDiskBeforeOrAfterTheSignatureLeavesTheOldOutput) {
    const auto request = RequestFor(SimplePdf());
    WriteFile(request.outputPath, "old");
    const auto size = ReadFile(request.inputPath).size();
    for (const std::size_t room : {size / 2, size + 100, size + 6'000}) {
        StampResult result;
        {
            const FileSizeLimit limit(room);
            result = StampPdf(request, [](const SignedRanges&, std::string& contents) {
                contents = "x";
                return 0;
            });
        }
        EXPECT_EQ(result.error, StampError::kOutputUnwritable) << room;
        EXPECT_EQ(ReadFile(request.outputPath), "old");
        EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf", "out.pdf"}));
    }
}

}  // namespace
