#include <filesystem>

#include "tools/pdf/PdfFixture.h"

std::string DevicePath() { return "/dev/null"; }

// Another file system.
std::string PathOfOtherBlocks(const std::string& folder) {
    return "/dev/shm/" + std::filesystem::path(folder).filename().string();
}
