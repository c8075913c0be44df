#include "platform/Files.h"

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
