#include "pdf/WorkFile.h"

#include <windows.h>

#include "tools/pdf/PdfFixture.h"

namespace {

class WorkFileOnWindows : public PdfFixture {};

TEST_F(WorkFileOnWindows, AnOutputThatIsReadOnlyIsRefusedAndStays) {
    WriteFile(Path("out"), "old");
    SetFileAttributesA(Path("out").c_str(), FILE_ATTRIBUTE_READONLY);
    {
        CWorkFile file(Path("out"));
        EXPECT_FALSE(file.Create());
        EXPECT_NE(file.Problem().find("can't be written"), std::string::npos) << file.Problem();
    }
    EXPECT_EQ(ReadFile(Path("out")), "old");
    SetFileAttributesA(Path("out").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WorkFileOnWindows, AnOutputThatAnotherProgramHoldsIsNotReplacedAndNothingStaysBehind) {
    WriteFile(Path("out"), "old");
    {
        CWorkFile file(Path("out"));
        ASSERT_TRUE(file.Create());
        ASSERT_TRUE(file.WriteAt(0, "new"));
        const HANDLE held = CreateFileA(Path("out").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(held, INVALID_HANDLE_VALUE);
        EXPECT_FALSE(file.BecomeOutput());
        EXPECT_NE(file.Problem().find("can't be replaced"), std::string::npos) << file.Problem();
        CloseHandle(held);
    }
    EXPECT_EQ(ReadFile(Path("out")), "old");
    EXPECT_EQ(Listing(), std::vector<std::string>{"out"});
}

TEST_F(WorkFileOnWindows, WhileItIsMadeOthersMayReadTheFileButNotWriteIt) {
    CWorkFile file(Path("out"));
    ASSERT_TRUE(file.Create());
    ASSERT_TRUE(file.WriteAt(0, "half"));
    EXPECT_EQ(ReadFile(file.Path()), "half");
    const HANDLE writer =
        CreateFileA(file.Path().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(writer, INVALID_HANDLE_VALUE);
    if (writer != INVALID_HANDLE_VALUE) CloseHandle(writer);
}

}  // namespace
