#include <gmock/gmock.h>

#include <cstdlib>

#include "fakes/LibraryTest.h"
#include "seal/SealReaders.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class OnlineReadersTest : public LibraryTest {
protected:
    CBuffer m_picture;
    int m_width = 0;
    int m_height = 0;
};

TEST_F(OnlineReadersTest, AnOldSealGivesItsPictureWithAZeroByteBehindIt) {
    EXPECT_EQ(ReadSealPicEs(fakes::EsSeal("picture"), m_picture), 0);
    EXPECT_EQ(m_picture.View(), "picture");
    EXPECT_EQ(m_picture.Data()[7], 0);
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(OnlineReadersTest, ASealWithoutTheMagicIsRefusedWithACodeOfItsOwn) {
    EXPECT_EQ(ReadSealPicEs("a national seal", m_picture), TESMARK_NOT_AN_ES_FILE);
    EXPECT_EQ(ReadSealPicEs("", m_picture), TESMARK_NOT_AN_ES_FILE);
    EXPECT_FALSE(m_picture);
}

TEST_F(OnlineReadersTest, AnOldSealThatEndsTooEarlyIsRefused) {
    const std::string file = fakes::EsSeal("picture");
    EXPECT_EQ(ReadSealPicEs(file.substr(0, 100), m_picture), TESMARK_NOT_AN_ES_FILE);
    EXPECT_EQ(ReadSealPicEs(file.substr(0, file.size() - 1), m_picture), TESMARK_NOT_AN_ES_FILE);
}

TEST_F(OnlineReadersTest, AnyOtherSealGivesPictureAndSize) {
    fakes::AddNationalSeal("seal", "name", "picture");
    EXPECT_EQ(ReadSealPicV3("seal", m_picture, &m_width, &m_height), 0);
    EXPECT_EQ(m_picture.View(), "picture");
    EXPECT_EQ(m_picture.Data()[7], 0);
    EXPECT_EQ(m_width, 40);
    EXPECT_EQ(m_height, 40);
    EXPECT_THAT(Log(), ElementsAre("7 read V3 pic success"));
    EXPECT_EQ(fakes::CountCalls("TVK_Get_Pic_From_Eseal_Ex"), 2);
}

TEST_F(OnlineReadersTest, ASealThatTheLibraryRefusesGivesItsCode) {
    EXPECT_EQ(ReadSealPicV3("seal", m_picture, &m_width, &m_height), fakes::kUnknownSeal);
    EXPECT_THAT(Errors(),
                ElementsAre("TVK_Get_Pic_From_Eseal error:" + std::to_string(fakes::kUnknownSeal)));
    EXPECT_FALSE(m_picture);
}

TEST_F(OnlineReadersTest, AFailedReadingGivesItsCode) {
    fakes::AddNationalSeal("seal", "name", "picture");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(2, 8);
    EXPECT_EQ(ReadSealPicV3("seal", m_picture, &m_width, &m_height), 8);
    EXPECT_THAT(Log(), ElementsAre("3 TVK_Get_Pic_From_Eseal error:8"));
    EXPECT_FALSE(m_picture);
}

TEST_F(OnlineReadersTest, APictureAsTextIsATerminatedBlockOfTheCHeap) {
    char* base64 = nullptr;
    EXPECT_EQ(GetSealPicBase64(reinterpret_cast<const unsigned char*>("abc"), 3, &base64), 0);
    EXPECT_STREQ(base64, "YWJj");
    std::free(base64);
    EXPECT_EQ(GetSealPicBase64(nullptr, 0, &base64), 0);
    EXPECT_STREQ(base64, "");
    std::free(base64);
}

}  // namespace
