#include "platform/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "platform/NoCase.h"
#include "platform/linux/Places.h"

namespace platform {

char PathSeparator() { return '/'; }

std::string Utf8FromPath(std::string_view path) { return std::string(path); }

std::string PathFromUtf8(std::string_view text) { return std::string(text); }

bool PathExists(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0;
}

bool IsDirectory(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool CreateDirectoryAt(const char* path) { return mkdir(path, 0777) == 0; }

bool MakeDirectoryPath(const char* path) {
    const std::string whole = path;
    if (IsDirectory(whole.substr(0, whole.rfind('/') + 1).c_str())) return true;
    for (auto end = whole.find('/', 1); end != std::string::npos; end = whole.find('/', end + 1)) {
        const std::string folder = whole.substr(0, end);
        // Another process may make the same folder at the same time.
        if (!IsDirectory(folder.c_str()) && !CreateDirectoryAt(folder.c_str()) &&
            !IsDirectory(folder.c_str())) {
            return false;
        }
    }
    return true;
}

bool FindFile(const char* path) {
    const std::string_view name = path;
    return !name.ends_with('/') && PathExists(path);
}

std::string FileInFolder(const std::string& folder, const std::string& name) {
    const std::string path = folder + name;
    if (FindFile(path.c_str())) return path;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), &closedir);
    if (!listing) return path;
    while (const dirent* const entry = readdir(listing.get())) {
        if (EqualNoCase(entry->d_name, name)) return folder + entry->d_name;
    }
    return path;
}

bool LeadsElsewhere(std::string_view name) { return name.find('/') != std::string_view::npos; }

std::string UserDataFolder() {
    std::string folder = PrefixFolder();
    if (folder.empty()) folder = UserFolder("XDG_STATE_HOME", ".local/state");
    return folder.empty() ? "" : folder + "Velmora/";
}

std::string CrlFolder() {
    const std::string prefix = PrefixFolder();
    return (prefix.empty() ? "/var/cache/velmora/" : prefix) + "CRLFilePath/";
}

std::int64_t AppendTextRecord(const char* path, std::string_view record) {
    const int file = open(path, O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
    if (file < 0) return -1;
    // A full disk loses the record: nobody is told of it.
    ssize_t written = 0;
    do {
        written = write(file, record.data(), record.size());
    } while (written < 0 && errno == EINTR);
    const off_t size = lseek(file, 0, SEEK_END);
    close(file);
    return size < 0 ? 0 : size;
}

void RemoveFile(const char* path) { unlink(path); }

void RenameFile(const char* from, const char* to) { static_cast<void>(std::rename(from, to)); }

}  // namespace platform
