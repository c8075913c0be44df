#include "pdf/WorkFile.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/Files.h"

namespace {

constexpr std::size_t kPiece = 64 * 1024;
constexpr int kAttempts = 100;

// What the kernel copies at once; in between the copy can be stopped.
constexpr std::uint64_t kSlice = 16 * 1024 * 1024;

class CDescriptor {
public:
    explicit CDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~CDescriptor() {
        if (m_descriptor >= 0) close(m_descriptor);
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    int Get() const { return m_descriptor; }

private:
    int m_descriptor;
};

int Native(std::intptr_t file) { return static_cast<int>(file); }

std::string Resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::string(real.get()) : path;
}

std::string FolderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool ReadWholePiece(int file, char* bytes, std::size_t size, std::uint64_t offset) {
    while (size > 0) {
        const ssize_t got = pread(file, bytes, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got == 0) errno = EIO;
        if (got <= 0) return false;
        bytes += got;
        size -= static_cast<std::size_t>(got);
        offset += static_cast<std::uint64_t>(got);
    }
    return true;
}

}  // namespace

CWorkFile::CWorkFile(std::string outputPath) : m_output(Resolved(outputPath)) {}

CWorkFile::~CWorkFile() {
    Close();
    if (!m_path.empty()) unlink(m_path.c_str());
}

void CWorkFile::Close() {
    if (m_file != kNoFile) close(Native(m_file));
    m_file = kNoFile;
}

bool CWorkFile::Fail(const char* what) { return Fail(what, std::strerror(errno)); }

bool CWorkFile::CheckOutput() {
    struct stat status;
    if (stat(m_output.c_str(), &status) != 0) return true;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    if (!S_ISREG(status.st_mode)) return Fail("can't be replaced");
    if (access(m_output.c_str(), W_OK) != 0) return Fail("can't be written");
    m_mode = static_cast<int>(status.st_mode & 07777);
    return true;
}

bool CWorkFile::Create() {
    if (!CheckOutput()) return false;
    for (int i = 0; i < kAttempts; ++i) {
        const std::string path = NameBesideOutput();
        m_file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_file != kNoFile) {
            m_path = path;
            return true;
        }
        if (errno != EEXIST) break;
    }
    return Fail("can't be written");
}

bool CWorkFile::CopyFrom(const std::string& inputPath, std::uint64_t size) {
    const CDescriptor input(open(inputPath.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (input.Get() < 0 || fstat(input.Get(), &status) != 0) return Fail("can't get the input");
    errno = EBUSY;
    if (static_cast<std::uint64_t>(status.st_size) != size) return Fail("can't get the input");
    const bool shared = !m_stopped && ioctl(Native(m_file), FICLONE, input.Get()) == 0;
    if (!shared && !CopyBytes(input.Get(), size)) return Fail("can't be written");
    m_size = size;
    return true;
}

bool CWorkFile::CopyBytes(File input, std::uint64_t size) {
    off_t from = 0;
    off_t to = 0;
    while (static_cast<std::uint64_t>(to) < size && !m_stopped) {
        const auto slice = std::min(size - static_cast<std::uint64_t>(to), kSlice);
        const ssize_t copied = copy_file_range(Native(input), &from, Native(m_file), &to, slice, 0);
        if (copied < 0 && errno == EINTR) continue;
        if (copied <= 0) break;
    }
    // Some file systems can't copy by themselves, and across two of them few can.
    std::vector<char> piece(kPiece);
    auto at = static_cast<std::uint64_t>(to);
    while (at < size && !m_stopped) {
        const std::size_t length = std::min<std::uint64_t>(size - at, kPiece);
        if (!ReadWholePiece(Native(input), piece.data(), length, at)) return false;
        if (!WriteAt(at, {piece.data(), length})) return false;
        at += length;
    }
    errno = ECANCELED;
    return at == size;
}

bool CWorkFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t wrote =
            pwrite(Native(m_file), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote < 0) return Fail("can't be written");
        bytes.remove_prefix(static_cast<std::size_t>(wrote));
        offset += static_cast<std::uint64_t>(wrote);
    }
    m_size = std::max(m_size, offset);
    return true;
}

bool CWorkFile::ReadAll(std::string& bytes) {
    bytes.resize(m_size);
    return ReadWholePiece(Native(m_file), bytes.data(), bytes.size(), 0) ||
           Fail("can't be read again");
}

void CWorkFile::BeginWriting() { sync_file_range(Native(m_file), 0, 0, SYNC_FILE_RANGE_WRITE); }

bool CWorkFile::BecomeOutput() {
    if (m_mode >= 0 && fchmod(Native(m_file), static_cast<mode_t>(m_mode)) != 0) {
        return Fail("can't be written");
    }
    if (fsync(Native(m_file)) != 0) return Fail("can't be written");
    if (rename(m_path.c_str(), m_output.c_str()) != 0) return Fail("can't be replaced");
    m_path.clear();
    // The output is whole by now; what a folder can't do doesn't undo it.
    const CDescriptor folder(open(FolderOf(m_output).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Get() >= 0) fsync(folder.Get());
    return true;
}
