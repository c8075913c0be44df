#include "pdf/WorkFile.h"

#include <algorithm>
#include <vector>

#include "pdf/windows/SystemMessage.h"
#include "platform/Files.h"
#include "platform/windows/Win32.h"

namespace {

// What is copied at once; in between the copy can be stopped.
constexpr DWORD kPiece = 1024 * 1024;
constexpr int kAttempts = 100;

class CHandle {
public:
    explicit CHandle(HANDLE handle) : m_handle(handle) {}
    ~CHandle() {
        if (IsOpen()) CloseHandle(m_handle);
    }
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;
    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};

HANDLE Native(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

HANDLE OpenShared(const std::string& path, DWORD access) {
    return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// The system tells a link's end with a prefix that not every program understands.
std::string WithoutPrefix(const std::string& path) {
    constexpr char kShare[] = "\\\\?\\UNC\\";
    constexpr char kPlain[] = "\\\\?\\";
    if (path.starts_with(kShare)) return "\\\\" + path.substr(sizeof kShare - 1);
    return path.starts_with(kPlain) ? path.substr(sizeof kPlain - 1) : path;
}

std::string Resolved(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const bool link =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!link) return path;
    const CHandle file(OpenShared(path, FILE_READ_ATTRIBUTES));
    char real[2 * MAX_PATH] = {};
    if (!file.IsOpen() || GetFinalPathNameByHandleA(file.Get(), real, sizeof real - 1, 0) == 0) {
        return path;
    }
    return WithoutPrefix(real);
}

OVERLAPPED PlaceAt(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

bool ReadWholePiece(HANDLE file, char* bytes, std::size_t size, std::uint64_t offset) {
    while (size > 0) {
        OVERLAPPED place = PlaceAt(offset);
        DWORD got = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size, kPiece));
        if (!ReadFile(file, bytes, wanted, &got, &place)) return false;
        if (got == 0) SetLastError(ERROR_HANDLE_EOF);
        if (got == 0) return false;
        bytes += got;
        size -= got;
        offset += got;
    }
    return true;
}

// What replaces a file in this way has its rights and attributes.
bool Replace(const std::string& output, const std::string& path) {
    // Asked first: a replacement that fails halfway may leave a file of its own behind.
    const bool mayGo = CHandle(OpenShared(output, GENERIC_WRITE | DELETE)).IsOpen();
    if (!mayGo) return false;
    if (ReplaceFileA(output.c_str(), path.c_str(), nullptr, 0, nullptr, nullptr)) return true;
    // On a share the user may change files without being allowed to give them rights.
    return ReplaceFileA(output.c_str(), path.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                        nullptr, nullptr) != 0;
}

}  // namespace

CWorkFile::CWorkFile(std::string outputPath) : m_output(Resolved(outputPath)) {}

CWorkFile::~CWorkFile() {
    Close();
    if (!m_path.empty()) DeleteFileA(m_path.c_str());
}

void CWorkFile::Close() {
    if (m_file != kNoFile) CloseHandle(Native(m_file));
    m_file = kNoFile;
}

bool CWorkFile::Fail(const char* what) { return Fail(what, LastErrorText()); }

bool CWorkFile::CheckOutput() {
    const DWORD attributes = GetFileAttributesA(m_output.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return true;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return Fail("can't be replaced", "it is a folder");
    }
    // To a user with the right to everything it would open all the same.
    SetLastError(ERROR_ACCESS_DENIED);
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return Fail("can't be written");
    const CHandle file(OpenShared(m_output, GENERIC_WRITE));
    if (!file.IsOpen()) return Fail("can't be written");
    if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
        return Fail("can't be replaced", "it is a device");
    }
    return true;
}

bool CWorkFile::Create() {
    if (!CheckOutput()) return false;
    for (int i = 0; i < kAttempts; ++i) {
        const std::string path = NameBesideOutput();
        const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                        nullptr, CREATE_NEW, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            m_file = reinterpret_cast<File>(file);
            m_path = path;
            return true;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) break;
    }
    return Fail("can't be written");
}

bool CWorkFile::CopyFrom(const std::string& inputPath, std::uint64_t size) {
    const CHandle input(OpenShared(inputPath, GENERIC_READ));
    LARGE_INTEGER now{};
    if (!input.IsOpen() || !GetFileSizeEx(input.Get(), &now)) return Fail("can't get the input");
    if (static_cast<std::uint64_t>(now.QuadPart) != size) {
        return Fail("can't get the input", "its size has changed");
    }
    return CopyBytes(reinterpret_cast<File>(input.Get()), size);
}

bool CWorkFile::CopyBytes(File input, std::uint64_t size) {
    std::vector<char> piece(std::min<std::uint64_t>(size, kPiece));
    for (std::uint64_t at = 0; at < size;) {
        if (m_stopped) return Fail("can't be written", "it was given up");
        const std::size_t length = std::min<std::uint64_t>(size - at, kPiece);
        if (!ReadWholePiece(Native(input), piece.data(), length, at)) {
            return Fail("can't get the input");
        }
        if (!WriteAt(at, {piece.data(), length})) return false;
        at += length;
    }
    m_size = size;
    return true;
}

bool CWorkFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        OVERLAPPED place = PlaceAt(offset);
        DWORD wrote = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kPiece));
        if (!WriteFile(Native(m_file), bytes.data(), wanted, &wrote, &place) || wrote == 0) {
            return Fail("can't be written");
        }
        bytes.remove_prefix(wrote);
        offset += wrote;
    }
    m_size = std::max(m_size, offset);
    return true;
}

bool CWorkFile::ReadAll(std::string& bytes) {
    bytes.resize(m_size);
    return ReadWholePiece(Native(m_file), bytes.data(), bytes.size(), 0) ||
           Fail("can't be read again");
}

// The system writes behind by itself, and has no call that begins without waiting for the end.
void CWorkFile::BeginWriting() {}

bool CWorkFile::BecomeOutput() {
    if (!FlushFileBuffers(Native(m_file))) return Fail("can't be written");
    // A file that is open can't take another name.
    Close();
    const bool named =
        platform::PathExists(m_output.c_str())
            ? Replace(m_output, m_path)
            : MoveFileExA(m_path.c_str(), m_output.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
    if (!named) return Fail("can't be replaced");
    m_path.clear();
    return true;
}
