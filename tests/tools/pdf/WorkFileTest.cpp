#include "pdf/WorkFile.h"

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
    ASSERT_TRUE(file.Append("abc") && file.WriteAt(11, "BCDE") && file.Append("f"));
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

TEST_F(WorkFileTest, AnInputThatTheKernelCannotCopyItselfIsReadPieceByPiece) {
    // Files of /proc tell a size of 0 or refuse the kernel's copy; one of /sys tells a page.
    const std::string input = "/sys/kernel/mm/transparent_hugepage/enabled";
    const std::string text = ReadFile(input);
    if (text.empty()) GTEST_SKIP() << "no such file in this system";
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    // It is shorter than it says: the copy must notice.
    EXPECT_FALSE(file.CopyFrom(input, 4'096));
}

TEST_F(WorkFileTest, TheOutputMustBeAFileInAFolderThatIsThere) {
    for (const std::string& path : {m_folder, Path("a/b"), std::string("/dev/null")}) {
        CWorkFile file(path);
        EXPECT_FALSE(file.Create()) << path;
        EXPECT_FALSE(file.Problem().empty());
    }
}

TEST_F(WorkFileTest, ADiskThatIsFullIsTold) {
    if (RunCommand("test -w /dev/full && echo yes") != "yes\n") GTEST_SKIP() << "no /dev/full";
    // A limit on the size of files stands for a full disk.
    const std::string command = "bash -c 'trap \"\" XFSZ; ulimit -f 1; head -c 4096 /dev/zero > " +
                                Path("probe") + "; echo $?'";
    EXPECT_NE(RunCommand(command), "0\n");
}

}  // namespace
