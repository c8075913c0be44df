#include "components/certservice/DurableFile.h"

#include <algorithm>
#include <utility>

#include "components/certservice/windows/OwnerOnly.h"
#include "components/certservice/windows/PathBytes.h"
#include "platform/Files.h"

namespace {

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file that somebody reads can't be replaced just then, be it another process of ours or a
// scanner.
constexpr int kReplaceTries = 50;
constexpr DWORD kReplacePause = 10;  // milliseconds

class File {
public:
    explicit File(HANDLE handle) : m_handle(handle) {}
    ~File() {
        if (IsOpen()) CloseHandle(m_handle);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};

std::int64_t Whole(DWORD high, DWORD low) {
    return static_cast<std::int64_t>((std::uint64_t{high} << 32) | low);
}

bool WriteAll(HANDLE file, std::string_view content) {
    while (!content.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<size_t>(content.size(), 1 << 20));
        if (!WriteFile(file, content.data(), size, &written, nullptr) || written == 0) return false;
        content.remove_prefix(written);
    }
    return true;
}

bool WriteTemporary(const std::string& path, std::string_view content, bool everybody) {
    OwnerOnly rights(everybody);
    const File file(CreateFileA(path.c_str(), GENERIC_WRITE, 0, rights.Get(), CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    return file.IsOpen() && WriteAll(file.Get(), content) && FlushFileBuffers(file.Get());
}

bool Replace(const std::string& path, const std::string& temporary) {
    for (int tries = 0; tries < kReplaceTries; ++tries) {
        if (MoveFileExA(temporary.c_str(), path.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            return true;
        }
        const DWORD error = GetLastError();
        const bool held = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
        if (!held || platform::IsDirectory(path.c_str())) return false;
        Sleep(kReplacePause);
    }
    return false;
}

std::vector<std::string> NamesIn(const std::string& path, bool folders) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA((path + "\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (entry.cFileName[0] != '.' && isFolder == folders) names.emplace_back(entry.cFileName);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

FileLock::FileLock(const std::string& path) {
    OwnerOnly rights;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, kShared,
                                    rights.Get(), OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    OVERLAPPED range{};
    if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &range)) {
        m_handle = reinterpret_cast<std::intptr_t>(file);
    } else {
        CloseHandle(file);
    }
}

FileLock::~FileLock() {
    if (!Held()) return;
    const HANDLE file = reinterpret_cast<HANDLE>(m_handle);
    // The end of a handle gives its locks up "some time later".
    OVERLAPPED range{};
    UnlockFileEx(file, 0, MAXDWORD, MAXDWORD, &range);
    CloseHandle(file);
}

bool ReadStamp(const std::string& path, FileStamp& stamp) {
    const File file(CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION status{};
    if (!file.IsOpen() || !GetFileInformationByHandle(file.Get(), &status)) return false;
    constexpr std::int64_t kTicks = 10'000'000;
    const std::int64_t written =
        Whole(status.ftLastWriteTime.dwHighDateTime, status.ftLastWriteTime.dwLowDateTime);
    stamp.seconds = written / kTicks;
    stamp.nanoseconds = written % kTicks * 100;
    stamp.size = Whole(status.nFileSizeHigh, status.nFileSizeLow);
    stamp.inode = static_cast<std::uint64_t>(Whole(status.nFileIndexHigh, status.nFileIndexLow));
    return true;
}

bool ReadWholeFile(const std::string& path, std::string& content) {
    const File file(CreateFileA(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file.IsOpen() || GetFileType(file.Get()) != FILE_TYPE_DISK) return false;
    if (!GetFileSizeEx(file.Get(), &size) || size.QuadPart > kLargestFile) return false;
    std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
    size_t filled = 0;
    while (filled < bytes.size()) {
        DWORD count = 0;
        if (!::ReadFile(file.Get(), bytes.data() + filled,
                        static_cast<DWORD>(bytes.size() - filled), &count, nullptr)) {
            return false;
        }
        if (count == 0) break;
        filled += count;
    }
    bytes.resize(filled);
    content = std::move(bytes);
    return true;
}

bool WriteDurably(const std::string& path, std::string_view content, bool everybody) {
    const size_t separator = FindLastSeparator(path) + 1;
    // A dot in front keeps a half-written file out of every listing.
    const std::string temporary = path.substr(0, separator) + "." + path.substr(separator) + "." +
                                  std::to_string(GetCurrentProcessId());
    DeleteFileA(temporary.c_str());
    const bool done = WriteTemporary(temporary, content, everybody) && Replace(path, temporary);
    if (!done) DeleteFileA(temporary.c_str());
    return done;
}

bool MakePrivateFolder(const std::string& path) {
    OwnerOnly rights;
    size_t end = 0;
    while ((end = FindSeparator(path, end + 1)) != std::string::npos) {
        CreateDirectoryA(path.substr(0, end).c_str(), rights.Get());
    }
    CreateDirectoryA(path.c_str(), rights.Get());
    return platform::IsDirectory(path.c_str());
}

bool IsPlainName(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ') return false;
    const bool control = std::any_of(name.begin(), name.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < ' '; });
    return !control && !HasCharacter(name, "<>\"|?*") && !platform::LeadsElsewhere(name);
}

std::vector<std::string> FoldersIn(const std::string& path) { return NamesIn(path, true); }

std::vector<std::string> FilesIn(const std::string& path) { return NamesIn(path, false); }
