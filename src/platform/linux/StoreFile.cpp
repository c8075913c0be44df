#include "platform/linux/StoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/Files.h"

namespace platform {

namespace {

class Descriptor {
public:
    explicit Descriptor(int file) : m_file(file) {}
    ~Descriptor() {
        if (m_file >= 0) close(m_file);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const { return m_file >= 0; }
    int Get() const { return m_file; }

private:
    int m_file;
};

std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// Where a link leads, so that the link stays and the file behind it is replaced.
std::string Resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.c_str(), nullptr),
                                                             &std::free);
    return target ? target.get() : path;
}

bool ReadAll(int file, std::string& contents) {
    struct stat status {};
    if (fstat(file, &status) == 0 && status.st_size > 0) {
        contents.reserve(static_cast<std::size_t>(status.st_size));
    }
    char buffer[8192];
    for (;;) {
        const ssize_t count = read(file, buffer, sizeof buffer);
        if (count == 0) return true;
        if (count > 0) contents.append(buffer, static_cast<std::size_t>(count));
        if (count < 0 && errno != EINTR) return false;
    }
}

bool WriteAll(int file, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = write(file, contents.data(), contents.size());
        if (count > 0) contents.remove_prefix(static_cast<std::size_t>(count));
        if (count < 0 && errno != EINTR) return false;
    }
    return true;
}

// The text of an editor of another system, which is not UTF-8, is neither understood nor mixed
// with lines that are.
bool IsUtf16(std::string_view contents) {
    return contents.starts_with("\xFF\xFE") || contents.starts_with("\xFE\xFF");
}

// Gives `file` the owner of the file at `path` if it may, and tells the rights that are due to it:
// those of that file, or of a new one.
mode_t TakeOwner(const std::string& path, int file) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return 0644;
    const bool kept = fchown(file, status.st_uid, status.st_gid) == 0;
    return status.st_mode & (kept ? 07777 : 0777);
}

}  // namespace

std::optional<RegText> StoreFile::Read() const {
    const Descriptor file(open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.IsOpen()) {
        if (errno == ENOENT) return RegText();
        return std::nullopt;
    }
    std::string contents;
    if (!ReadAll(file.Get(), contents) || IsUtf16(contents)) return std::nullopt;
    return RegText(std::move(contents));
}

StoreFile::Lock::Lock(const StoreFile& store) {
    if (store.m_path.empty()) return;
    const std::string path = Resolved(store.m_path);
    // Without rights on the file itself a writable folder is no permission.
    if (PathExists(path.c_str()) && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
        return;
    }
    if (!MakeDirectoryPath(FolderOf(path).c_str())) return;
    m_file =
        open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, 0600);
    if (m_file < 0) return;
    int result = 0;
    do {
        result = flock(m_file, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result == 0) return;
    close(m_file);
    m_file = -1;
}

StoreFile::Lock::~Lock() {
    if (m_file >= 0) close(m_file);
}

bool StoreFile::Replace(const std::string& contents) const {
    const std::string path = Resolved(m_path);
    std::string temporary = path + ".XXXXXX";
    const Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.IsOpen()) return false;
    const mode_t rights = TakeOwner(path, file.Get());
    const bool done = WriteAll(file.Get(), contents) && fchmod(file.Get(), rights) == 0 &&
                      fsync(file.Get()) == 0 && std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!done) {
        unlink(temporary.c_str());
        return false;
    }
    const Descriptor folder(open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen()) fsync(folder.Get());
    return true;
}

}  // namespace platform
