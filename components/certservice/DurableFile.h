// DurableFile.h - files of the key folder: whole, private, and safe against a crash and against
// other processes. Paths are the file system's bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Holds the lock of the file `path`, which is made if need be, from the beginning to the end of its
// life. Waits for whoever has it, in this process or another.
class FileLock {
public:
    explicit FileLock(const std::string& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // False if the file can't be made or locked.
    bool Held() const { return m_handle != -1; }

private:
    std::intptr_t m_handle = -1;  // the system's
};

// What tells one state of a file or folder from the next.
struct FileStamp {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    std::int64_t size = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileStamp&) const = default;
};

// False if nothing is there or can be seen.
bool ReadStamp(const std::string& path, FileStamp& stamp);

// No key, seal or certificate is anywhere near this; what is larger isn't taken into memory.
constexpr std::int64_t kLargestFile = 64 * 1024 * 1024;

// False, with `content` untouched, if the file can't be read to its end or has more than
// kLargestFile bytes.
bool ReadWholeFile(const std::string& path, std::string& content);

// Puts a file with that content in the place of `path` in one step: whoever looks, also after a
// loss of power, finds the old or the new one. It is readable by its owner alone, or by everybody
// if `everybody` is set; so far as the file system knows rights. False, with the old file in place,
// on failure.
bool WriteDurably(const std::string& path, std::string_view content, bool everybody = false);

// Makes the folder and those above it, for their owner alone. True if it is there afterwards.
bool MakePrivateFolder(const std::string& path);

// Can a file or folder of that name stand in a folder, under this name and no other? False for
// what leads elsewhere: a name with a separator, on Windows also a device's or one of a stream.
bool IsPlainName(std::string_view name);

// The names in a folder in the order of their bytes, without those that begin with a dot: of its
// folders, or of its ordinary files. Empty if it can't be read.
std::vector<std::string> FoldersIn(const std::string& path);
std::vector<std::string> FilesIn(const std::string& path);
