#include "components/drawing/SealFont.h"

#include <algorithm>
#include <string_view>
#include <vector>

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

class CFaces {
public:
    explicit CFaces(const std::u32string& text) : m_text(text) {
        FT_Library library = nullptr;
        if (FT_Init_FreeType(&library) == 0) m_library.reset(library);
    }

    // The first face of the file with every character, one of `family` before the others.
    bool Choose(const std::string& path, const std::string& family, SealFont& font) const {
        bool found = false;
        FT_Long count = 1;
        for (FT_Long index = 0; index < count; ++index) {
            const FreeTypeFace face = Open(path, index);
            if (!face) break;
            count = face->num_faces;
            if (!FT_IS_SCALABLE(face.get()) || !HasAll(face.get())) continue;
            const bool wished = face->family_name && family == face->family_name;
            if (found && !wished) continue;
            font = {path, static_cast<int>(index), (face->style_flags & FT_STYLE_FLAG_BOLD) == 0};
            found = true;
            if (wished) break;
        }
        return found;
    }

private:
    FreeTypeFace Open(const std::string& path, FT_Long index) const {
        FT_Face face = nullptr;
        if (!m_library || FT_New_Face(m_library.get(), path.c_str(), index, &face)) return nullptr;
        return FreeTypeFace(face);
    }
    bool HasAll(FT_Face face) const {
        return std::all_of(m_text.begin(), m_text.end(), [face](char32_t character) {
            return FT_Get_Char_Index(face, character) != 0;
        });
    }

    const std::u32string& m_text;
    FreeTypeLibrary m_library;
};

bool ChooseFamily(const std::vector<FontFile>& fonts, const CFaces& faces,
                  const std::string& family, SealFont& font) {
    for (const std::string& name : {family + " Bold", family}) {
        for (const FontFile& file : fonts) {
            if (Lists(file.names, name) && faces.Choose(file.path, family, font)) return true;
        }
    }
    return false;
}

}  // namespace

bool FindSealFont(const std::u32string& text, const std::string& family, SealFont& font) {
    const std::vector<FontFile> fonts = InstalledFonts();
    const CFaces faces(text);
    // The registry's names are the ANSI code page's. A Chinese system tells its own in Chinese.
    const std::string wished = platform::AnsiFromUtf8(family);
    for (const std::string& name :
         {wished, std::string("SimSun"), std::string("宋体"), std::string("NSimSun"),
          std::string("新宋体"), std::string("SimHei"), std::string("黑体"),
          std::string("Microsoft YaHei"), std::string("微软雅黑")}) {
        if (!name.empty() && ChooseFamily(fonts, faces, name, font)) return true;
    }
    return std::any_of(fonts.begin(), fonts.end(),
                       [&](const FontFile& file) { return faces.Choose(file.path, "", font); });
}
