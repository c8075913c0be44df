#include <cerrno>
#include <filesystem>

#include "SignTimeStampTest.h"

using testing::ElementsAre;

namespace {

class RequestCopyOnLinux : public SignTimeStampTest {
protected:
    // A disk that is full, at the place of the copy.
    RequestCopyOnLinux() { std::filesystem::create_symlink("/dev/full", g_copyPath); }

    int Write(std::size_t size) {
        const std::string data(size, 'x');
        return m_appOpt.WriteContent2File("", AsBytes(data), AsLength(data));
    }
};

TEST_F(RequestCopyOnLinux, AFullDiskFailsTheWriteOfALargeContent) {
    EXPECT_EQ(Write(100'000), TESMARK_COPY_NOT_WRITTEN);
    EXPECT_THAT(Errors(), ElementsAre("[WriteContent2File]:fwrite data len:0"));
}

TEST_F(RequestCopyOnLinux, AFullDiskFailsTheCloseOfASmallContent) {
    EXPECT_EQ(Write(512), TESMARK_COPY_NOT_CLOSED);
    EXPECT_THAT(Errors(), ElementsAre("[WriteContent2File]:fclose file"));
}

TEST_F(RequestCopyOnLinux, AFullDiskLosesTheCopyAndNotTheStamp) {
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(m_out.Bytes(), "stamped");
    EXPECT_THAT(Errors(), ElementsAre("[WriteContent2File]:fclose file"));
}

TEST_F(RequestCopyOnLinux, AFailedOpenIsLoggedWithTheSystemsNumber) {
    g_copyPath = m_prefix.Below("none/req.dat");
    EXPECT_EQ(Write(1), TESMARK_COPY_NOT_OPENED);
    EXPECT_THAT(Errors(), ElementsAre("[WriteContent2File]:fopen error:" + std::to_string(ENOENT)));
}

}  // namespace
