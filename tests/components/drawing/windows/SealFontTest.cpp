#include "components/drawing/SealFont.h"

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
    SealFont font;
    EXPECT_TRUE(FindSealFont(U"深圳市", "", font));
    return font.path;
}

TEST(SealFontOnWindows, AFamilyThatLacksTheCharactersIsPassedOver) {
    const ListedFont listed("DejaVu Sans (TrueType)", kLatinFile);
    SealFont latin;
    SealFont mixed;
    ASSERT_TRUE(FindSealFont(U"Ltd.", "DejaVu Sans", latin));
    EXPECT_EQ(latin.path, kLatinFile);
    ASSERT_TRUE(FindSealFont(U"深圳市", "DejaVu Sans", mixed));
    EXPECT_NE(mixed.path, latin.path);
}

TEST(SealFontOnWindows, AFamilyIsFoundAmongThoseOfItsFileWhateverTheCase) {
    const ListedFont listed("Another & dejavu sans (TrueType)", kLatinFile);
    SealFont font;
    ASSERT_TRUE(FindSealFont(U"Ltd.", "DejaVu Sans", font));
    EXPECT_EQ(font.path, kLatinFile);
}

TEST(SealFontOnWindows, SimSunComesBeforeOthersAndItsBoldFaceBeforeIt) {
    const std::string file = ChineseFile();
    const std::string spelled = "Z:\\." + file.substr(2);
    const ListedFont listed("SimSun (TrueType)", spelled);
    EXPECT_EQ(ChineseFile(), spelled);
    const std::string bold = "Z:\\.\\." + file.substr(2);
    const ListedFont boldListed("SimSun Bold (TrueType)", bold);
    EXPECT_EQ(ChineseFile(), bold);
}

TEST(SealFontOnWindows, AFileThatIsNotThereIsPassedOver) {
    const std::string file = ChineseFile();
    const ListedFont listed("SimSun (TrueType)", "none.ttf");
    EXPECT_EQ(ChineseFile(), file);
}

}  // namespace
