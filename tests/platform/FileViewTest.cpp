// A file's bytes as memory.
#include "platform/FileView.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"

namespace {

class FileViewTest : public testing::Test {
protected:
    std::string Written(const std::string& bytes) const {
        const std::string path = m_folder.Below("file");
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    static std::string Read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static std::string_view Seen(const platform::FileView& view) {
        return {view.Bytes(), view.Size()};
    }

    TemporaryFolder m_folder;
};

TEST_F(FileViewTest, ItShowsEveryByteOfTheFile) {
    std::string bytes(70'001, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
    const platform::FileView view(Written(bytes).c_str());
    ASSERT_TRUE(view.IsOpen());
    EXPECT_TRUE(Seen(view) == bytes);
}

TEST_F(FileViewTest, WhatIsWrittenIntoItStaysInIt) {
    const std::string path = Written("as it was");
    {
        const platform::FileView view(path.c_str());
        ASSERT_EQ(view.Size(), 9u);
        view.Bytes()[0] = 'A';
        EXPECT_EQ(Seen(view), "As it was");
        EXPECT_EQ(Seen(platform::FileView(path.c_str())), "as it was");
    }
    EXPECT_EQ(Read(path), "as it was");
}

TEST_F(FileViewTest, AnEmptyFileIsOpenWithoutBytes) {
    const platform::FileView view(Written("").c_str());
    EXPECT_TRUE(view.IsOpen());
    EXPECT_EQ(view.Size(), 0u);
}

TEST_F(FileViewTest, AFolderOrNothingAtAllIsNotOpen) {
    const platform::FileView folder(m_folder.Path().c_str());
    EXPECT_FALSE(folder.IsOpen());
    EXPECT_EQ(folder.Size(), 0u);
    const platform::FileView missing(m_folder.Below("missing").c_str());
    EXPECT_FALSE(missing.IsOpen());
    EXPECT_EQ(missing.Bytes(), nullptr);
}

}  // namespace
