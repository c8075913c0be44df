#include <gmock/gmock.h>

#include "fakes/LibraryTest.h"
#include "seal/EsealBase.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

class EsealReadersTest : public LibraryTest {
protected:
    static int Length(CEsealBase& seal) {
        int length = -7;
        EXPECT_EQ(seal.PraseEseal(nullptr, &length), 0);
        return length;
    }
    static std::string Picture(CEsealBase& seal) {
        int length = Length(seal);
        std::string picture(static_cast<std::size_t>(length), '?');
        const int code = seal.PraseEseal(reinterpret_cast<unsigned char*>(picture.data()), &length);
        return code == 0 ? picture : "failed";
    }
    const std::string m_seal = "national seal";
    CEsealGB m_gb{Bytes(m_seal), static_cast<int>(m_seal.size())};
    CEsealGM m_gm{Bytes(m_seal), static_cast<int>(m_seal.size())};
};

// PraseEseal of the base class itself, which only derived readers reach.
struct Bare : CEsealBase {
    Bare() : CEsealBase(Bytes("any"), 3) {}
};

TEST_F(EsealReadersTest, TheBaseReadsNothingAndSucceeds) {
    Bare bare;
    int length = -7;
    EXPECT_EQ(bare.PraseEseal(nullptr, &length), 0);
    EXPECT_EQ(length, -7);
    EXPECT_EQ(bare.m_sealData, "any");
    EXPECT_EQ(bare.m_sealName, "");
    EXPECT_EQ(bare.m_picWidth, -1);
    EXPECT_EQ(bare.m_picHeight, -1);
}

TEST_F(EsealReadersTest, AnOldFileGivesPictureAndNameAndNoSize) {
    const std::string file = fakes::EsSeal("picture", "name");
    CEsealDefalult seal(Bytes(file), static_cast<int>(file.size()));
    EXPECT_EQ(Picture(seal), "picture");
    EXPECT_EQ(seal.m_sealName, "name");
    EXPECT_EQ(seal.m_picWidth, -1);
    EXPECT_EQ(seal.m_picHeight, -1);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EsealReadersTest, AFileThatIsNoOldOneIsRefusedWithoutAWord) {
    CEsealDefalult seal(Bytes("SE"), 2);
    int length = -7;
    EXPECT_EQ(seal.PraseEseal(nullptr, &length), TESMARK_SEAL_FORMAT);
    EXPECT_EQ(length, -7);
    EXPECT_EQ(seal.m_sealName, "");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EsealReadersTest, APictureLargerThanTheBufferIsNotCopied) {
    const std::string file = fakes::EsSeal("picture");
    CEsealDefalult seal(Bytes(file), static_cast<int>(file.size()));
    unsigned char buffer[8] = "xxxxxxx";
    int length = 6;
    EXPECT_EQ(seal.PraseEseal(buffer, &length), 0);
    EXPECT_EQ(length, 6);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "xxxxxxx");
}

TEST_F(EsealReadersTest, ANationalSealGivesNamePictureAndSize) {
    fakes::AddNationalSeal(m_seal, "name", "picture").height = 30;
    EXPECT_EQ(Picture(m_gb), "picture");
    EXPECT_EQ(m_gb.m_sealName, "name(国办)");
    EXPECT_EQ(m_gb.m_picWidth, 40);
    EXPECT_EQ(m_gb.m_picHeight, 30);
    EXPECT_EQ(Picture(m_gm), "picture");
    EXPECT_EQ(m_gm.m_sealName, "name(国密)");
}

TEST_F(EsealReadersTest, TheSealLibraryIsAskedFourTimesForPictureAndName) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    EXPECT_EQ(Picture(m_gb), "picture");
    const std::string picture = "TVK_Get_Pic_From_Eseal_Ex(13 \"national seal\", ";
    const std::string name = "TVK_Get_SealName_From_Eseal(13 \"national seal\", ";
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre(picture + "size?)", picture + "out[7])", name + "size?)", name + "out[4])",
                    picture + "size?)", picture + "out[7])", name + "size?)", name + "out[4])"));
}

TEST_F(EsealReadersTest, EachReadingStandsInTheLogUnderItsClass) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    Length(m_gb);
    Length(m_gm);
    EXPECT_THAT(Log(), ElementsAre("8 [CEsealGB::PraseEseal start]",
                                   "8 [CEsealGB::PraseEseal end][Time consume N ms]",
                                   "8 [CEsealGM::PraseEseal start]",
                                   "8 [CEsealGM::PraseEseal end][Time consume N ms]"));
}

TEST_F(EsealReadersTest, ANameComesInUtf8AndIsKeptInGbk) {
    fakes::AddNationalSeal(m_seal, reinterpret_cast<const char*>(u8"公章"), "picture");
    Length(m_gb);
    EXPECT_EQ(m_gb.m_sealName, "公章(国办)");
}

TEST_F(EsealReadersTest, AnEmptyNameGivesTheSuffixAlone) {
    fakes::AddNationalSeal(m_seal, "", "picture");
    Length(m_gb);
    Length(m_gm);
    EXPECT_EQ(m_gb.m_sealName, "(国办)");
    EXPECT_EQ(m_gm.m_sealName, "(国密)");
}

TEST_F(EsealReadersTest, AFailedSizeQueryOfThePictureIsPassedOn) {
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(1, 11);
    int length = -7;
    EXPECT_EQ(m_gb.PraseEseal(nullptr, &length), 11);
    EXPECT_EQ(length, -7);
    EXPECT_THAT(Errors(), ElementsAre("TVK_Get_Pic_From_Eseal error:11"));
    EXPECT_EQ(fakes::CalledFunctions().size(), 1u);
}

TEST_F(EsealReadersTest, AFailedReadingOfThePictureIsPassedOn) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(2, 12);
    int length = -7;
    EXPECT_EQ(m_gm.PraseEseal(nullptr, &length), 12);
    EXPECT_EQ(length, -7);
    EXPECT_THAT(Errors(), ElementsAre("TVK_Get_Pic_From_Eseal error:12"));
    EXPECT_EQ(fakes::CountCalls("TVK_Get_SealName_From_Eseal"), 0);
}

TEST_F(EsealReadersTest, AFailedSizeQueryOfTheNameIsNotLookedAt) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    fakes::On("TVK_Get_SealName_From_Eseal").ReturnsAt(1, 13).GivesAt(2, "");
    EXPECT_EQ(Length(m_gb), 7);
    EXPECT_EQ(m_gb.m_sealName, "(国办)");
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(fakes::CallTexts("TVK_Get_SealName_From_Eseal").back(),
              "TVK_Get_SealName_From_Eseal(13 \"national seal\", out[0])");
}

TEST_F(EsealReadersTest, AFailedReadingOfTheNameComesAfterThePictureWasDelivered) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    fakes::On("TVK_Get_SealName_From_Eseal").ReturnsAt(2, 14);
    int length = -7;
    EXPECT_EQ(m_gb.PraseEseal(nullptr, &length), 14);
    EXPECT_EQ(length, 7);
    EXPECT_EQ(m_gb.m_sealName, "");
    EXPECT_THAT(Errors(), ElementsAre("TVK_Get_SealName_From_Eseal error:14"));
}

TEST_F(EsealReadersTest, ALengthBeyondTheBufferIsNotReadBeyondIt) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReportsSizeAt(2, 100000);
    fakes::On("TVK_Get_SealName_From_Eseal").ReportsSizeAt(2, 100000);
    EXPECT_EQ(Length(m_gb), 8);
}

TEST_F(EsealReadersTest, ANegativeSizeIsNoMemory) {
    fakes::AddNationalSeal(m_seal, "name", "picture");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReportsSizeAt(1, -5);
    int length = -7;
    EXPECT_EQ(m_gb.PraseEseal(nullptr, &length), TESMARK_NO_MEMORY);
    EXPECT_THAT(Errors(), ElementsAre("TVK_Get_Pic_From_Eseal error:-3015"));
}

}  // namespace
