#include "components/drawing/FontSearch.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "components/drawing/FontFamilies.h"
#include "components/drawing/FreeTypeHandle.h"
#include "platform/CodePage.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <shlobj.h>

namespace {

constexpr char kFontsKey[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";

// As the registry tells it: "SimSun & NSimSun (TrueType)", for a collection with all its families.
struct FontFile {
    std::string names;
    std::string path;
};

std::string FontsFolder() {
    char folder[MAX_PATH] = {};
    SHGetFolderPathA(nullptr, CSIDL_FONTS, nullptr, SHGFP_TYPE_CURRENT, folder);
    return std::string(folder) + "\\";
}

// Fonts of the system stand in its folder; one that was installed elsewhere has its whole path.
std::string WholePath(const std::string& file, const std::string& folder) {
    return file.find_first_of(":\\") == std::string::npos ? folder + file : file;
}

// Texts that drawing can't use: faces turned for vertical lines.
bool IsTurned(const std::string& names) { return names.starts_with('@'); }

void AppendFonts(HKEY root, const std::string& folder, std::vector<FontFile>& fonts) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, kFontsKey, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    for (DWORD index = 0;; ++index) {
        char name[512];
        char file[MAX_PATH + 1] = {};
        DWORD nameLength = sizeof name;
        DWORD fileLength = sizeof file - 1;
        DWORD type = 0;
        const LSTATUS status = RegEnumValueA(key, index, name, &nameLength, nullptr, &type,
                                             reinterpret_cast<BYTE*>(file), &fileLength);
        if (status == ERROR_MORE_DATA) continue;
        if (status != ERROR_SUCCESS) break;
        if (type == REG_SZ && !IsTurned(name)) fonts.push_back({name, WholePath(file, folder)});
    }
    RegCloseKey(key);
}

std::vector<FontFile> InstalledFonts() {
    const std::string folder = FontsFolder();
    std::vector<FontFile> fonts;
    AppendFonts(HKEY_LOCAL_MACHINE, folder, fonts);
    AppendFonts(HKEY_CURRENT_USER, folder, fonts);
    return fonts;
}

// Does the list, up to its "(TrueType)", have `name` as one of its own?
bool Lists(std::string_view names, std::string_view name) {
    constexpr std::string_view kBetween = " & ";
    names = names.substr(0, names.rfind(" ("));
    while (true) {
        const auto end = names.find(kBetween);
        const std::string_view one = names.substr(0, end);
        if (CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, one.data(),
                           static_cast<int>(one.size()), name.data(),
                           static_cast<int>(name.size())) == CSTR_EQUAL) {
            return true;
        }
        if (end == std::string_view::npos) return false;
        names.remove_prefix(end + kBetween.size());
    }
}

bool IsBold(FT_Face face) { return (face->style_flags & FT_STYLE_FLAG_BOLD) != 0; }
bool IsSlanted(FT_Face face) { return (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0; }

bool HasAll(FT_Face face, const std::u32string& text) {
    return std::all_of(text.begin(), text.end(), [face](char32_t character) {
        return FT_Get_Char_Index(face, character) != 0;
    });
}

}  // namespace

struct CFontSearch::State {
    FontWish wish;
    std::vector<FontFile> fonts;
    FreeTypeLibrary library;

    FreeTypeFace Open(const std::string& path, FT_Long index) const {
        FT_Face face = nullptr;
        if (!library || FT_New_Face(library.get(), path.c_str(), index, &face)) return nullptr;
        return FreeTypeFace(face);
    }
    // The first face of the file with every character, one of `family` before the others. True in
    // `fits` if it is upright and as heavy as wished.
    bool Choose(const std::string& path, const std::string& family, const std::u32string& text,
                FoundFont& font, bool& fits) const;
    bool ChooseFamily(const std::string& family, const std::u32string& text, FoundFont& font) const;
    bool ChooseAny(const std::u32string& text, FoundFont& font) const;
};

bool CFontSearch::State::Choose(const std::string& path, const std::string& family,
                                const std::u32string& text, FoundFont& font, bool& fits) const {
    bool found = false;
    FT_Long count = 1;
    for (FT_Long index = 0; index < count; ++index) {
        const FreeTypeFace face = Open(path, index);
        if (!face) break;
        count = face->num_faces;
        if (!FT_IS_SCALABLE(face.get()) || !HasAll(face.get(), text)) continue;
        const bool wished = face->family_name && family == face->family_name;
        if (found && !wished) continue;
        font = {path, static_cast<int>(index), wish.bold && !IsBold(face.get())};
        fits = IsBold(face.get()) == wish.bold && !IsSlanted(face.get());
        found = true;
        if (wished) break;
    }
    return found;
}

bool CFontSearch::State::ChooseFamily(const std::string& family, const std::u32string& text,
                                      FoundFont& font) const {
    std::vector<std::string> names = {family};
    if (wish.bold) names.insert(names.begin(), family + " Bold");
    bool fits = false;
    for (const std::string& name : names) {
        for (const FontFile& file : fonts) {
            if (Lists(file.names, name) && Choose(file.path, family, text, font, fits)) return true;
        }
    }
    return false;
}

bool CFontSearch::State::ChooseAny(const std::u32string& text, FoundFont& font) const {
    bool found = false;
    for (const FontFile& file : fonts) {
        FoundFont other;
        bool fits = false;
        if (!Choose(file.path, "", text, other, fits)) continue;
        if (fits || !found) font = other;
        if (fits) return true;
        found = true;
    }
    return found;
}

CFontSearch::CFontSearch(const FontWish& wish)
    : m_state(new State{wish, InstalledFonts(), StartFreeType()}) {}

CFontSearch::~CFontSearch() = default;

bool CFontSearch::Find(const std::u32string& text, FoundFont& font) const {
    for (const std::string& family : FontFamilies(m_state->wish.family)) {
        // The registry's names are the ANSI code page's. A Chinese system tells its own in Chinese.
        if (m_state->ChooseFamily(platform::AnsiFromUtf8(family), text, font)) return true;
    }
    return m_state->ChooseAny(text, font);
}
