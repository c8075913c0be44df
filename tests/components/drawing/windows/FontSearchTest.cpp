#include "components/drawing/FontSearch.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

constexpr char kFonts[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";
constexpr char kLatinFile[] = "Z:\\usr\\share\\fonts\\truetype\\dejavu\\DejaVuSans.ttf";

// A font as the system lists it, while the object lives.
class ListedFont {
public:
    ListedFont(const char* names, const std::string& file) : m_names(names) {
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, kFonts, 0, KEY_ALL_ACCESS, &m_key);
        RegSetValueExA(m_key, names, 0, REG_SZ, reinterpret_cast<const BYTE*>(file.c_str()),
                       static_cast<DWORD>(file.size() + 1));
    }
    ~ListedFont() {
        RegDeleteValueA(m_key, m_names);
        RegCloseKey(m_key);
    }
    ListedFont(const ListedFont&) = delete;
    ListedFont& operator=(const ListedFont&) = delete;

private:
    const char* m_names;
    HKEY m_key = nullptr;
};

std::string ChineseFile() {
    FoundFont font;
    EXPECT_TRUE(CFontSearch({"", true}).Find(U"深圳市", font));
    return font.path;
}

TEST(FontSearchOnWindows, AFamilyThatLacksTheCharactersIsPassedOver) {
    const ListedFont listed("DejaVu Sans (TrueType)", kLatinFile);
    FoundFont latin;
    FoundFont mixed;
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"Ltd.", latin));
    EXPECT_EQ(latin.path, kLatinFile);
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"深圳市", mixed));
    EXPECT_NE(mixed.path, latin.path);
}

TEST(FontSearchOnWindows, AFamilyIsFoundAmongThoseOfItsFileWhateverTheCase) {
    const ListedFont listed("Another & dejavu sans (TrueType)", kLatinFile);
    FoundFont font;
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"Ltd.", font));
    EXPECT_EQ(font.path, kLatinFile);
}

TEST(FontSearchOnWindows, SimSunComesBeforeOthersAndItsBoldFaceBeforeIt) {
    const std::string file = ChineseFile();
    const std::string spelled = "Z:\\." + file.substr(2);
    const ListedFont listed("SimSun (TrueType)", spelled);
    EXPECT_EQ(ChineseFile(), spelled);
    const std::string bold = "Z:\\.\\." + file.substr(2);
    const ListedFont boldListed("SimSun Bold (TrueType)", bold);
    EXPECT_EQ(ChineseFile(), bold);
}

TEST(FontSearchOnWindows, ALightWishLeavesTheBoldFaceAlone) {
    const ListedFont listed("DejaVu Sans (TrueType)", kLatinFile);
    const ListedFont bold("DejaVu Sans Bold (TrueType)",
                          "Z:\\usr\\share\\fonts\\truetype\\dejavu\\DejaVuSans-Bold.ttf");
    FoundFont font;
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", false}).Find(U"Ltd.", font));
    EXPECT_EQ(font.path, kLatinFile);
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"Ltd.", font));
    EXPECT_NE(font.path, kLatinFile);
    EXPECT_FALSE(font.embolden);
}

TEST(FontSearchOnWindows, AFileThatIsNotThereIsPassedOver) {
    const std::string file = ChineseFile();
    const ListedFont listed("SimSun (TrueType)", "none.ttf");
    EXPECT_EQ(ChineseFile(), file);
}

}  // namespace
