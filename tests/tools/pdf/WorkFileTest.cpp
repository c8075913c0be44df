#include "pdf/WorkFile.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tools/pdf/PdfFixture.h"

namespace {

class WorkFileTest : public PdfFixture {};

TEST_F(WorkFileTest, NothingOfItIsLeftUnlessItBecomesTheOutput) {
    {
        CWorkFile file(Path("out"));
        ASSERT_TRUE(file.Create());
        ASSERT_TRUE(file.WriteAt(0, "half"));
        EXPECT_EQ(Listing().size(), 1u);
        EXPECT_TRUE(file.Path().starts_with(Path("out.")));
    }
    EXPECT_TRUE(Listing().empty());
}

TEST_F(WorkFileTest, WritingReplacesWhatIsThereAndContinuesBehindTheEnd) {
    WriteFile(Path("in"), "0123456789");
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create() && file.CopyFrom(Path("in"), 10));
    ASSERT_TRUE(file.WriteAt(10, "abc"));
    file.BeginWriting();
    ASSERT_TRUE(file.WriteAt(11, "BCDE") && file.WriteAt(15, "f"));
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

TEST_F(WorkFileTest, TheOutputMustBeAFileInAFolderThatIsThere) {
    for (const std::string& path : {m_folder, Path("a/b"), DevicePath()}) {
        CWorkFile file(path);
        EXPECT_FALSE(file.Create()) << path;
        EXPECT_FALSE(file.Problem().empty());
    }
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
    // Nothing but a hole and its end.
    const std::string input = PathOfOtherBlocks(m_folder);
    constexpr std::uint64_t kSize = std::uint64_t{8} << 30;
    std::ofstream(input, std::ios::binary).seekp(kSize - 1).put('.');
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

}  // namespace
