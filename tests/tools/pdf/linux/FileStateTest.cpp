#include "pdf/FileState.h"

#include <filesystem>

#include "tools/pdf/PdfFixture.h"

namespace {

class FileStateOnLinux : public PdfFixture {};

TEST_F(FileStateOnLinux, ASymbolicLinkLeadsToItsFile) {
    WriteFile(Path("a"), "content");
    std::filesystem::create_symlink(Path("a"), Path("soft"));
    FileState file;
    FileState link;
    ASSERT_TRUE(ReadFileState(Path("a"), file) && ReadFileState(Path("soft"), link));
    EXPECT_TRUE(link == file);
}

}  // namespace
