#include "components/certservice/DurableFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace {

class Descriptor {
public:
    explicit Descriptor(int value) : m_value(value) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return m_value; }
    // False if what was written may not have arrived.
    bool Close() {
        if (m_value < 0) return true;
        const int result = close(m_value);
        m_value = -1;
        return result == 0;
    }

private:
    int m_value;
};

bool WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool SyncFolderOf(const std::string& path) {
    const size_t separator = path.rfind('/');
    const std::string folder = separator == std::string::npos ? "." : path.substr(0, separator + 1);
    Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.Get() >= 0 && fsync(descriptor.Get()) == 0;
}

bool WriteTemporary(const std::string& path, std::string_view content, mode_t mode) {
    Descriptor descriptor(
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (descriptor.Get() < 0) return false;
    const bool written = fchmod(descriptor.Get(), mode) == 0 &&
                         WriteAll(descriptor.Get(), content) && fsync(descriptor.Get()) == 0;
    return descriptor.Close() && written;
}

std::vector<std::string> NamesIn(const std::string& path, mode_t type) {
    std::vector<std::string> names;
    DIR* folder = opendir(path.c_str());
    if (!folder) return names;
    while (const dirent* entry = readdir(folder)) {
        if (entry->d_name[0] == '.') continue;
        struct stat status {};
        if (fstatat(dirfd(folder), entry->d_name, &status, 0) != 0) continue;
        if ((status.st_mode & S_IFMT) == type) names.emplace_back(entry->d_name);
    }
    closedir(folder);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

FileLock::FileLock(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) return;
    int result = -1;
    do {
        result = flock(descriptor, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result == 0) {
        m_handle = descriptor;
    } else {
        close(descriptor);
    }
}

FileLock::~FileLock() {
    if (m_handle >= 0) close(static_cast<int>(m_handle));
}

bool ReadStamp(const std::string& path, FileStamp& stamp) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return false;
    stamp.seconds = status.st_mtim.tv_sec;
    stamp.nanoseconds = status.st_mtim.tv_nsec;
    stamp.size = status.st_size;
    stamp.inode = status.st_ino;
    return true;
}

bool ReadWholeFile(const std::string& path, std::string& content) {
    const Descriptor descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (descriptor.Get() < 0 || fstat(descriptor.Get(), &status) != 0) return false;
    if (!S_ISREG(status.st_mode) || status.st_size > kLargestFile) return false;
    std::string bytes(static_cast<size_t>(status.st_size), '\0');
    size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = read(descriptor.Get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        if (count == 0) break;
        filled += static_cast<size_t>(count);
    }
    bytes.resize(filled);
    content = std::move(bytes);
    return true;
}

bool WriteDurably(const std::string& path, std::string_view content, bool everybody) {
    const size_t separator = path.rfind('/') + 1;
    // A dot in front keeps a half-written file out of every listing.
    const std::string temporary =
        path.substr(0, separator) + "." + path.substr(separator) + "." + std::to_string(getpid());
    unlink(temporary.c_str());
    const bool done = WriteTemporary(temporary, content, everybody ? 0644 : 0600) &&
                      rename(temporary.c_str(), path.c_str()) == 0;
    if (!done) unlink(temporary.c_str());
    return done && SyncFolderOf(path);
}

bool MakePrivateFolder(const std::string& path) {
    for (size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        mkdir(path.substr(0, end).c_str(), 0700);
    }
    mkdir(path.c_str(), 0700);
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

std::vector<std::string> FoldersIn(const std::string& path) { return NamesIn(path, S_IFDIR); }

std::vector<std::string> FilesIn(const std::string& path) { return NamesIn(path, S_IFREG); }
