#include "pdf/FileState.h"

#include <sys/stat.h>

bool ReadFileState(const std::string& path, FileState& state) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return false;
    state.volume = status.st_dev;
    state.number = status.st_ino;
    state.size = static_cast<std::uint64_t>(status.st_size);
    state.written = status.st_mtim.tv_sec * std::int64_t{1'000'000'000} + status.st_mtim.tv_nsec;
    return true;
}
