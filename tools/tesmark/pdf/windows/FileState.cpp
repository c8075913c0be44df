#include "pdf/FileState.h"

#include "platform/windows/Win32.h"

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

}  // namespace

bool ReadFileState(const std::string& path, FileState& state) {
    // Without this flag a folder can't be opened.
    const HANDLE file = CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION told{};
    const bool known = GetFileInformationByHandle(file, &told) != 0;
    CloseHandle(file);
    if (!known) return false;
    state.volume = told.dwVolumeSerialNumber;
    state.number = Joined(told.nFileIndexHigh, told.nFileIndexLow);
    state.size = Joined(told.nFileSizeHigh, told.nFileSizeLow);
    state.written = static_cast<std::int64_t>(
        Joined(told.ftLastWriteTime.dwHighDateTime, told.ftLastWriteTime.dwLowDateTime));
    return true;
}
