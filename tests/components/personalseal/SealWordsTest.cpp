#include "components/personalseal/SealWords.h"

#include <gmock/gmock.h>

#include "components/personalseal/SealControlCodes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

std::vector<std::u32string> Words(std::u8string_view text) {
    std::vector<SealWord> words;
    EXPECT_EQ(SplitSealText(Utf8(text), words), kSealDrawn);
    std::vector<std::u32string> texts;
    for (const SealWord& word : words) texts.push_back(word.characters);
    return texts;
}

int Code(const std::string& text) {
    std::vector<SealWord> words = {{U"before", false, false}};
    const int code = SplitSealText(text, words);
    EXPECT_EQ(words.empty(), code != kSealDrawn);
    return code;
}

TEST(SealWordsTest, AnIdeographStandsAloneAndAWordAsOne) {
    EXPECT_THAT(Words(u8"张三"), ElementsAre(U"张", U"三"));
    EXPECT_THAT(Words(u8"Zhang San"), ElementsAre(U"Zhang", U"San"));
    EXPECT_THAT(Words(u8"2026年11月"), ElementsAre(U"2026", U"年", U"11", U"月"));
    EXPECT_THAT(Words(u8"阿依·买"), ElementsAre(U"阿", U"依", U"·", U"买"));
    EXPECT_THAT(Words(u8"\U00020BB7（ア\uD55C"),
                ElementsAre(U"\U00020BB7", U"（", U"ア", U"\uD55C"));
}

TEST(SealWordsTest, BlanksPartWordsAndAreTold) {
    std::vector<SealWord> words;
    ASSERT_EQ(SplitSealText(Utf8(u8"  a\t\nb　张三 "), words), kSealDrawn);
    ASSERT_EQ(words.size(), 4u);
    EXPECT_FALSE(words[0].afterBlank);
    EXPECT_TRUE(words[1].afterBlank);
    EXPECT_TRUE(words[2].afterBlank);
    EXPECT_FALSE(words[3].afterBlank);
}

TEST(SealWordsTest, EveryControlCharacterIsABlank) {
    EXPECT_THAT(Words(u8"a\u0001b\u007Fc\u0080d\u0085e\u009Ff"),
                ElementsAre(U"a", U"b", U"c", U"d", U"e", U"f"));
    EXPECT_THAT(Words(u8"a\u00A0b\u00A9\u0100"), ElementsAre(U"a", U"b\u00A9\u0100"));
    EXPECT_EQ(Code(Utf8(u8"\u0080\u009F")), kSealNoText);
    EXPECT_EQ(Code("a\xC2"), kSealBadText);
    EXPECT_EQ(Code("a\x85"), kSealBadText);
}

TEST(SealWordsTest, ATextOfBlanksIsNone) {
    EXPECT_EQ(Code(""), kSealNoText);
    EXPECT_EQ(Code(Utf8(u8" \t\r\n\x7F　")), kSealNoText);
    EXPECT_EQ(Code(std::string(3, '\0')), kSealNoText);
}

TEST(SealWordsTest, OnlyUtf8IsText) {
    for (const char* const text : {"\xD5\xC5\xC8\xFD", "a\xC0\x80", "\xED\xA0\x80", "\xE5\xBC"}) {
        EXPECT_EQ(Code(text), kSealBadText);
    }
}

TEST(SealWordsTest, CharactersCountNotBytes) {
    std::string text;
    for (std::size_t i = 0; i < kSealLongestText; ++i) text += Utf8(u8"\U00020BB7");
    EXPECT_EQ(Code(text), kSealDrawn);
    EXPECT_EQ(Code(text + "x"), kSealLongText);
    EXPECT_EQ(Code(std::string(kSealLongestText, 'x') + "x"), kSealLongText);
}

TEST(SealWordsTest, OneIdeographMakesATextOfIdeographs) {
    std::vector<SealWord> words;
    SplitSealText(Utf8(u8"a b 张"), words);
    EXPECT_TRUE(HasIdeographs(words));
    SplitSealText("a b c", words);
    EXPECT_FALSE(HasIdeographs(words));
    EXPECT_FALSE(HasIdeographs({}));
}

}  // namespace
