#include "SessionTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WatermarkTest : public SessionTest {
protected:
    WatermarkTest() { fakes::On("AddWatermarkOnEseal").Gives("marked"); }

    int Mark(unsigned char* out) {
        return SetWatermarkOnEseal(reinterpret_cast<const unsigned char*>("plain"), 5, out,
                                   &m_length);
    }

    int m_length = -7;
};

TEST_F(WatermarkTest, ANullBufferAsksTheLibraryForTheSizeBetweenItsStartAndItsEnd) {
    EXPECT_EQ(Mark(nullptr), 0);
    EXPECT_EQ(m_length, 6);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("MR_Init()", "AddWatermarkOnEseal(5 \"plain\", size?)", "MR_Release()"));
    EXPECT_THAT(Log(), IsEmpty());
}

// Whatever the host says: the library is told none.
TEST_F(WatermarkTest, ABufferComesWithACapacityOfZero) {
    fakes::On("AddWatermarkOnEseal").Gives("").ReportsSize(6);
    unsigned char out[8] = {};
    m_length = 8;
    EXPECT_EQ(Mark(out), 0);
    EXPECT_EQ(m_length, 6);
    EXPECT_THAT(fakes::CallTexts("AddWatermarkOnEseal"),
                ElementsAre("AddWatermarkOnEseal(5 \"plain\", out[0])"));
}

TEST_F(WatermarkTest, ANegativeResultLeavesTheLengthAndEndsTheLibraryAllTheSame) {
    fakes::On("AddWatermarkOnEseal").Returns(-3);
    EXPECT_EQ(Mark(nullptr), -3);
    EXPECT_EQ(m_length, -7);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("MR_Init", "AddWatermarkOnEseal", "MR_Release"));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(WatermarkTest, APositiveResultIsReturnedWithTheLength) {
    fakes::On("AddWatermarkOnEseal").Returns(5);
    EXPECT_EQ(Mark(nullptr), 5);
    EXPECT_EQ(m_length, 0);
}

TEST_F(WatermarkTest, AStartAndAnEndThatFailDoNotCount) {
    fakes::On("MR_Init").Returns(77);
    fakes::On("MR_Release").Returns(78);
    EXPECT_EQ(Mark(nullptr), 0);
    EXPECT_EQ(m_length, 6);
}

TEST_F(WatermarkTest, ThePictureGoesToTheLibraryAsTheHostGivesIt) {
    EXPECT_EQ(SetWatermarkOnEseal(nullptr, -4, nullptr, &m_length), 0);
    EXPECT_THAT(fakes::CallTexts("AddWatermarkOnEseal"),
                ElementsAre("AddWatermarkOnEseal(-4 null, size?)"));
}

}  // namespace
