// The debugging copy of a time-stamp request.
#include "SignTimeStampTest.h"
#include "foundation/Text.h"
#include "platform/Files.h"

using testing::ElementsAre;
using testing::StartsWith;

namespace {

class RequestCopyTest : public SignTimeStampTest {
protected:
    int Write(const std::string& data, const char* fileName = "other.dat") {
        return m_appOpt.WriteContent2File(fileName, AsBytes(data), AsLength(data));
    }
    static std::string Pattern(std::size_t size) {
        std::string data;
        for (std::size_t i = 0; i < size; ++i) data += static_cast<char>(i * 11);
        return data;
    }
};

TEST_F(RequestCopyTest, TheContentIsWrittenAndItsLengthLogged) {
    EXPECT_EQ(Write("content"), 0);
    EXPECT_EQ(ReadFileToString(g_copyPath), "content");
    EXPECT_THAT(Log(), ElementsAre("8 [WriteContent2File]:filename," + g_copyPath + ";outputlen,7",
                                   "8 [WriteContent2File]: ok"));
    EXPECT_TRUE(fakes::Calls().empty());
}

TEST_F(RequestCopyTest, TheNameOfTheFilePlaysNoPart) {
    const std::string other = m_prefix.Below("other");
    for (const char* const name : {other.c_str(), "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(Write("content", name), 0);
        EXPECT_EQ(ReadFileToString(g_copyPath), "content");
    }
    EXPECT_FALSE(platform::PathExists(other.c_str()));
}

TEST_F(RequestCopyTest, AnyNumberOfBytesComesOutAsItIsLineEndsToo) {
    for (const std::size_t size : {1u, 1023u, 1024u, 1025u, 2048u, 5000u}) {
        EXPECT_EQ(Write(Pattern(size)), 0);
        EXPECT_EQ(ReadFileToString(g_copyPath), Pattern(size)) << size;
    }
    EXPECT_EQ(Write("a\nb\r\n\x1A\n"), 0);
    EXPECT_EQ(ReadFileToString(g_copyPath), "a\nb\r\n\x1A\n");
}

TEST_F(RequestCopyTest, TheFormerCopyIsReplaced) {
    EXPECT_EQ(Write("a longer content"), 0);
    EXPECT_EQ(Write("content"), 0);
    EXPECT_EQ(ReadFileToString(g_copyPath), "content");
}

TEST_F(RequestCopyTest, NothingToWriteLeavesAnEmptyFile) {
    for (const int length : {0, -1}) {
        EXPECT_EQ(Write("content"), 0);
        EXPECT_EQ(m_appOpt.WriteContent2File("", nullptr, length), 0);
        EXPECT_TRUE(platform::PathExists(g_copyPath.c_str()));
        EXPECT_EQ(ReadFileToString(g_copyPath), "");
    }
}

TEST_F(RequestCopyTest, AFolderThatIsNotThereIsNotMade) {
    g_copyPath = m_prefix.Below("none/req.dat");
    EXPECT_EQ(Write("content"), TESMARK_COPY_NOT_OPENED);
    EXPECT_FALSE(platform::PathExists(m_prefix.Below("none").c_str()));
    EXPECT_THAT(Log(), ElementsAre("8 [WriteContent2File]:filename," + g_copyPath + ";outputlen,7",
                                   StartsWith("3 [WriteContent2File]:fopen error:")));
}

TEST_F(RequestCopyTest, APlaceThatIsAFolderIsNotOpened) {
    ASSERT_TRUE(platform::CreateDirectoryAt(g_copyPath.c_str()));
    EXPECT_EQ(Write("content"), TESMARK_COPY_NOT_OPENED);
}

}  // namespace
