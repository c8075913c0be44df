#include "pdf/FileState.h"

#include <filesystem>

#include "tools/pdf/PdfFixture.h"

namespace {

namespace fs = std::filesystem;

class FileStateTest : public PdfFixture {
protected:
    FileState StateOf(const std::string& name) const {
        FileState state;
        EXPECT_TRUE(ReadFileState(Path(name), state)) << name;
        return state;
    }
};

TEST_F(FileStateTest, AFileThatNobodyTouchesStaysEqual) {
    WriteFile(Path("a"), "content");
    EXPECT_EQ(StateOf("a").size, 7u);
    EXPECT_TRUE(StateOf("a") == StateOf("a"));
    ReadFile(Path("a"));
    EXPECT_TRUE(StateOf("a") == StateOf("a"));
}

TEST_F(FileStateTest, AnotherSizeOrAnotherTimeOfWritingIsAnotherState) {
    WriteFile(Path("a"), "content");
    const FileState before = StateOf("a");
    fs::resize_file(Path("a"), 6);
    EXPECT_FALSE(StateOf("a") == before);
    EXPECT_TRUE(StateOf("a").IsSameFile(before));
    WriteFile(Path("a"), "CONTENT");
    fs::last_write_time(Path("a"), fs::last_write_time(Path("a")) + std::chrono::seconds(1));
    EXPECT_EQ(StateOf("a").size, before.size);
    EXPECT_FALSE(StateOf("a") == before);
}

TEST_F(FileStateTest, AFileThatTookTheNameIsAnotherOneThoughItLooksTheSame) {
    WriteFile(Path("a"), "content");
    WriteFile(Path("b"), "CONTENT");
    // To whole seconds, where that is all that can be set.
    fs::last_write_time(Path("a"), fs::last_write_time(Path("a")));
    fs::last_write_time(Path("b"), fs::last_write_time(Path("a")));
    const FileState before = StateOf("a");
    fs::rename(Path("b"), Path("a"));
    EXPECT_EQ(StateOf("a").written, before.written);
    EXPECT_FALSE(StateOf("a") == before);
    EXPECT_FALSE(StateOf("a").IsSameFile(before));
}

TEST_F(FileStateTest, TwoNamesOfAFileLeadToIt) {
    WriteFile(Path("a"), "content");
    fs::create_hard_link(Path("a"), Path("hard"));
    EXPECT_TRUE(StateOf("hard").IsSameFile(StateOf("a")));
}

TEST_F(FileStateTest, WhatIsNotThereHasNone) {
    FileState state;
    EXPECT_FALSE(ReadFileState(Path("none"), state));
}

}  // namespace
