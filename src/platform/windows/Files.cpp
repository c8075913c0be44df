#include "platform/Files.h"

#include <cctype>

#include "platform/CodePage.h"
#include "platform/windows/UserData.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <dbghelp.h>
#include <shlobj.h>
#include <shlwapi.h>

namespace platform {

namespace {

// "\n" becomes "\r\n", as the C library's text mode writes it. On the stack: a record must not fail
// for want of memory. One write takes the whole, so that records of several processes never mix.
struct TextModeBytes {
    explicit TextModeBytes(std::string_view record) {
        for (const char c : record.substr(0, kLargestRecord)) {
            if (c == '\n') bytes[size++] = '\r';
            bytes[size++] = c;
        }
    }

    static constexpr std::size_t kLargestRecord = 8192;
    char bytes[2 * kLargestRecord];
    DWORD size = 0;
};

// A name of the old system, also with an extension, is a device in every folder.
bool IsDevice(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    while (!stem.empty() && stem.back() == ' ') stem.pop_back();
    for (char& c : stem) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (const char* device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"}) {
        if (stem == device) return true;
    }
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
           std::isdigit(static_cast<unsigned char>(stem[3]));
}

// What the caller may still want to read.
class KeptLastError {
public:
    KeptLastError() : m_error(GetLastError()) {}
    ~KeptLastError() { SetLastError(m_error); }
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;

private:
    DWORD m_error;
};

}  // namespace

char PathSeparator() { return '\\'; }

std::string Utf8FromPath(std::string_view path) { return Utf8FromAnsi(path); }

std::string PathFromUtf8(std::string_view text) { return AnsiFromUtf8(text); }

bool PathExists(const char* path) { return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES; }

bool IsDirectory(const char* path) { return PathIsDirectoryA(path) != FALSE; }

bool CreateDirectoryAt(const char* path) { return CreateDirectoryA(path, nullptr) != 0; }

bool MakeDirectoryPath(const char* path) { return MakeSureDirectoryPathExists(path) != 0; }

bool FindFile(const char* path) {
    WIN32_FIND_DATAA found{};
    const HANDLE search = FindFirstFileA(path, &found);
    if (search == INVALID_HANDLE_VALUE) return false;
    FindClose(search);
    return true;
}

std::string FileInFolder(const std::string& folder, const std::string& name) {
    return folder + name;
}

bool LeadsElsewhere(std::string_view name) {
    // The second byte of a character can be a backslash's.
    for (std::size_t i = 0; i < name.size(); i += IsAnsiLeadByte(name[i]) ? 2 : 1) {
        if (name[i] == '\\' || name[i] == '/' || name[i] == ':') return true;
    }
    return IsDevice(name);
}

std::string UserDataFolder() {
    char folder[MAX_PATH] = {};
    if (SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr,
                         SHGFP_TYPE_CURRENT, folder) != S_OK) {
        return {};
    }
    return LowFolder(folder, SystemMajorVersion()) + "\\Velmora\\";
}

std::string CrlFolder() { return "c:\\CRLFilePath\\"; }

std::int64_t AppendTextRecord(const char* path, std::string_view record) {
    const KeptLastError kept;
    const HANDLE file =
        CreateFileA(path, FILE_APPEND_DATA | FILE_READ_DATA | FILE_READ_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return -1;
    const TextModeBytes text(record);
    DWORD written = 0;
    // A full disk loses the record: nobody is told of it.
    WriteFile(file, text.bytes, text.size, &written, nullptr);
    LARGE_INTEGER size{};
    const bool told = GetFileSizeEx(file, &size) != 0;
    CloseHandle(file);
    return told ? size.QuadPart : 0;
}

void RemoveFile(const char* path) { DeleteFileA(path); }

void RenameFile(const char* from, const char* to) { MoveFileA(from, to); }

}  // namespace platform
