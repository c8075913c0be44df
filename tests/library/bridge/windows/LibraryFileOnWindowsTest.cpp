// What the library's file needs of the system, what the system shows of it, and what hosts link.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>

#include "LibraryFile.h"
#include "foundation/Text.h"

namespace {

using testing::Each;
using testing::EndsWith;
using testing::StrCaseEq;
using testing::UnorderedElementsAreArray;

// The version resource, read by the system.
class VersionOf {
public:
    explicit VersionOf(const char* file) : m_block(GetFileVersionInfoSizeA(file, nullptr), '\0') {
        GetFileVersionInfoA(file, 0, static_cast<DWORD>(m_block.size()), m_block.data());
    }
    // GBK; "none" for a name that isn't there.
    std::string Text(const std::string& language, const char* name) {
        const std::string path = "\\StringFileInfo\\" + language + "\\" + name;
        void* text = nullptr;
        UINT length = 0;
        if (VerQueryValueA(m_block.data(), path.c_str(), &text, &length) == 0) return "none";
        return static_cast<const char*>(text);
    }

private:
    std::string m_block;
};

// One object of the short form (IMPORT_OBJECT_HEADER): its symbol and its library stand behind it.
struct ShortImport {
    WORD machine = 0;
    std::string symbol;
    std::string library;
};

// The members of an archive that are of the short form.
std::vector<ShortImport> ShortImports(const std::string& archive) {
    constexpr std::size_t kMagic = 8, kHeader = 60, kSize = 48;
    const std::string bytes = ReadFileToString(archive);
    std::vector<ShortImport> imports;
    for (std::size_t at = kMagic; at + kHeader <= bytes.size();) {
        const std::size_t size = std::stoul(bytes.substr(at + kSize, 10));
        const std::string member = bytes.substr(at + kHeader, size);
        IMPORT_OBJECT_HEADER header{};
        std::memcpy(&header, member.data(), std::min(sizeof header, member.size()));
        if (header.Sig1 == IMAGE_FILE_MACHINE_UNKNOWN && header.Sig2 == IMPORT_OBJECT_HDR_SIG2) {
            const std::string symbol = member.c_str() + sizeof header;
            const char* const library = member.c_str() + sizeof header + symbol.size() + 1;
            imports.push_back({header.Machine, symbol, library});
        }
        at += kHeader + size + size % 2;
    }
    return imports;
}

TEST(LibraryFileOnWindows, NeedsNothingButTheSystemAndTheClosedLibraries) {
    constexpr const char* kKnown[] = {
        "advapi32.dll", "bcrypt.dll",       "comctl32.dll", "crypt32.dll", "dbghelp.dll",
        "gdi32.dll",    "kernel32.dll",     "msvcrt.dll",   "ole32.dll",   "oleaut32.dll",
        "shell32.dll",  "shlwapi.dll",      "user32.dll",   "ws2_32.dll",  "tovkx64.dll",
        "mirelle.dll",  "libdwnt-3_x64.dll"};
    for (const std::string& needed : NeededLibraries(LIBRARY_FILE)) {
        EXPECT_TRUE(std::any_of(std::begin(kKnown), std::end(kKnown), [&](const char* known) {
            return lstrcmpiA(known, needed.c_str()) == 0;
        })) << needed;
    }
}

TEST(LibraryFileOnWindows, TheSystemShowsProductAndVersionInChineseAndInEnglish) {
    VersionOf version(LIBRARY_FILE);
    for (const char* language : {"080404B0", "040904B0"}) {
        EXPECT_EQ(version.Text(language, "ProductName"), "tesmark");
        EXPECT_EQ(version.Text(language, "ProductVersion"), PRODUCT_VERSION);
        EXPECT_EQ(version.Text(language, "OriginalFilename"), "TesmarkOpt_x64.dll");
    }
    EXPECT_EQ(version.Text("080404B0", "FileDescription"), "电子印章客户端库");
    EXPECT_EQ(version.Text("040904B0", "FileDescription"), "Client library for electronic seals");
}

TEST(LibraryFileOnWindows, TheImportLibraryForMicrosoftsLinkerNamesEveryExportInTheShortForm) {
    std::vector<std::string> symbols;
    for (const ShortImport& import : ShortImports(MICROSOFT_IMPORT_LIBRARY)) {
        EXPECT_EQ(import.machine, IMAGE_FILE_MACHINE_AMD64);
        EXPECT_EQ(import.library, "TesmarkOpt_x64.dll");
        symbols.push_back(import.symbol);
    }
    ASSERT_FALSE(symbols.empty());
    EXPECT_THAT(symbols, UnorderedElementsAreArray(ExportedNames(LIBRARY_FILE)));
}

}  // namespace
