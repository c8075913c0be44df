#include "pdf/WorkFile.h"

#include <atomic>
#include <filesystem>
#include <thread>

#include "tools/pdf/FileSizeLimit.h"
#include "tools/pdf/PdfFixture.h"

namespace {

class WorkFileTest : public PdfFixture {};

TEST_F(WorkFileTest, NothingOfItIsLeftUnlessItBecomesTheOutput) {
    {
        CWorkFile file(Path("out"));
        ASSERT_TRUE(file.Create());
        ASSERT_TRUE(file.Append("half"));
        EXPECT_EQ(Listing().size(), 1u);
        EXPECT_TRUE(file.Path().starts_with(Path("out.")));
    }
    EXPECT_TRUE(Listing().empty());
}

TEST_F(WorkFileTest, AppendingContinuesBehindTheCopyAndWritingAtAPlaceReplaces) {
    WriteFile(Path("in"), "0123456789");
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create() && file.CopyFrom(Path("in"), 10));
    ASSERT_TRUE(file.Append("abc"));
    file.BeginWriting();
    ASSERT_TRUE(file.WriteAt(11, "BCDE") && file.Append("f"));
    std::string bytes;
    ASSERT_TRUE(file.ReadAll(bytes));
    EXPECT_EQ(bytes, "0123456789aBCDEf");
    ASSERT_TRUE(file.BecomeOutput());
    EXPECT_EQ(ReadFile(Path("out")), bytes);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in", "out"}));
}

TEST_F(WorkFileTest, AnInputWhoseSizeHasChangedIsRefused) {
    WriteFile(Path("in"), "0123456789");
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    EXPECT_FALSE(file.CopyFrom(Path("in"), 9));
    EXPECT_FALSE(file.CopyFrom(Path("in"), 11));
    EXPECT_FALSE(file.CopyFrom(Path("none"), 10));
    EXPECT_NE(file.Problem().find("can't get the input"), std::string::npos);
}

TEST_F(WorkFileTest, AnInputThatIsShorterThanItSaysIsNoticed) {
    // Files of /sys tell a size of a page, and the kernel doesn't copy them by itself.
    const std::string input = "/sys/kernel/mm/transparent_hugepage/enabled";
    const std::string text = ReadFile(input);
    if (text.empty()) GTEST_SKIP() << "no such file in this system";
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    EXPECT_FALSE(file.CopyFrom(input, 4'096));
}

TEST_F(WorkFileTest, TheOutputMustBeAFileInAFolderThatIsThere) {
    for (const std::string& path : {m_folder, Path("a/b"), std::string("/dev/null")}) {
        CWorkFile file(path);
        EXPECT_FALSE(file.Create()) << path;
        EXPECT_FALSE(file.Problem().empty());
    }
}

TEST_F(WorkFileTest, ADiskThatIsFullIsToldAndNothingStaysBehind) {
    WriteFile(Path("in"), std::string(200'000, 'x'));
    {
        CWorkFile file(Path("out"));
        ASSERT_TRUE(file.Create());
        const FileSizeLimit limit(100'000);
        EXPECT_TRUE(file.Append("fits"));
        EXPECT_FALSE(file.Append(std::string(200'000, 'y')));
        EXPECT_NE(file.Problem().find("can't be written"), std::string::npos);
        EXPECT_FALSE(file.CopyFrom(Path("in"), 200'000));
    }
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in"}));
}

TEST_F(WorkFileTest, ACopyThatWasStoppedBeforeItBeganIsNotMade) {
    WriteFile(Path("in"), "0123456789");
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    file.Stop();
    EXPECT_FALSE(file.CopyFrom(Path("in"), 10));
    EXPECT_EQ(std::filesystem::file_size(file.Path()), 0u);
}

TEST_F(WorkFileTest, ACopyUnderWayIsGivenUpWhenItIsStopped) {
    // On another file system, so that no blocks can be shared; nothing but a hole.
    const std::string input = "/dev/shm/" + std::filesystem::path(m_folder).filename().string();
    constexpr std::uint64_t kSize = std::uint64_t{8} << 30;
    WriteFile(input, "");
    std::filesystem::resize_file(input, kSize);
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    std::atomic<bool> ended = false;
    bool copied = true;
    std::thread thread([&] {
        copied = file.CopyFrom(input, kSize);
        ended = true;
    });
    while (!ended && std::filesystem::file_size(file.Path()) == 0) std::this_thread::yield();
    file.Stop();
    thread.join();
    EXPECT_FALSE(copied);
    EXPECT_LT(std::filesystem::file_size(file.Path()), kSize);
    std::filesystem::remove(input);
}

TEST_F(WorkFileTest, AStampThatRunsOutOfDiskBeforeOrAfterTheSignatureLeavesTheOldOutput) {
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
